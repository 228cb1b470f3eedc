#include "qt/home/frm_notify_msg.h"

namespace zendrix::qt {

NoticeWindow::NoticeWindow(home::frmNotifyMsg& form, const Toolkit& kit)
    : PopUpWindow(form, {form.lblTitle, form.lblMsg, form.chkNotify, {&form.lblClose}, "lst32/info"}, kit) {}

}  // namespace zendrix::qt
