#include "home/notify_choice.h"

namespace zendrix::home {

NotifyChoice::NotifyChoice(core::AppState& state, settings::MiscSettings& misc, bool core::Settings::*flag,
                           widgets::CheckBox& box)
    : state_(state),
      misc_(misc),
      flag_(flag),
      box_(box),
      changed_(misc.changed.Connect([this] { Follow(); })) {}

void NotifyChoice::Show() {
  seen_ = state_.settings.*flag_;
  box_.checked = !seen_;
}

// An announcement says only that something has changed.
void NotifyChoice::Follow() {
  if (state_.settings.*flag_ != seen_) Show();
}

void NotifyChoice::Save() {
  misc_.Set(flag_, !box_.checked);
}

}  // namespace zendrix::home
