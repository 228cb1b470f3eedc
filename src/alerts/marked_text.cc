#include "alerts/marked_text.h"

#include <algorithm>

#include "alerts/page_writer.h"

namespace zendrix::alerts {
namespace {

constexpr char Mark(Origin origin) {
  return static_cast<char>(origin);
}

}  // namespace

MarkedText::MarkedText(Purpose purpose, std::string_view text, Origin origin) : purpose_(purpose) {
  Append(text, origin);
}

MarkedText& MarkedText::Append(std::string_view text, Origin origin) {
  const bool gap = purpose_ == Purpose::kShown && origin == Origin::kEvent && text.empty();
  const std::size_t size = flat_.size() + (gap ? 1 : text.size());
  flat_.reserve(size);
  origins_.reserve(size);
  if (gap) {
    flat_ += '\0';
    origin = Origin::kEmptyEvent;
  } else {
    flat_ += text;
  }
  origins_.resize(size, Mark(origin));
  return *this;
}

MarkedText& MarkedText::Append(const MarkedText& other) {
  AppendPart(other, 0, other.flat_.size());
  return *this;
}

void MarkedText::AppendPart(const MarkedText& other, std::size_t from, std::size_t end) {
  flat_.reserve(flat_.size() + end - from);
  origins_.reserve(flat_.size() + end - from);
  flat_.append(other.flat_, from, end - from);
  origins_.append(other.origins_, from, end - from);
}

bool MarkedText::Counts(std::size_t at, std::size_t length, Among among, std::string_view readable) const {
  for (std::size_t i = at; i < at + length; ++i) {
    switch (among) {
      case Among::kAll:
        return true;
      case Among::kPlaceholders:
        if (!IsTemplates(i)) return false;
        break;
      case Among::kReadable:
        if (!readable[i]) return false;
        break;
      case Among::kEvents:
        if (IsTemplates(i) || !readable[i]) return false;
        break;
    }
  }
  return true;
}

std::vector<std::size_t> MarkedText::Find(std::string_view text, Among among,
                                          std::string_view readable) const {
  std::vector<std::size_t> positions;
  if (text.empty()) return positions;
  for (std::size_t at = flat_.find(text); at != std::string::npos;) {
    const bool counts = Counts(at, text.size(), among, readable);
    if (counts) positions.push_back(at);
    at = flat_.find(text, at + (counts ? text.size() : 1));
  }
  return positions;
}

void MarkedText::Replace(std::string_view placeholder, const MarkedText& by) {
  const std::vector<std::size_t> positions = Find(placeholder, PlaceholdersAmong(), {});
  if (positions.empty()) return;
  MarkedText result(purpose_);
  std::size_t done = 0;
  for (const std::size_t at : positions) {
    result.AppendPart(*this, done, at);
    result.Append(by);
    done = at + placeholder.size();
  }
  result.AppendPart(*this, done, flat_.size());
  *this = std::move(result);
}

void MarkedText::Replace(std::string_view placeholder, std::string_view by, Origin origin) {
  Replace(placeholder, MarkedText(purpose_, by, origin));
}

MarkedText::Among MarkedText::ValuesAmong(std::string_view value) const {
  if (purpose_ == Purpose::kExact) return Among::kAll;
  return std::any_of(value.begin(), value.end(), IsSpecialInText) ? Among::kEvents : Among::kReadable;
}

void MarkedText::SurroundAt(const std::vector<std::size_t>& positions, std::size_t length,
                            const MarkedText& before, const MarkedText& behind) {
  if (positions.empty()) return;
  MarkedText result(purpose_);
  std::size_t done = 0;
  for (const std::size_t at : positions) {
    result.AppendPart(*this, done, at);
    result.Append(before).AppendPart(*this, at, at + length);
    result.Append(behind);
    done = at + length;
  }
  result.AppendPart(*this, done, flat_.size());
  *this = std::move(result);
}

void MarkedText::Surround(std::string_view value, const MarkedText& before, const MarkedText& behind) {
  if (flat_.find(value) == std::string::npos) return;
  SurroundAt(Find(value, ValuesAmong(value), Readable()), value.size(), before, behind);
}

void MarkedText::SurroundLast(std::string_view value, const MarkedText& before, const MarkedText& behind) {
  if (value.empty() || flat_.find(value) == std::string::npos) return;
  const Among among = ValuesAmong(value);
  const std::string readable = Readable();
  for (std::size_t at = flat_.rfind(value); at != std::string::npos; at = flat_.rfind(value, at - 1)) {
    if (Counts(at, value.size(), among, readable)) return SurroundAt({at}, value.size(), before, behind);
    if (at == 0) return;
  }
}

void MarkedText::CutAt(std::string_view placeholder) {
  const std::vector<std::size_t> positions = Find(placeholder, PlaceholdersAmong(), {});
  if (positions.empty()) return;
  flat_.resize(positions.front());
  origins_.resize(positions.front());
}

template <class See>
std::string MarkedText::WritePage(See&& see) const {
  PageWriter page;
  std::vector<bool> links;  // those that are open, and whether they were written
  // Whether a "<" is the template's last word before an event's.
  const auto before_event = [this](std::size_t at) {
    if (flat_[at] != '<') return false;
    const std::size_t next = at + (at + 1 < flat_.size() && flat_[at + 1] == '/' ? 2 : 1);
    return (at + 1 < flat_.size() && !IsTemplates(at + 1)) || (next < flat_.size() && !IsTemplates(next));
  };
  // Writes, or leaves out, an anchor's tag: up to its ">".
  const auto tag = [&](std::size_t at, bool written) {
    for (;; ++at) {
      const bool last = flat_[at] == '>' && origins_[at] == Mark(Origin::kLink);
      if (written && origins_[at] == Mark(Origin::kEvent)) page.Event(flat_[at]);
      if (written && origins_[at] == Mark(Origin::kLink)) page.Template(flat_[at]);
      if (last) return at;
    }
  };
  for (std::size_t i = 0; i < flat_.size(); ++i) {
    const Origin origin{origins_[i]};
    if (origin == Origin::kLink) {
      const bool opens = flat_[i + 1] != '/';
      const bool written = opens ? page.LinkMayStand() : !links.empty() && links.back();
      if (opens)
        links.push_back(written);
      else if (!links.empty())
        links.pop_back();
      i = tag(i, written);
      continue;
    }
    const bool may_be_read = page.LinkMayStand();
    if (origin == Origin::kEvent)
      page.Event(flat_[i]);
    else if (origin == Origin::kEventInLink)
      page.Path(flat_[i]);
    else if (origin == Origin::kEmptyEvent)
      page.EmptyEvent();
    else
      page.Template(flat_[i], before_event(i));
    see(i, may_be_read && page.LinkMayStand());
  }
  return page.page();
}

// A character of the page's text leaves the place as it was, and stands in no reference.
std::string MarkedText::Readable() const {
  if (purpose_ == Purpose::kExact) return {};
  std::string readable(flat_.size(), '\0');
  WritePage([&](std::size_t at, bool text) { readable[at] = text ? 1 : 0; });
  return readable;
}

std::string MarkedText::Finish() const {
  if (purpose_ == Purpose::kExact) return flat_;
  return WritePage([](std::size_t, bool) {});
}

}  // namespace zendrix::alerts
