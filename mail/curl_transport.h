// The real road: SMTP by libcurl (RFC 5321, STARTTLS by RFC 3207, login by RFC 4954). A server's certificate
// is checked against the computer's own authorities, or those of a file, and against the server's name,
// whenever anything is encrypted; nothing from the environment chooses a proxy, an account or another
// protocol. What a server says is used as a number only. A mail counts as refused by a reply of 500 and above
// to MAIL, RCPT or DATA alone; a greeting, which anybody in the road can forge, a refused login and whatever
// else goes wrong is "later".
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "mail/transport.h"

namespace zendrix::mail {

struct CurlOptions {
  std::string authorities;               // a file of certificates (PEM); empty: the computer's
  std::function<bool()> stop_requested;  // asked about once a second; a mail under way is then left
  std::int64_t connect_seconds = 30;     // to connect and to encrypt
  std::int64_t whole_seconds = 180;      // for all of it
};

class CurlTransport : public Transport {
 public:
  explicit CurlTransport(CurlOptions options);
  CurlTransport(const CurlTransport&) = delete;
  CurlTransport& operator=(const CurlTransport&) = delete;
  ~CurlTransport() override;

  Delivery Send(const MailSettings& settings, const std::string& text) override;

 private:
  const CurlOptions options_;
};

}  // namespace zendrix::mail
