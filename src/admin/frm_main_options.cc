// The options dialog of the frame.
#include "admin/frm_main.h"
#include "admin/frm_options.h"
#include "widgets/wait_pointer.h"

namespace zendrix::admin {

// A second click may have been on its way when the first one opened the dialog.
void frmMain::MnTOptions_Click() {
  if (UpdateBusy || RefreshBusy || !enabled) return;
  {
    frmOptions options(
        {app_, parts_.log, parts_.reg_ini, parts_.screen, GridMonitorList, [this] { ResetClick(); }});
    app_.host().ShowModal(options, this);
  }
  if (!loaded()) return;
  const widgets::WaitPointer wait(parts_.screen);
  BackgroundUpdate = true;
  UpgradeGrid();
  BackgroundUpdate = false;
  ClearHeaderPictures();
}

}  // namespace zendrix::admin
