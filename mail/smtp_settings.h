// Where alerts are mailed to, and how, by KorvessaSMTPConfig.kvl. The console owns the file's first two
// fields (settings/smtp.h) and keeps those behind them, which are this program's:
//
//   Send Alerts To=me@example.org;SMTP Server=mail.example.org:587;Security=STARTTLS;User=me;Password=...;
//
//   Security=STARTTLS   encrypt on the server's own port, or send nothing
//   Security=TLS        encrypted from the first byte
//   Security=None       never encrypted; not with a User
//   (none of them)      TLS on port 465; elsewhere STARTTLS where the server offers it, and with a User
//   always User, Password      to log in with; a ";" cannot be part of them From                the sender;
//   by default the address that the alerts go to
//
// Names of fields and the values of Security do not regard case. The file is a user's and may hold anything;
// what comes out of here is checked: addresses and server are ASCII without anything that means something in
// a mail or an address of the network.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/family_libraries.h"
#include "platform/files.h"

namespace zendrix::mail {

enum class Security { kWhereOffered, kStartTls, kTls, kNone };

struct MailSettings {
  std::string to;
  std::string from;
  std::string server;
  int port = 25;
  Security security = Security::kWhereOffered;
  std::string user;  // UTF-8, as the password; empty: no login
  std::string password;

  bool operator==(const MailSettings&) const = default;
};

// Neither settings nor an error: e-mail is off, which is how the console leaves an empty address.
struct SettingsRead {
  std::optional<MailSettings> settings;
  std::string error;     // for the log; holds nothing of the file's own text
  bool missing = false;  // there is no such file
};

SettingsRead ParseMailSettings(std::string_view text);

// Reads the file of the folder, if it fits its side file. It only looks: an interrupted save is the console's
// to finish.
SettingsRead ReadMailSettings(platform::Files& files, platform::FamilyLibraries& family,
                              const std::string& folder);

}  // namespace zendrix::mail
