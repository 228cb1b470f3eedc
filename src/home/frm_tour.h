// The getting-started tour: a page of the portal with a way back and forth, and a check box that keeps it
// from coming at every start.
#pragma once

#include "core/app_state.h"
#include "core/error_log.h"
#include "home/portal_page.h"
#include "settings/misc_settings.h"
#include "widgets/check_box.h"
#include "widgets/form.h"
#include "widgets/screen.h"

namespace zendrix::home {

// Everything outlives the form.
struct TourNeeds {
  core::AppState& state;
  core::ErrorLog& log;
  settings::MiscSettings& misc;
  widgets::Screen& screen;
};

class frmTour : public widgets::Form {
 public:
  explicit frmTour(TourNeeds needs);
  ~frmTour() override { Unload(); }

  void bbutton_Click() { page.GoBack(); }
  void fbutton_Click() { page.GoForward(); }
  // Kept at once.
  void chkNO_Click();

  widgets::PortalView WBr{"WBr"};
  PortalPage page;
  widgets::Label bbutton{"bbutton", "Back"};
  widgets::Label fbutton{"fbutton", "Forward"};
  widgets::CheckBox chkNO{"chkNO", "Do not show this at start"};

 protected:
  void OnLoad() override;
  void OnUnload() override { page.Stop(); }

 private:
  TourNeeds needs_;
};

}  // namespace zendrix::home
