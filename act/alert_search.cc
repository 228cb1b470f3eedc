#include "act/alert_search.h"

#include <array>
#include <charconv>
#include <optional>

#include "family/description_reading.h"
#include "platform/windows_1252.h"

namespace zendrix::act {
namespace {

constexpr std::string_view kJoin = " * ";
constexpr std::string_view kAggregation = "Aggregation";

// What stands in front of the separator, which goes too; all that is left when there is none.
std::string_view Cut(std::string_view& text, std::string_view separator) {
  const std::size_t at = text.find(separator);
  const std::string_view part = text.substr(0, at);
  text.remove_prefix(at == std::string_view::npos ? text.size() : at + separator.size());
  return part;
}

std::optional<ToldRow> RowOf(std::string_view text) {
  constexpr std::size_t kFields = 7;
  constexpr std::size_t kCode = 5;
  ToldRow row;
  const std::string_view stamp = Cut(text, ",");
  const auto [end, error] = std::from_chars(stamp.data(), stamp.data() + stamp.size(), row.second);
  if (error != std::errc() || end != stamp.data() + stamp.size()) return std::nullopt;
  Cut(text, ",");
  Cut(text, ",");
  std::array<std::string_view, kFields> fields;
  for (std::string_view& field : fields) {
    if (text.empty()) return std::nullopt;
    field = Cut(text, "|");
  }
  row.monitor = fields[0];
  row.change = fields[2];
  row.description = fields[3];
  row.code = fields[kCode];
  return row;
}

bool HoldsDescription(std::string_view joined, std::string_view description) {
  if (joined == description) return true;
  while (!joined.empty()) {
    if (Cut(joined, kJoin) == description) return true;
  }
  return false;
}

bool HoldsPair(std::string_view pairs, const ShownEvent& wanted) {
  while (!pairs.empty()) {
    std::string_view pair = Cut(pairs, ";");
    if (Cut(pair, "=") == wanted.monitor && HoldsDescription(pair, wanted.description)) return true;
  }
  return false;
}

bool IsAbout(std::string_view monitor, std::string_view description, const std::string& path) {
  const auto kind = family::KindOfMonitor(monitor);
  if (!kind) return false;
  const std::string_view named = family::ReadDescription(*kind, description).path;
  return !named.empty() && (named == path || platform::Utf8FromBytes(named) == path);
}

}  // namespace

bool NamesFile(std::string_view pairs, const std::string& path) {
  while (!pairs.empty()) {
    std::string_view joined = Cut(pairs, ";");
    const std::string_view monitor = Cut(joined, "=");
    if (IsAbout(monitor, joined, path)) return true;
    while (!joined.empty()) {
      if (IsAbout(monitor, Cut(joined, kJoin), path)) return true;
    }
  }
  return false;
}

void RowSearch::Take(std::string_view bytes) {
  while (!bytes.empty() && !found_) {
    const std::size_t end = bytes.find('\n');
    const std::string_view part = bytes.substr(0, end);
    too_long_ = too_long_ || begun_.size() + part.size() > kLongestRow;
    if (too_long_) {
      begun_.clear();
    } else {
      begun_ += part;
    }
    if (end == std::string_view::npos) return;
    if (begun_.ends_with('\r')) begun_.pop_back();
    if (const auto row = too_long_ ? std::nullopt : RowOf(begun_)) found_ = IsIt(*row);
    begun_.clear();
    too_long_ = false;
    bytes.remove_prefix(end + 1);
  }
}

bool ToldRow::IsAlert() const {
  return monitor == kAggregation && !change.starts_with('-');
}

bool AlertSearch::IsIt(const ToldRow& row) {
  if (row.second == wanted_.second && row.monitor == wanted_.monitor)
    has_event_ = has_event_ || HoldsDescription(row.description, wanted_.description);
  return has_event_ && row.IsAlert() && row.second == wanted_.alert_second &&
         HoldsPair(row.description, wanted_);
}

bool CodeSearch::IsIt(const ToldRow& row) {
  const bool is_it = row.IsAlert() && row.second == wanted_.second &&
                     row.code.substr(0, row.code.rfind(',')) == wanted_.code;
  if (is_it) description_ = row.description;
  return is_it;
}

}  // namespace zendrix::act
