// The window shown while the program loads.
#pragma once

#include <string>

#include "widgets/form.h"
#include "widgets/label.h"
#include "widgets/progress_bar.h"

namespace zendrix::core {

inline constexpr char kSplashName[] = "frmSplash";

class frmSplash : public widgets::Form {
 public:
  // `title` is the text that the window shows as the product's name.
  frmSplash(widgets::FormList& forms, std::string title);

  std::string Title;
  widgets::ProgressBar PBar{"PBar"};
  widgets::Label lblVersion{"lblVersion"};
  widgets::Label lblProductName{"lblProductName"};
  widgets::Label lblCopyright{"lblCopyright", "Copyright (c) the Korvessa Zendrix developers."};
  widgets::Label lblWarranty{
      "lblWarranty", "Free software under the GNU General Public License, version 3 or later. No warranty."};

  ~frmSplash() override { Unload(); }

 private:
  void OnLoad() override;
};

// Moves the bar of the splash, if it is open, to a percentage.
void SetSplashProgress(const widgets::FormList& forms, int percent);

}  // namespace zendrix::core
