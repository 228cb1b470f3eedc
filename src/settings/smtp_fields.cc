#include "settings/smtp_fields.h"

#include <string>

#include "core/validation.h"

namespace zendrix::settings {

SmtpFields::SmtpFields(core::AppState& state, widgets::Screen& screen) : state_(state) {
  for (widgets::TextBox* box : {&Email, &Server, &Port})
    box->text.changed.ConnectForever([this] { SmtpDirty = true; });
  Email.valid = [this] {
    return Valid(core::IsValidEmail(Email.text.Get()), "Not a valid email address.",
                 "should be as in: 'name@domain.ext'");
  };
  Server.valid = [this] {
    return Valid(core::IsValidServer(Server.text.Get()), "Not a valid Server name.",
                 "should be as in: 'server.maildomain.ext'");
  };
  TakeDigits(Port, screen);
}

bool SmtpFields::Valid(bool good, const char* first_line, const char* second_line) {
  if (!good) {
    state_.seams.message_boxes.Show(
        {state_.ProductName, std::string(first_line) + "\r\n" + second_line, platform::BoxIcon::kStop});
  }
  return good;
}

void SmtpFields::Show(const SmtpData& data) {
  Email.text = data.Address;
  Server.text = data.Server;
  Port.text = data.Port.empty() ? kStandardPort : data.Port;
  SmtpDirty = false;
}

}  // namespace zendrix::settings
