// The three fields in which a user edits the address and the server of the e-mail alerts: what they take,
// when the keyboard may leave them, and whether any of them was edited. They know nothing of the file;
// whoever shows them loads and saves it.
#pragma once

#include "core/app_state.h"
#include "settings/smtp.h"
#include "widgets/screen.h"
#include "widgets/text_box.h"

namespace zendrix::settings {

// The screens show it where the file has no port.
inline constexpr char kStandardPort[] = "25";

class SmtpFields {
 public:
  // Both outlive the object.
  SmtpFields(core::AppState& state, widgets::Screen& screen);
  SmtpFields(const SmtpFields&) = delete;
  SmtpFields& operator=(const SmtpFields&) = delete;

  // Nothing counts as edited behind it.
  void Show(const SmtpData& data);
  SmtpData Data() const { return {Email.text, Server.text, Port.text}; }

  // A field was changed, by whomever, since the last Show.
  bool SmtpDirty = false;

  widgets::TextBox Email{"Email"};
  widgets::TextBox Server{"Server"};
  widgets::TextBox Port{"Port"};

 private:
  bool Valid(bool good, const char* first_line, const char* second_line);

  core::AppState& state_;
};

}  // namespace zendrix::settings
