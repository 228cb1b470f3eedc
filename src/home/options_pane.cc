#include "home/options_pane.h"

#include "core/guards.h"
#include "settings/smtp.h"

namespace zendrix::home {

OptionsPane::OptionsPane(OptionsNeeds needs) : needs_(needs) {}

std::int16_t OptionsPane::CheckEmlSta() {
  int status = kGood;
  core::OrLog(needs_.log, "frmNewUI:CheckEmlSta", [&] {
    if (needs_.state.settings.enblAlr != "0") {
      const settings::SmtpData mail = settings::LoadSMTPData(needs_.state, needs_.log);
      if (mail.Address.empty() || mail.Server.empty()) status = kAttention;
    }
    needs_.row.Flag.picture = FlagOf(status);
    StaImg.picture = FlagOf(status);
    if (status == kAttention && EmailJustSaved) {
      needs_.AttentionPending = true;
      EmailJustSaved = false;
    }
    eTitleDesc.caption = StatusText(needs_.state, kOptionsView, status);
    needs_.row.icDesc.caption = eTitleDesc.caption.Get();
  });
  return static_cast<std::int16_t>(status);
}

}  // namespace zendrix::home
