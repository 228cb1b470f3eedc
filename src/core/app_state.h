// The application-wide variables. One object, made by the executable, the inspector or a test before
// anything else and handed to everybody by reference; there are no other globals.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/settings_values.h"
#include "platform/seams.h"
#include "widgets/form.h"

namespace zendrix::core {

// Lines of a description file; empty means that there is no data.
using DescArray = std::vector<std::string>;

struct AppState {
  explicit AppState(platform::Seams& the_seams) : seams(the_seams) {}

  platform::Seams& seams;
  widgets::FormList forms;  // all open windows, in the order of opening

  std::string ProductEdition = "Home";  // "Home", or anything else for the Administrator console
  std::string ProductName;              // empty until Main has set it from the edition
  int DateOrder = 0;                    // 0 month-day-year, 1 day-month-year, 2 year-month-day
  std::string CommandLineText;          // lower-cased
  bool NoSplash = false;
  bool UpdatedRun = false;
  // Name of the instance lock. The executable sets one that tells it from its namesakes in other folders;
  // Main completes an empty one to "Global\" and ExeName.
  std::string InstanceMutex;
  std::string MonitoringFilePath;
  std::string ProgramFolder;  // no closing separator
  std::string ExeName = "zendrix";
  // The portal endpoint's address up to and with "/redir.asp".
  std::string PortalBase = "http://portal.example.com/redir.asp";

  Settings settings;
  std::array<DescArray, 11> Desc;  // Desc[n] is the array of description file n

  bool IsHome() const { return ProductEdition == "Home"; }
};

}  // namespace zendrix::core
