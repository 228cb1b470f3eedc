// The window of frmFilters.
#pragma once

#include "admin/frm_filters.h"
#include "qt/bind_form.h"

namespace zendrix::qt {

class FiltersWindow : public FormWindow {
 public:
  FiltersWindow(admin::frmFilters& form, const Toolkit& toolkit);

 protected:
  // Enter filters, from wherever it is not taken.
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QLayout* MakeCriteria();
  QLayout* MakeButtons();

  admin::frmFilters& ui_;
};

}  // namespace zendrix::qt
