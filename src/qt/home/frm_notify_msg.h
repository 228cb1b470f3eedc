// The window of frmNotifyMsg.
#pragma once

#include "home/frm_notify_msg.h"
#include "qt/home/pop_up_window.h"

namespace zendrix::qt {

class NoticeWindow : public PopUpWindow {
 public:
  NoticeWindow(home::frmNotifyMsg& form, const Toolkit& kit);
};

}  // namespace zendrix::qt
