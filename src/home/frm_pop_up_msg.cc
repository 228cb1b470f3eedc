#include "home/frm_pop_up_msg.h"

#include "core/desc_lookup.h"
#include "core/guards.h"

namespace zendrix::home {

namespace {
constexpr char kDetailsPlace[] = "frmPopUpMsg:lblDetails_Click";
}

frmPopUpMsg::frmPopUpMsg(core::AppState& app, core::ErrorLog& log, settings::MiscSettings& misc,
                         MainWindow& window)
    : Form(app.forms, "frmPopUpMsg"),
      app_(app),
      log_(log),
      window_(window),
      choice_(app, misc, &core::Settings::PopOrigHigh, chkNotify) {
  title = "Suspicious Event Alert!";
  lblDetails.clicked.ConnectForever([this] { lblDetails_Click(); });
  lblClose.clicked.ConnectForever([this] { lblClose_Click(); });
}

void frmPopUpMsg::OnLoad() {
  std::string caption = chkNotify.caption;
  core::DescLookup(app_.Desc[9], "003,", caption);
  chkNotify.caption = caption;
  choice_.Show();
}

void frmPopUpMsg::OnUnload() {
  core::OrLog(log_, "frmPopUpMsg:Form_Unload", [&] { choice_.Save(); });
}

// Showing the alert serves the event loop. A newer alert may have taken this window over by then, which it
// keeps; and the window may have been closed and gone.
void frmPopUpMsg::lblDetails_Click() {
  const std::weak_ptr<void> form = alive_;
  const std::string asked = Key;
  if (window_.form().enabled) {
    const auto error = core::ErrorOf([&] { window_.ShowAlert(asked); });
    if (form.expired()) return;
    if (error) log_.WriteLog(kDetailsPlace, "Error Showing main form with Alert details.");
  }
  if (Key == asked) Unload();
}

}  // namespace zendrix::home
