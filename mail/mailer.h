// Mails the alerts of a folder's monitoring file: reads on, keeps what is to be mailed, hands it to the mail
// server, and says in the Agent's log what became of it.
//
//  - An alert counts from the moment at which this program first sees the folder; what the file held before
//  is
//    history. While e-mail is off nothing waits.
//  - Up to five alerts in an hour are mails of their own. What is more becomes one mail about all that waits,
//    every ten minutes at most.
//  - A server that cannot be reached, or not safely, is tried again after a minute, and then after twice the
//    time until that is half an hour, for as long as it takes. One that refuses a mail is tried again twice,
//    an hour apart; then its alerts are given up. Settings that changed are tried at once.
//  - A mail is struck out when the server has taken it. Whoever ends this program between these two makes it
//    come again, with the same Message-ID.
//  - A state file that is damaged is set aside and told, and the last day of the monitoring file is read
//  again: what
//    waited from before that day is lost, what was mailed in it comes again.
//  - Nothing is sent while the state cannot be written: a restart would send it again, and again. It is told,
//  and
//    sent when there is room.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "mail/follower.h"
#include "mail/outbox.h"
#include "mail/smtp_settings.h"
#include "mail/transport.h"
#include "platform/clock.h"

namespace zendrix::mail {

inline constexpr char kStateFile[] = "zendrix-mail.state";
inline constexpr char kDamagedStateFile[] = "zendrix-mail.state.damaged";

struct MailerParts {
  platform::Files& files;
  platform::Clock& clock;
  platform::FamilyLibraries& family;
  Transport& transport;
  std::string folder;           // of the monitoring file and the log
  std::string settings_folder;  // of the SMTP file
  std::string state_folder;     // of the state file
  // One line for the log, in printable ASCII without a comma.
  std::function<void(const std::string&)> tell;
};

class Mailer {
 public:
  static constexpr std::int64_t kSettingsEveryMs = 10'000;
  static constexpr std::int64_t kFirstPauseMs = 60'000;
  static constexpr std::int64_t kLongestPauseMs = 1'800'000;
  // A server that was shown a wrong password too often may shut the account: ever more rarely, up to a day.
  static constexpr std::int64_t kLongestLoginPauseMs = 86'400'000;
  static constexpr std::int64_t kRefusedPauseMs = 3'600'000;
  static constexpr int kMostRefusals = 3;
  // How far the file was read is kept with every alert, and this often without one: what is read again after
  // a kill is known already.
  static constexpr std::int64_t kPositionEveryMs = 60'000;

  explicit Mailer(MailerParts parts);

  // Reads what is new and sends one mail at most. True when there is more to do at once.
  bool Turn();
  // Keeps how far it came; at the end of a run.
  void Finish();

 private:
  void Load();
  // Without a state: from the end of the file, or behind a damaged one from a day ago.
  void Begin();
  bool Save();
  void LookAtSettings(std::int64_t now_ms);
  bool ReadOn(std::int64_t now_ms);
  bool SendNext(std::int64_t now_ms);
  void Put(const Delivery& delivery, std::uint64_t count, std::int64_t now_ms);
  // The same trouble is told once, until something else happens.
  void TellTrouble(const std::string& text);

  MailerParts parts_;
  Follower follower_;
  const std::string state_path_;
  const std::string damaged_path_;
  Outbox outbox_;
  bool loaded_ = false;
  bool is_dirty_ = false;
  bool has_moved_ = false;  // the position alone
  std::int64_t next_position_ms_ = 0;
  bool save_fails_ = false;
  bool read_fails_ = false;
  std::optional<MailSettings> settings_;
  bool is_off_ = true;
  bool is_gone_ = false;        // the SMTP file, since a look that found it
  std::string settings_error_;  // of the last look
  std::optional<std::int64_t> next_look_ms_;
  std::int64_t not_before_ms_ = 0;
  std::int64_t pause_ms_ = kFirstPauseMs;
  std::string trouble_;
};

}  // namespace zendrix::mail
