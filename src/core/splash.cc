#include "core/splash.h"

#include "core/version.h"
#include "core/version_text.h"

namespace zendrix::core {

frmSplash::frmSplash(widgets::FormList& forms, std::string the_title)
    : Form(forms, kSplashName), Title(std::move(the_title)) {}

void frmSplash::OnLoad() {
  title = Title;
  PBar.value = 0;
  lblVersion.caption = "Version " + FormatVersion(kVersionMajor, kVersionMinor, kVersionRevision);
  lblProductName.caption = Title;
}

void SetSplashProgress(const widgets::FormList& forms, int percent) {
  if (auto* splash = dynamic_cast<frmSplash*>(forms.Find(kSplashName))) splash->PBar.Show(percent);
}

}  // namespace zendrix::core
