// The window of frmFind.
#pragma once

#include "admin/frm_find.h"
#include "qt/bind_form.h"

namespace zendrix::qt {

class FindDialog : public FormDialog {
 public:
  FindDialog(admin::frmFind& form, const Toolkit& kit);
};

}  // namespace zendrix::qt
