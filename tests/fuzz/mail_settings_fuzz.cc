// The SMTP file as the mail program reads it: whatever stands in it, what comes out can be part of a mail and
// of an address of the network, and no password goes out unencrypted.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "mail/smtp_settings.h"
#include "settings/smtp.h"

using namespace zendrix::mail;

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

void RequirePlain(std::string_view text) {
  Require(!text.empty());
  for (const char byte : text)
    Require(byte > ' ' && byte <= '~' && byte != '<' && byte != '>' && byte != ',');
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  const auto read = ParseMailSettings(text);
  Require(!read.settings || read.error.empty());
  if (!read.settings) return 0;
  const MailSettings& settings = *read.settings;
  RequirePlain(settings.to);
  RequirePlain(settings.from);
  RequirePlain(settings.server);
  Require(settings.server.find_first_of("/@:?#%") == std::string_view::npos);
  Require(settings.port >= 1 && settings.port <= 65535);
  Require(settings.user.empty() || settings.security == Security::kTls ||
          settings.security == Security::kStartTls);
  Require(settings.user.find_first_of("\r\n") == std::string_view::npos);
  // The console's reading of the file comes first.
  Require(zendrix::settings::ParseSmtpText(text).Address.find(settings.to) != std::string_view::npos);
  return 0;
}
