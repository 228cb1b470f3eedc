#include "home/portal_windows.h"

#include "control/portal.h"

namespace zendrix::home {

frmTour& PortalWindows::Tour() {
  return tour_.Open(needs_.state.host(), needs_);
}

void PortalWindows::ShowTour() {
  frmTour& tour = Tour();
  needs_.state.host().Show(tour);
  tour.BringUp();
}

void PortalWindows::TakeSurvey() {
  std::string url;
  if (!control::GuardedPortalUrl(needs_.state, needs_.log, needs_.screen, control::PortalRequest::kSurvey,
                                 url))
    return;
  widgets::ShowOptions above_the_console;
  above_the_console.owner = &main_;
  widgets::FormHost& host = needs_.state.host();
  host.Show(survey_.Open(host, needs_.state, url), above_the_console);
}

}  // namespace zendrix::home
