// The alerts that wait to be mailed, and everything that has to outlive this program for each to be mailed
// once: how far the monitoring file was read, which alerts were met last, when mails went out. All of it is
// one text, replaced as one, so that no kill leaves an alert that was read but does not wait.
//
// It is bounded: of more than kMostWaiting alerts only the number is kept.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "mail/alert_line.h"
#include "mail/follower.h"
#include "platform/family_libraries.h"

namespace zendrix::mail {

class Outbox {
 public:
  static constexpr std::size_t kMostWaiting = 500;
  static constexpr std::size_t kMostSeen = 256;
  // Of mails in an hour that tell one alert each, and how far apart the ones behind those are. They tell all
  // that waits.
  static constexpr std::size_t kMostSingle = 5;
  static constexpr std::int64_t kHour = 3600;
  static constexpr std::int64_t kApart = 600;

  Position position;
  // As long as a file is read again: alerts before this second are history. Zero otherwise.
  std::int64_t since = 0;

  // False for an alert that was met before.
  bool Add(const Alert& alert);
  // Everything that waits is given up; the number.
  std::uint64_t Clear();
  bool IsEmpty() const { return waiting_.empty() && unlisted_ == 0; }
  std::uint64_t size() const { return waiting_.size() + unlisted_; }

  // Whether the next mail may go out now.
  bool MaySend(std::int64_t now_utc) const;

  // What the next mail tells. A mail that was tried tells the same again when it is tried again, because it
  // may have arrived.
  struct Mail {
    std::vector<Alert> alerts;
    std::uint64_t unlisted = 0;
  };
  Mail Next(std::int64_t now_utc);
  // What became of it. A refusal counts; the result is how many times it was refused.
  void Sent(std::int64_t now_utc);
  int Refused() { return ++refusals_; }
  // The next mail's alerts are given up.
  void Drop();

  std::string Text(platform::FamilyLibraries& family) const;
  // Nothing for a text that is not whole.
  static std::optional<Outbox> Parse(std::string_view text, platform::FamilyLibraries& family);

 private:
  std::size_t SentInTheLastHour(std::int64_t now_utc) const;
  bool TakeLine(std::string_view line);

  std::deque<Alert> waiting_;
  std::uint64_t unlisted_ = 0;
  std::deque<std::string> seen_;
  std::deque<std::int64_t> sent_;  // seconds of the last mails
  std::size_t tried_ = 0;          // alerts at the head that the mail under way tells
  std::uint64_t tried_unlisted_ = 0;
  int refusals_ = 0;
};

}  // namespace zendrix::mail
