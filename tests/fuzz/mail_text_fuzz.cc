// A line of the monitoring file on its way into a mail, and the text that keeps it until then. Whatever a
// line says, its mail has nine headers, lines of printable ASCII within 78 characters, and none that ends it;
// and what waits comes back from its text as it was. The input is also taken for such a text itself.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "mail/message.h"
#include "mail/outbox.h"
#include "platform/memory/memory_family.h"

using namespace zendrix::mail;

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

void RequireMail(std::string_view mail) {
  int headers = 0;
  bool in_body = false;
  while (!mail.empty()) {
    const auto end = mail.find("\r\n");
    Require(end != std::string_view::npos && end <= 78);
    const std::string_view line = mail.substr(0, end);
    for (const char byte : line) Require(byte >= ' ' && byte <= '~');
    if (!in_body && line.empty())
      in_body = true;
    else if (!in_body && line.front() != ' ')
      ++headers;
    Require(!in_body || line.empty() || line.front() != '.');
    mail.remove_prefix(end + 2);
  }
  Require(in_body && headers == 9);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  zendrix::platform::MemoryFamily family;
  if (const auto found = Outbox::Parse(text, family))
    Require(Outbox::Parse(found->Text(family), family).has_value());
  auto alert = ParseAlert(text);
  if (!alert)
    alert = ParseAlert("7,h,1,Aggregation|0|0.98|" + std::string(text) + "|" + std::string(text) + "|c|0");
  if (!alert) return 0;
  Outbox outbox;
  outbox.Add(*alert);
  outbox.position.before = text.substr(0, 32);
  const auto again = Outbox::Parse(outbox.Text(family), family);
  Require(again && again->Text(family) == outbox.Text(family) && again->position == outbox.position);
  const MailSettings settings = {
      "me@example.org", "me@example.org", "mail.example.org", 25, Security::kNone, "", ""};
  RequireMail(ComposeMail(settings, {{*alert}, 0}, 8, family));
  RequireMail(ComposeMail(settings, {{*alert, *alert}, 3}, 8, family));
  return 0;
}
