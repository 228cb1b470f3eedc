#include "home/frm_new_update.h"

#include "core/guards.h"

namespace zendrix::home {

frmNewUpdate::frmNewUpdate(UpdateNeeds needs)
    : Form(needs.state.forms, "frmNewUpdate"), needs_(needs), file_(needs.state, needs.log) {
  lblYes.clicked.ConnectForever([this] { lblYes_Click(); });
  lblNo.clicked.ConnectForever([this] { lblNo_Click(); });
}

void frmNewUpdate::OnLoad() {
  title = needs_.state.ProductName;
  chkDontAsk.checked = true;
  version_ = file_.Version();
  const bool known = !version_.empty() && version_ != "0.0.0.0";
  lblMsg.caption = (known ? "Version " + version_ + " is now available for installation. "
                          : std::string("A new update for Zendrix is available for installation. ")) +
                   "This update may contain security and bug fixes, in addition to new functionality. "
                   "For this reason it is recommended you upgrade.";
}

// The road ahead does not come back to the event loop before the window has to show this.
void frmNewUpdate::Say(const std::string& text) {
  lblMsg.caption = text;
  repaint.Raise();
}

void frmNewUpdate::lblYes_Click() {
  if (installing_ || !loaded()) return;
  installing_ = true;
  lblYes.enabled = false;
  lblNo.enabled = false;
  core::OrLog(needs_.log, "frmNewUpdate:lblYes_Click",
              [&] { needs_.misc.Set(&core::Settings::DontAsk, chkDontAsk.checked.Get()); });
  needs_.log.WriteLog("frmNewUpdate", "About to install new version " + version_);
  lblMsg2.caption = std::string();
  Say("Wait a moment please. Zendrix is preparing to install.");
  needs_.agent.StopAgent(true);
  Say("Starting the Installer.");
  const bool started = file_.Start();
  installing_ = false;
  if (started) {
    Say("Closing " + needs_.state.ProductName + ".");
    needs_.main.Unload();
  }
  Unload();
}

void frmNewUpdate::lblNo_Click() {
  if (!installing_) Unload();
}

bool frmNewUpdate::QueryUnload(widgets::UnloadCause cause) {
  return !installing_ || cause != widgets::UnloadCause::kCloseBox;
}

}  // namespace zendrix::home
