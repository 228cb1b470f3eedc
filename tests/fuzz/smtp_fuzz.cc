// The SMTP file's text: whatever stands in it, the console reads its two fields and keeps the rest. An input
// is the present text and, each behind a byte 1F, an address, a server and a port.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "settings/smtp.h"

using namespace zendrix::settings;

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string TakeField(std::string_view& input) {
  const auto end = input.find('\x1F');
  const std::string field(input.substr(0, end));
  input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
  return field;
}

bool IsPlain(const std::string& text) {
  return text.find_first_of(" ;:\r\n") == std::string::npos;
}

// What stands behind the second ";" of a text that has one.
std::string TailOf(const std::string& text) {
  const auto first = text.find(';');
  const auto second = first == std::string::npos ? first : text.find(';', first + 1);
  return second == std::string::npos ? "" : text.substr(second + 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string present = TakeField(input);
  SmtpData smtp;
  smtp.Address = TakeField(input);
  smtp.Server = TakeField(input);
  smtp.Port = TakeField(input);

  const SmtpData read = ParseSmtpText(present);
  Require(read.Server.find_first_of(":;\r\n") == std::string::npos);
  Require(read.Address.find_first_of(";\r\n") == std::string::npos);

  const std::string saved = SmtpTextWith(smtp, present);
  if (!IsPlain(smtp.Address) || !IsPlain(smtp.Server) || !IsPlain(smtp.Port)) return 0;
  Require(ParseSmtpText(saved) == smtp);
  Require(SmtpTextWith(smtp, saved) == saved);
  const bool has_fields = present.find(';') != std::string::npos;
  Require(TailOf(saved) == (has_fields ? TailOf(present) : present));
  return 0;
}
