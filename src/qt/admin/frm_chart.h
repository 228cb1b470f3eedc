// The Timeline View, a window that its chart fills.
#pragma once

#include "admin/frm_chart.h"
#include "qt/bind_form.h"

namespace zendrix::qt {

class ChartWindow : public FormWindow {
 public:
  ChartWindow(admin::frmChart& form, const Toolkit& toolkit);
};

}  // namespace zendrix::qt
