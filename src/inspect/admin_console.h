// The Administrator console behind a command, started as the executable starts it, and the acts of its user.
#pragma once

#include <string>

#include "console/console.h"
#include "inspect/console.h"

namespace zendrix::inspect {

class AdminConsole {
 public:
  // The grid begins with `file`, which there must be; with none, with the folder's monitoring file.
  AdminConsole(Console& console, const std::string& file);

  admin::frmMain& form() { return *administrator_.administrator(); }
  const admin::EventGrid& grid() { return form().EventList; }
  // The number of a row of the grid; there must be one.
  int Row(const std::string& number);

 private:
  console::Console administrator_;
};

}  // namespace zendrix::inspect
