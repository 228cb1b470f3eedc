// What program this is, and a way to the system information tool.
#pragma once

#include "core/app_state.h"
#include "widgets/form.h"
#include "widgets/label.h"

namespace zendrix::core {

class frmAbout : public widgets::Form {
 public:
  explicit frmAbout(AppState& app);
  ~frmAbout() override { Unload(); }

  widgets::Label lblTitle{"lblTitle"};
  widgets::Label lblVersion{"lblVersion"};

  // Starts the tool, or says that there is none.
  void cmdSysInfo_Click();
  void cmdOK_Click() { Unload(); }

 private:
  void OnLoad() override;

  AppState& app_;
};

}  // namespace zendrix::core
