// The window of frmMoreInfo, the Alert Analysis wizard.
#pragma once

#include "home/frm_more_info.h"
#include "qt/bind_form.h"

namespace zendrix::qt {

class MoreInfoWindow : public FormDialog {
 public:
  MoreInfoWindow(home::frmMoreInfo& form, const Toolkit& kit);
};

}  // namespace zendrix::qt
