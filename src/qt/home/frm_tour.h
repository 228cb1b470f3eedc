// The window of frmTour.
#pragma once

#include "home/frm_tour.h"
#include "qt/bind_form.h"

namespace zendrix::qt {

class TourWindow : public FormWindow {
 public:
  TourWindow(home::frmTour& form, const Toolkit& toolkit);
};

}  // namespace zendrix::qt
