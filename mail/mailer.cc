#include "mail/mailer.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "mail/message.h"

namespace zendrix::mail {
namespace {

// Of a file that took the place of the one that was followed, older alerts are history.
constexpr std::int64_t kOldOfReplaced = 86400;
// As far back alerts are read again when the state is lost.
constexpr std::int64_t kReadAgain = 86400;
constexpr std::int64_t kMostStateBytes = 8 << 20;

std::string Alerts(std::uint64_t count) {
  return count == 1 ? "1 alert" : std::to_string(count) + " alerts";
}

}  // namespace

Mailer::Mailer(MailerParts parts)
    : parts_(std::move(parts)),
      follower_(parts_.files, parts_.folder),
      state_path_(platform::JoinPath(parts_.state_folder, kStateFile)),
      damaged_path_(platform::JoinPath(parts_.state_folder, kDamagedStateFile)) {}

bool Mailer::Turn() {
  const std::int64_t now_ms = parts_.clock.MonotonicMs();
  LookAtSettings(now_ms);
  if (!loaded_) Load();
  if (!loaded_) return false;
  const bool more = ReadOn(now_ms);
  if (is_dirty_) Save();
  return SendNext(now_ms) || more;
}

void Mailer::Finish() {
  if (loaded_ && (is_dirty_ || has_moved_)) Save();
}

void Mailer::Load() {
  if (!parts_.files.Exists(state_path_)) return Begin();
  const auto size = parts_.files.Size(state_path_);
  // What cannot be read at this moment may be readable at the next one.
  if (!size) return TellTrouble("E-mail waits: its state file cannot be read");
  if (size.value() <= kMostStateBytes) {
    const auto text = parts_.files.ReadAll(state_path_);
    if (!text) return TellTrouble("E-mail waits: its state file cannot be read");
    if (auto outbox = Outbox::Parse(text.value(), parts_.family)) {
      outbox_ = std::move(*outbox);
      loaded_ = true;
      return;
    }
  }
  if (!parts_.files.Rename(state_path_, damaged_path_))
    return TellTrouble("E-mail waits: its damaged state file cannot be set aside");
  Begin();
}

void Mailer::Begin() {
  // Also after a kill between setting aside and the first new state.
  if (parts_.files.Exists(damaged_path_)) {
    parts_.tell(
        "E-mail begins anew: its state file is damaged and was set aside; alerts of before may be missing "
        "and "
        "those of the last day may come again");
    outbox_.since = parts_.clock.NowUtc() - kReadAgain;
    outbox_.position = follower_.Begin(outbox_.since);
  } else {
    auto end = follower_.End();
    if (!end) return TellTrouble("E-mail waits: the monitoring file cannot be read");
    outbox_.position = std::move(end.value());
  }
  loaded_ = true;
  is_dirty_ = true;
}

bool Mailer::Save() {
  const auto status = parts_.files.WriteAll(state_path_, outbox_.Text(parts_.family));
  is_dirty_ = !status.ok();
  has_moved_ = has_moved_ && is_dirty_;
  if (!status && !save_fails_) parts_.tell("E-mail waits: its state file cannot be written");
  save_fails_ = !status.ok();
  return status.ok();
}

void Mailer::LookAtSettings(std::int64_t now_ms) {
  if (next_look_ms_ && now_ms < *next_look_ms_) return;
  next_look_ms_ = now_ms + kSettingsEveryMs;
  auto read = ReadMailSettings(parts_.files, parts_.family, parts_.settings_folder);
  // A file that went away while this runs may come back; only one that names nobody turns e-mail off.
  const bool is_gone = read.missing && (settings_ || is_gone_);
  if (is_gone && !is_gone_) parts_.tell("E-mail waits: the SMTP file is gone");
  is_gone_ = is_gone;
  is_off_ = !read.settings && read.error.empty() && !is_gone;
  if (!read.error.empty()) {
    // One look may fall between the file and its side file.
    if (read.error == settings_error_) TellTrouble("E-mail waits: " + read.error);
    settings_error_ = read.error;
    settings_.reset();
    return;
  }
  settings_error_.clear();
  if (read.settings == settings_) return;
  settings_ = std::move(read.settings);
  not_before_ms_ = std::numeric_limits<std::int64_t>::min();
  pause_ms_ = kFirstPauseMs;
  trouble_.clear();
}

bool Mailer::ReadOn(std::int64_t now_ms) {
  const std::int64_t now_utc = parts_.clock.NowUtc();
  if (is_off_ && !outbox_.IsEmpty()) {
    parts_.tell("E-mail was turned off; " + Alerts(outbox_.Clear()) + " will not be mailed");
    is_dirty_ = true;
  }
  const auto reading = follower_.ReadOn(outbox_.position, [&](std::string_view line, bool replaced) {
    if (is_off_) return;
    const auto alert = ParseAlert(line);
    if (!alert || alert->second < outbox_.since || (replaced && alert->second < now_utc - kOldOfReplaced))
      return;
    is_dirty_ = outbox_.Add(*alert) || is_dirty_;
  });
  if (!reading.error.empty() && !read_fails_) parts_.tell("E-mail cannot read the monitoring file");
  read_fails_ = !reading.error.empty();
  if (outbox_.since != 0 && !reading.more && !read_fails_) {
    outbox_.since = 0;
    is_dirty_ = true;
  }
  if (reading.position == outbox_.position) return false;
  // A file that was replaced is never read again from the old place.
  is_dirty_ = is_dirty_ || reading.replaced || now_ms >= next_position_ms_;
  if (is_dirty_) next_position_ms_ = now_ms + kPositionEveryMs;
  outbox_.position = reading.position;
  has_moved_ = true;
  return reading.more;
}

bool Mailer::SendNext(std::int64_t now_ms) {
  // Turn tries to write it again before each mail.
  if (save_fails_) return false;
  if (!settings_ || now_ms < not_before_ms_ || !outbox_.MaySend(parts_.clock.NowUtc())) return false;
  const std::int64_t now_utc = parts_.clock.NowUtc();
  auto mail = outbox_.Next(now_utc);
  // What is tried is written down first: after a kill the same mail goes out once more, not another one.
  if (!Save()) return false;
  const std::uint64_t count = mail.alerts.size() + mail.unlisted;
  const std::string text =
      ComposeMail(*settings_, {std::move(mail.alerts), mail.unlisted}, now_utc, parts_.family);
  const Delivery delivery = parts_.transport.Send(*settings_, text);
  Put(delivery, count, parts_.clock.MonotonicMs());
  Save();
  return delivery.outcome == Delivery::Outcome::kSent && outbox_.MaySend(now_utc);
}

void Mailer::Put(const Delivery& delivery, std::uint64_t count, std::int64_t now_ms) {
  switch (delivery.outcome) {
    case Delivery::Outcome::kSent:
      outbox_.Sent(parts_.clock.NowUtc());
      parts_.tell("E-mail of " + Alerts(count) + " was sent");
      not_before_ms_ = now_ms;
      pause_ms_ = kFirstPauseMs;
      trouble_.clear();
      return;
    case Delivery::Outcome::kLater:
    case Delivery::Outcome::kNoLogin:
      not_before_ms_ = now_ms + pause_ms_;
      pause_ms_ =
          std::min(2 * pause_ms_,
                   delivery.outcome == Delivery::Outcome::kNoLogin ? kLongestLoginPauseMs : kLongestPauseMs);
      TellTrouble("E-mail of " + Alerts(count) + " waits: " + delivery.reason);
      return;
    case Delivery::Outcome::kRefused:
      not_before_ms_ = now_ms + kRefusedPauseMs;
      if (outbox_.Refused() < kMostRefusals) {
        TellTrouble("E-mail of " + Alerts(count) + " was refused and is tried again: " + delivery.reason);
        return;
      }
      outbox_.Drop();
      parts_.tell("E-mail of " + Alerts(count) + " is given up: " + delivery.reason);
      trouble_.clear();
      return;
  }
}

void Mailer::TellTrouble(const std::string& text) {
  if (text == trouble_) return;
  trouble_ = text;
  parts_.tell(text);
}

}  // namespace zendrix::mail
