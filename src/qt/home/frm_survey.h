// The window of frmSurvey, and the pane with a portal page that it shares with the tour's.
#pragma once

#include "home/frm_survey.h"
#include "qt/bind_form.h"

class QVBoxLayout;

namespace zendrix::qt {

// The page, which takes all the room there is, and above it the sentence that it cannot be shown.
QVBoxLayout* MakePortalPane(widgets::PortalView& view, home::PortalPage& page, const QString& accessible_name,
                            const Toolkit& kit);

class SurveyWindow : public FormWindow {
 public:
  SurveyWindow(home::frmSurvey& form, const Toolkit& toolkit);
};

}  // namespace zendrix::qt
