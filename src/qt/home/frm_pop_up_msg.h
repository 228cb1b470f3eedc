// The window of frmPopUpMsg.
#pragma once

#include "home/frm_pop_up_msg.h"
#include "qt/home/pop_up_window.h"

namespace zendrix::qt {

class IntrusionPopUp : public PopUpWindow {
 public:
  IntrusionPopUp(home::frmPopUpMsg& form, const Toolkit& kit);
};

}  // namespace zendrix::qt
