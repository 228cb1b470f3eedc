// The windows of the Home console that show pages of the portal, one of each kind at most.
#pragma once

#include "home/frm_survey.h"
#include "home/frm_tour.h"
#include "widgets/reopened_window.h"

namespace zendrix::home {

class PortalWindows {
 public:
  // `main` owns the survey's window and outlives this.
  PortalWindows(TourNeeds needs, widgets::Form& main) : needs_(needs), main_(main) {}
  PortalWindows(const PortalWindows&) = delete;
  PortalWindows& operator=(const PortalWindows&) = delete;

  // The tour that is open, or a new one, to be shown by the caller.
  frmTour& Tour();
  // Opens the tour, or brings the one that is open to the front.
  void ShowTour();
  // Opens the survey. A failure is logged, and nothing opens.
  void TakeSurvey();

  // Null before the first survey.
  frmSurvey* survey() { return survey_.get(); }

 private:
  TourNeeds needs_;
  widgets::Form& main_;
  widgets::Reopened<frmTour> tour_;
  widgets::Reopened<frmSurvey> survey_;
};

}  // namespace zendrix::home
