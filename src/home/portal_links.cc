#include "home/portal_links.h"

#include "control/portal.h"

namespace zendrix::home {

using control::PortalRequest;

PortalLinks::PortalLinks(PortalLinksNeeds needs) : needs_(std::move(needs)) {
  for (widgets::Label* label : {&Feedbacklbl, &Feedback})
    label->clicked.ConnectForever([this] { Feedback_Click(); });
  for (widgets::Label* label : {&NewVerlbl, &NewVer})
    label->clicked.ConnectForever([this] { NewVer_Click(); });
  for (widgets::Label* label : {&Supportlbl, &Support})
    label->clicked.ConnectForever([this] { Support_Click(); });
  hGetStr.clicked.ConnectForever([this] { hGetStr_Click(); });
  Feedbacklbl.tip = "Tell the makers what you think, in your web browser";
  NewVerlbl.tip = "Look for a new version, in your web browser";
  Supportlbl.tip = "Ask for help, in your web browser";
}

void PortalLinks::Feedback_Click() {
  control::OpenPortal(needs_.state, needs_.log, needs_.screen, PortalRequest::kFeedback);
}

void PortalLinks::NewVer_Click() {
  control::OpenPortal(needs_.state, needs_.log, needs_.screen, PortalRequest::kNewVersion);
}

void PortalLinks::Support_Click() {
  control::OpenPortal(needs_.state, needs_.log, needs_.screen, PortalRequest::kSupport);
}

void PortalLinks::hGetStr_Click() {
  if (needs_.ShowTour) needs_.ShowTour();
}

}  // namespace zendrix::home
