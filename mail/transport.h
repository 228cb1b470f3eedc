// The road to a mail server. The twin in memory/ answers as a test wants.
#pragma once

#include <string>

#include "mail/smtp_settings.h"

namespace zendrix::mail {

struct Delivery {
  enum class Outcome {
    kSent,     // the server has taken it
    kLater,    // it could not be handed over, or not safely: nothing says that it never can
    kNoLogin,  // likewise, because the server does not take user and password: only the user can mend that
    kRefused,  // the server says that it will not take this mail
  };
  Outcome outcome = Outcome::kLater;
  std::string reason;  // for the log, in this program's own words; never the server's, nor anything secret
};

class Transport {
 public:
  virtual ~Transport() = default;
  // Hands over one mail, whole with its headers, lines ended by CR LF. Takes a few minutes at most.
  virtual Delivery Send(const MailSettings& settings, const std::string& text) = 0;
};

}  // namespace zendrix::mail
