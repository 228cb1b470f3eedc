#include "qt/home/frm_pop_up_msg.h"

namespace zendrix::qt {

IntrusionPopUp::IntrusionPopUp(home::frmPopUpMsg& form, const Toolkit& kit)
    : PopUpWindow(
          form,
          {form.lblTitle, form.lblMsg, form.chkNotify, {&form.lblDetails, &form.lblClose}, "lst32/warning"},
          kit) {}

}  // namespace zendrix::qt
