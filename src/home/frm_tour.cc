#include "home/frm_tour.h"

#include "control/portal.h"
#include "core/guards.h"

namespace zendrix::home {

frmTour::frmTour(TourNeeds needs)
    : Form(needs.state.forms, "frmTour"), page(needs.state, WBr), needs_(needs) {
  title = "Getting Started";
  bbutton.enabled = false;
  fbutton.enabled = false;
  bbutton.clicked.ConnectForever([this] { bbutton_Click(); });
  fbutton.clicked.ConnectForever([this] { fbutton_Click(); });
  chkNO.clicked.ConnectForever([this] { chkNO_Click(); });
  WBr.CommandStateChange.ConnectForever([this](int command, bool possible) {
    if (command == widgets::PortalView::kForward) fbutton.enabled = possible;
    if (command == widgets::PortalView::kBack) bbutton.enabled = possible;
  });
}

void frmTour::OnLoad() {
  std::string url;
  // Without an address the procedure ends, and with it the check box stays as it is.
  if (!control::GuardedPortalUrl(needs_.state, needs_.log, needs_.screen, control::PortalRequest::kTour, url))
    return page.SayNoPage();
  page.Navigate(url);
  if (needs_.state.settings.TTour == "Y") chkNO.checked = true;
}

void frmTour::chkNO_Click() {
  core::OrLog(needs_.log, "frmTour : chkNO_Click",
              [&] { needs_.misc.Set(&core::Settings::TTour, chkNO.checked ? "Y" : "N"); });
}

}  // namespace zendrix::home
