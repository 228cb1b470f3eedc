#include "core/window_helpers.h"

namespace zendrix::core {

void StayOnTop(widgets::Form& form) {
  form.on_top = true;
  form.visible = true;
}

void CentreForm(widgets::Form& form) {
  form.centre.Raise();
}

Place CentredPlace(const ScreenArea& area, int form_width, int form_height) {
  return {(area.width * area.units_per_pixel - form_width) / 2,
          (area.height * area.units_per_pixel - form_height) / 2};
}

void ShowPanelProgress(widgets::ProgressBar& dynamic_picture_box, std::int64_t percent) {
  dynamic_picture_box.Show(percent);
}

}  // namespace zendrix::core
