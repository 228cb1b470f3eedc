// The address and server of the e-mail alerts, in KorvessaSMTPConfig.kvl: "Send Alerts To=a;SMTP
// Server=h:p;...", one line without a line end, guarded by its hash side file. The console owns the first two
// fields, by position, and keeps all that stands behind them. Texts are single-byte (Windows-1252).
#pragma once

#include <string>
#include <string_view>

#include "core/app_state.h"
#include "core/error_log.h"

namespace zendrix::settings {

inline constexpr char kSmtpFileName[] = "KorvessaSMTPConfig.kvl";

struct SmtpData {
  std::string Address;
  std::string Server;
  std::string Port;  // decimal; empty when the file has none

  bool operator==(const SmtpData&) const = default;
};

// The data in the first line of the file's text.
SmtpData ParseSmtpText(std::string_view text);
// The file's next text: the present one (empty when there is no file) with its first two fields replaced.
// Values are trimmed.
std::string SmtpTextWith(const SmtpData& data, std::string_view present);

// All empty when there is nothing to read. A file that fails its hash is deleted after a message. Failures
// are logged under "Utils : LoadSMTPData". `told` is for a caller that looks again and again: it becomes true
// when such a file could not be deleted, and while it is true that file is passed over in silence.
SmtpData LoadSMTPData(core::AppState& state, core::ErrorLog& log, bool* told = nullptr);
// The file and its hash change as one. The present file is not checked. Failures are logged under
// "Utils : SaveSMTPData", and both are then as they were. The service that mails is told behind it by the
// link to the Agent: the contents, or nothing where no alerts are wanted by mail. What keeps it from hearing
// them is logged and told in a box, and changes nothing of the file.
void SaveSMTPData(core::AppState& state, core::ErrorLog& log, const SmtpData& data, bool wanted = true);
// Tells it the same of the present file, if there is one, when only that has changed whether alerts are
// wanted.
void SwitchMail(core::AppState& state, core::ErrorLog& log, bool wanted);

}  // namespace zendrix::settings
