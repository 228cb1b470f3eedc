// The options dialog of the frame.
#include "admin/frm_main.h"
#include "admin/frm_options.h"
#include "widgets/wait_pointer.h"

namespace zendrix::admin {

// A second click may have been on its way when the first one opened the dialog.
void frmMain::MnTOptions_Click() {
  if (!TakesCommands()) return;
  {
    frmOptions options({app, log, reg_ini, screen, GridMonitorList, [this] { ResetClick(); },
                        [this] { replay.SelectedColorChange(); }});
    app.host().ShowModal(options, this);
  }
  if (!loaded()) return;
  const widgets::WaitPointer wait(screen);
  BackgroundUpdate = true;
  UpgradeGrid();
  BackgroundUpdate = false;
  ClearHeaderPictures();
}

}  // namespace zendrix::admin
