#include "home/frm_notify_msg.h"

#include "core/desc_lookup.h"
#include "core/moments.h"
#include "core/text_rules.h"

namespace zendrix::home {

frmNotifyMsg::frmNotifyMsg(core::AppState& app, settings::MiscSettings& misc)
    : Form(app.forms, "frmNotifyMsg"),
      app_(app),
      choice_(app, misc, &core::Settings::PopNotifyMs, chkNotify) {
  title = "Korvessa notification";
  lblClose.tip = "Close Window";
  lblClose.clicked.ConnectForever([this] { lblClose_Click(); });
}

void frmNotifyMsg::OnLoad() {
  ApplyTexts();
  choice_.Show();
}

// Of the two messages the second one that is there counts.
void frmNotifyMsg::ApplyTexts() {
  const core::DescArray& texts = app_.Desc[9];
  std::string message = lblMsg.caption;
  core::DescLookup(texts, "022,", message);
  core::DescLookup(texts, "020,", message);
  const core::Date now = core::Now(app_.seams.clock, app_.seams.family);
  lblMsg.caption =
      core::Replace(message, "<date>", core::ShortDateLongTime(now, app_.seams.locale.Current()));
  std::string caption = chkNotify.caption;
  core::DescLookup(texts, "021,", caption);
  chkNotify.caption = caption;
}

void frmNotifyMsg::lblClose_Click() {
  choice_.Save();
  Unload();
}

}  // namespace zendrix::home
