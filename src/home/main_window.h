// What pop-ups, notices and the wizard know of the Home console's window.
#pragma once

#include <string>

#include "widgets/form.h"

namespace zendrix::home {

class MainWindow {
 public:
  // Owner of their windows, and disabled while something modal is open.
  virtual widgets::Form& form() = 0;
  // Still in its load: nobody is to be disturbed.
  virtual bool Loading() const = 0;
  // Shown and not minimised: the user sees the list.
  virtual bool InSight() const = 0;
  // Brings the window to the front in its normal state, on the alert with this key ("K" and the ID of its
  // row), or on the topmost one when the key is empty. Raises when there is no such alert.
  virtual void ShowAlert(const std::string& key) = 0;

 protected:
  ~MainWindow() = default;
};

}  // namespace zendrix::home
