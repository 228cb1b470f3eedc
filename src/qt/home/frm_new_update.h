// The window of frmNewUpdate.
#pragma once

#include "home/frm_new_update.h"
#include "qt/bind_form.h"

namespace zendrix::qt {

class NewUpdateWindow : public FormDialog {
 public:
  NewUpdateWindow(home::frmNewUpdate& form, const Toolkit& kit);
};

}  // namespace zendrix::qt
