// The program put together: platform, state, rooms and windows. One object for the life of the process, made
// after the toolkit's application object and destroyed before it.
#pragma once

#include <memory>

#include "app/options.h"
#include "core/app_state.h"

namespace zendrix::home {
class frmNewUI;
}

namespace zendrix::app {

class Console {
 public:
  explicit Console(const Options& options);
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  // The entry procedure. When it returns, the main window is open; the process then lives in the message
  // loop.
  void Start();

  core::AppState& state();
  // The Home edition's main form; null in the other edition.
  home::frmNewUI* home();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace zendrix::app
