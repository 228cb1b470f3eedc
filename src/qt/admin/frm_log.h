// The window of frmLog.
#pragma once

#include "admin/frm_log.h"
#include "qt/bind_form.h"

namespace zendrix::qt {

class LogWindow : public FormWindow {
 public:
  LogWindow(admin::frmLog& form, const Toolkit& toolkit);
};

}  // namespace zendrix::qt
