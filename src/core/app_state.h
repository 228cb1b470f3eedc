// The application-wide variables. One object, made by the executable, the inspector or a test before
// anything else and handed to everybody by reference; there are no other globals.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "core/modal_dialogs.h"
#include "core/settings_values.h"
#include "platform/seams.h"
#include "widgets/form.h"
#include "widgets/form_host.h"

namespace zendrix::core {

// Lines of a description file; empty means that there is no data.
using DescArray = std::vector<std::string>;

class AppState {
 public:
  // `outside` outlives the state.
  explicit AppState(const platform::Seams& outside)
      : seams{outside.files,         outside.clock,    outside.locale, outside.host,    outside.shell,
              outside.instance_lock, outside.services, outside.loop,   outside.timers,  message_boxes_,
              file_dialogs_,         colour_dialogs_,  outside.family, outside.process, outside.agent_link},
        message_boxes_(outside.message_boxes, forms),
        file_dialogs_(outside.file_dialogs, forms),
        colour_dialogs_(outside.colour_dialogs, forms) {}
  AppState(const AppState&) = delete;
  AppState& operator=(const AppState&) = delete;

  // What was given, with dialogs that disable the open forms.
  platform::Seams seams;
  widgets::FormList forms;  // all open windows, in the order of opening
  // Puts forms on the screen. Until UseHost nothing is shown.
  widgets::FormHost& host() { return *host_; }
  // `host` is used until the end.
  void UseHost(widgets::FormHost& host) { host_ = &host; }

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
  // Whether the program came with the system's packages: its folder is then several ones, the Agent is the
  // system's service, and nothing in that folder is ever started.
  bool Installed = false;
  // Whether this user of an installed program has no settings yet.
  bool FirstStart = false;
  // The portal endpoint's address up to and with "/redir.asp".
  std::string PortalBase = "http://portal.example.com/redir.asp";

  Settings settings;
  std::array<DescArray, 11> Desc;  // Desc[n] is the array of description file n

  bool IsHome() const { return ProductEdition == "Home"; }

 private:
  ModalMessageBoxes message_boxes_;
  ModalFileDialogs file_dialogs_;
  ModalColourDialogs colour_dialogs_;
  widgets::HiddenForms hidden_;
  widgets::FormHost* host_ = &hidden_;
};

}  // namespace zendrix::core
