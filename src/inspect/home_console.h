// The Home console behind a command, started as the executable starts it, and the acts of its user.
#pragma once

#include <string>

#include "console/console.h"
#include "inspect/console.h"

namespace zendrix::inspect {

class HomeConsole {
 public:
  explicit HomeConsole(Console& console);

  home::frmNewUI& form() { return *home_.home(); }
  alerts::ConsoleAlerts& alerts() { return home_.alerts(); }
  store::CMkvlf& gKvlF() { return home_.gKvlF(); }

  // The row with this ID; there must be one.
  store::Bookmark Row(const std::string& id);
  // Clicks on this row in the alert list, and returns its tag. A row that the list does not show is put
  // there.
  std::string Click(const std::string& id);

 private:
  console::Console home_;
};

}  // namespace zendrix::inspect
