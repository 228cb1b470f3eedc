#include "mail/outbox.h"

#include <algorithm>
#include <charconv>
#include <utility>

#include "core/text_rules.h"

namespace zendrix::mail {
namespace {

constexpr std::string_view kHead = "zendrix-mail 1";
constexpr std::string_view kSum = "sum ";
constexpr std::size_t kMostRemembered = 12;  // mails

std::string Hex(std::string_view bytes) {
  constexpr char kDigits[] = "0123456789abcdef";
  std::string text = "x";  // so that it is never empty
  for (const char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    text += kDigits[code >> 4U];
    text += kDigits[code & 15U];
  }
  return text;
}

bool ReadHex(std::string_view text, std::string& bytes) {
  if (text.empty() || text.front() != 'x' || text.size() % 2 == 0) return false;
  bytes.clear();
  for (std::size_t i = 1; i < text.size(); i += 2) {
    unsigned code = 0;
    const auto read = std::from_chars(text.data() + i, text.data() + i + 2, code, 16);
    if (read.ec != std::errc() || read.ptr != text.data() + i + 2) return false;
    bytes += static_cast<char>(code);
  }
  return true;
}

template <class Number>
bool ReadNumber(std::string_view text, Number& number) {
  const auto read = std::from_chars(text.data(), text.data() + text.size(), number);
  return read.ec == std::errc() && read.ptr == text.data() + text.size();
}

}  // namespace

bool Outbox::Add(const Alert& alert) {
  const std::string key = alert.Key();
  if (std::find(seen_.begin(), seen_.end(), key) != seen_.end()) return false;
  seen_.push_back(key);
  if (seen_.size() > kMostSeen) seen_.pop_front();
  if (waiting_.size() < kMostWaiting) {
    waiting_.push_back(alert);
  } else {
    ++unlisted_;
  }
  return true;
}

std::uint64_t Outbox::Clear() {
  const std::uint64_t count = size();
  waiting_.clear();
  unlisted_ = 0;
  tried_ = 0;
  tried_unlisted_ = 0;
  refusals_ = 0;
  return count;
}

std::size_t Outbox::SentInTheLastHour(std::int64_t now_utc) const {
  // A clock that was put back leaves mails of the future, which hold nothing up.
  return static_cast<std::size_t>(std::count_if(sent_.begin(), sent_.end(), [&](std::int64_t second) {
    return second <= now_utc && second > now_utc - kHour;
  }));
}

bool Outbox::MaySend(std::int64_t now_utc) const {
  if (IsEmpty()) return false;
  if (SentInTheLastHour(now_utc) < kMostSingle) return true;
  return sent_.back() > now_utc || now_utc - sent_.back() >= kApart;
}

Outbox::Mail Outbox::Next(std::int64_t now_utc) {
  if (tried_ == 0 && tried_unlisted_ == 0) {
    const std::size_t sent = SentInTheLastHour(now_utc);
    const bool single = sent < kMostSingle && size() <= kMostSingle - sent;
    tried_ = single ? 1 : waiting_.size();
    tried_unlisted_ = single ? 0 : unlisted_;
    refusals_ = 0;
  }
  return {{waiting_.begin(), waiting_.begin() + static_cast<std::ptrdiff_t>(tried_)}, tried_unlisted_};
}

void Outbox::Sent(std::int64_t now_utc) {
  Drop();
  sent_.push_back(now_utc);
  if (sent_.size() > kMostRemembered) sent_.pop_front();
}

void Outbox::Drop() {
  waiting_.erase(waiting_.begin(), waiting_.begin() + static_cast<std::ptrdiff_t>(tried_));
  unlisted_ -= tried_unlisted_;
  tried_ = 0;
  tried_unlisted_ = 0;
  refusals_ = 0;
}

std::string Outbox::Text(platform::FamilyLibraries& family) const {
  std::string text(kHead);
  text += "\n";
  const auto line = [&](const char* name, const std::string& rest) {
    text.append(name).append(" ").append(rest).append("\n");
  };
  line("read", std::to_string(position.file.device) + " " + std::to_string(position.file.number) + " " +
                   std::to_string(position.offset) + " " + (position.mid_line ? "1 " : "0 ") +
                   Hex(position.before));
  if (since != 0) line("since", std::to_string(since));
  line("unlisted", std::to_string(unlisted_));
  line("tried",
       std::to_string(tried_) + " " + std::to_string(tried_unlisted_) + " " + std::to_string(refusals_));
  for (const std::int64_t second : sent_) line("sent", std::to_string(second));
  for (const std::string& key : seen_) line("seen", key);
  for (const Alert& alert : waiting_) line("waits", alert.line);
  return text + std::string(kSum) + family.HashBytes(text) + "\n";
}

bool Outbox::TakeLine(std::string_view line) {
  const auto blank = line.find(' ');
  if (blank == std::string_view::npos) return false;
  const std::string_view name = line.substr(0, blank);
  const std::string_view rest = line.substr(blank + 1);
  if (name == "seen") {
    seen_.emplace_back(rest);
    return seen_.size() <= kMostSeen;
  }
  if (name == "waits") {
    auto alert = ParseAlert(rest);
    if (!alert || waiting_.size() >= kMostWaiting) return false;
    waiting_.push_back(std::move(*alert));
    return true;
  }
  const auto words = core::Split(rest, " ");
  if (name == "read") {
    if (words.size() != 5) return false;
    position.mid_line = words[3] == "1";
    return ReadNumber(words[0], position.file.device) && ReadNumber(words[1], position.file.number) &&
           ReadNumber(words[2], position.offset) && position.offset >= 0 &&
           ReadHex(words[4], position.before);
  }
  if (name == "since") return words.size() == 1 && ReadNumber(words[0], since);
  if (name == "unlisted") return words.size() == 1 && ReadNumber(words[0], unlisted_);
  if (name == "tried") {
    return words.size() == 3 && ReadNumber(words[0], tried_) && ReadNumber(words[1], tried_unlisted_) &&
           ReadNumber(words[2], refusals_) && refusals_ >= 0;
  }
  if (name != "sent" || words.size() != 1 || sent_.size() >= kMostRemembered) return false;
  return ReadNumber(words[0], sent_.emplace_back());
}

std::optional<Outbox> Outbox::Parse(std::string_view text, platform::FamilyLibraries& family) {
  const auto sum = text.rfind(kSum);
  if (sum == std::string_view::npos || sum == 0 || text[sum - 1] != '\n') return std::nullopt;
  const std::string_view body = text.substr(0, sum);
  if (text.substr(sum + kSum.size()) != family.HashBytes(body) + "\n") return std::nullopt;
  const auto lines = core::Lines(body);
  if (lines.empty() || lines.front() != kHead) return std::nullopt;
  Outbox outbox;
  for (std::size_t i = 1; i < lines.size(); ++i) {
    if (!outbox.TakeLine(lines[i])) return std::nullopt;
  }
  if (outbox.tried_ > outbox.waiting_.size() || outbox.tried_unlisted_ > outbox.unlisted_)
    return std::nullopt;
  return outbox;
}

}  // namespace zendrix::mail
