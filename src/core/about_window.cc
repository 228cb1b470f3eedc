#include "core/about_window.h"

#include "core/version.h"
#include "core/version_text.h"

namespace zendrix::core {

frmAbout::frmAbout(AppState& app) : Form(app.forms, "frmAbout"), app_(app) {}

void frmAbout::OnLoad() {
  title = "About " + app_.ProductName;
  lblTitle.caption = app_.ProductName;
  lblVersion.caption = "Version " + FormatVersion(kVersionMajor, kVersionMinor, kVersionRevision);
}

void frmAbout::cmdSysInfo_Click() {
  const std::string tool = app_.seams.host.SystemInformationTool();
  if (!tool.empty() && app_.seams.shell.RunHidden({tool})) return;
  app_.seams.message_boxes.Show({app_.ProductName, "System Information Is Unavailable At This Time",
                                 platform::BoxIcon::kNone, platform::BoxButtons::kOk});
}

}  // namespace zendrix::core
