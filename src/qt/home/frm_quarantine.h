// The window of frmQuarantine.
#pragma once

#include "home/frm_quarantine.h"
#include "qt/bind_form.h"

namespace zendrix::qt {

class QuarantineWindow : public FormDialog {
 public:
  QuarantineWindow(home::frmQuarantine& form, const Toolkit& kit);
};

}  // namespace zendrix::qt
