#include "home/help_pane.h"

#include "core/desc_lookup.h"
#include "core/guards.h"
#include "core/version.h"
#include "core/version_text.h"

namespace zendrix::home {
namespace {

constexpr char kHelpDescription[] =
    "Shows what the Zendrix Agent finds on this computer, explains it, and lets you decide about it.";
constexpr char kDisclaimer[] =
    "This program is free software: you may use, share and change it under the terms of the GNU General "
    "Public "
    "License, version 3 or later. It comes with no warranty, to the extent permitted by law.";

}  // namespace

void HelpPane::FillHelpFra() {
  core::OrLog(needs_.log, "frmNewUI:FillHelpFra", [&] {
    hAppTitle.caption = needs_.state.ProductName;
    hVersion.caption =
        "Version " + core::FormatVersion(core::kVersionMajor, core::kVersionMinor, core::kVersionRevision);
    hDescription.caption = kHelpDescription;
    hDisclaimer.caption = kDisclaimer;
    // Last, since a short description file ends the procedure here.
    htopDesc.caption = core::DescAt(needs_.state.Desc[0], 5);
  });
}

}  // namespace zendrix::home
