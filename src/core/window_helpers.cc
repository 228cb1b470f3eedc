#include "core/window_helpers.h"

namespace zendrix::core {

void StayOnTop(widgets::Form& form) {
  form.on_top = true;
  form.visible = true;
}

void CentreForm(widgets::Form& form) {
  form.centre.Raise();
}

void ShowPanelProgress(widgets::ProgressBar& dynamic_picture_box, std::int64_t percent) {
  dynamic_picture_box.Show(percent);
}

}  // namespace zendrix::core
