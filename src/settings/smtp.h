// The address and server of the e-mail alerts, in KorvessaSMTPConfig.kvl: "Send Alerts To=a;SMTP Server=h:p;...".
// The console owns the first two fields and keeps all that stands behind them.
#pragma once

#include <string>

#include "core/app_state.h"
#include "core/error_log.h"

namespace zendrix::settings {

inline constexpr char kSmtpFileName[] = "KorvessaSMTPConfig.kvl";

struct SmtpData {
  std::string Address;
  std::string Server;
  std::string Port;
};

// All empty when there is nothing to read. A file that fails its hash is deleted after a message.
SmtpData LoadSMTPData(core::AppState& state, core::ErrorLog& log);
// Values are trimmed; the file and its hash change as one.
void SaveSMTPData(core::AppState& state, core::ErrorLog& log, const SmtpData& data);

}  // namespace zendrix::settings
