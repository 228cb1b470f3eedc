// What the logic asks of windows as such. The requests are carried out by whoever shows the form.
#pragma once

#include <cstdint>

#include "widgets/form.h"
#include "widgets/progress_bar.h"

namespace zendrix::core {

// Shows the form and keeps it above all other windows, where it is and in the size that it has.
void StayOnTop(widgets::Form& form);
// Asks for the form's place to be the middle of the usable screen area.
void CentreForm(widgets::Form& form);

// The bar that an Administrator status bar shows in a panel while the grid loads goes by this name.
inline constexpr char kDynamicPictureBox[] = "DynamicPictureBox";
// Shows a percentage in it, 100 at most.
void ShowPanelProgress(widgets::ProgressBar& dynamic_picture_box, std::int64_t percent);

}  // namespace zendrix::core
