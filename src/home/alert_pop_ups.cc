#include "home/alert_pop_ups.h"

#include <string>

#include "alerts/risk.h"
#include "core/desc_lookup.h"
#include "core/text_rules.h"

namespace zendrix::home {

namespace {

constexpr std::size_t kDateLength = 10;
constexpr std::size_t kTimeLength = 11;

std::string Message(const core::DescArray& texts, const std::string& date_time, const std::string& level) {
  std::string message;
  if (!core::DescLookup(texts, "002,", message)) return "";
  const std::string time =
      date_time.size() <= kTimeLength ? date_time : date_time.substr(date_time.size() - kTimeLength);
  message = core::Replace(message, "<crlf>", "\r\n");
  message = core::Replace(message, "<OriRisk>", alerts::kIntrusion);
  message = core::Replace(message, "<ResRisk>", level);
  message = core::Replace(message, "<date>", date_time.substr(0, kDateLength));
  return core::Replace(message, "<time>", time);
}

}  // namespace

void AlertPopUps::ShowAlertPopUp(const store::EventCursor& row) {
  if (window_.Loading() || window_.InSight()) return;
  const auto risk_of = [&](store::Column column) {
    return alerts::GetRiskName(row.Text(column), app_.settings, app_.seams.locale.Current());
  };
  const std::string level = risk_of(store::kChange);
  const bool was_intrusion = app_.settings.PopOrigHigh && risk_of(store::kOriginal) == alerts::kIntrusion;
  if (!was_intrusion && level != alerts::kIntrusion) return;
  if (notice()) notice()->Unload();
  const std::string message = Message(app_.Desc[9], std::string(row.Text(store::kDateTime)), level);
  frmPopUpMsg& pop_up = pop_up_.Open(app_.host(), app_, log_, misc_, window_);
  Show(pop_up);
  if (was_intrusion) pop_up.lblTitle.caption = "Intrusion Alert";
  pop_up.lblMsg.caption = message;
  pop_up.Key = "K" + std::to_string(row.ID());
}

void AlertPopUps::ShowNotification() {
  frmNotifyMsg& notice = notice_.Open(app_.host(), app_, misc_);
  if (notice.visible) notice.ApplyTexts();
  Show(notice);
}

void AlertPopUps::Show(widgets::Form& form) {
  widgets::ShowOptions options;
  options.owner = &window_.form();
  options.on_top = true;
  options.take_focus = false;
  app_.host().Show(form, options);
}

}  // namespace zendrix::home
