#include "core/message_window.h"

#include <algorithm>
#include <limits>

#include "core/run_time_error.h"

namespace zendrix::core {
namespace {

constexpr int kMostSeconds = 65;

}  // namespace

frmMsg::frmMsg(AppState& app)
    : Form(app.forms, "frmMsg"),
      app_(app),
      TimerClose_(app.seams.timers.MakeTimer([this] { TimerClose_Timer(); })) {}

void frmMsg::Display() {
  displayed_ = true;
  app_.host().ShowModal(*this);
  Unload();
}

void frmMsg::OnLoad() {
  title = Title.empty() ? app_.ProductName : Title;
  lblMsg.caption = Message;
  const int seconds = std::min<int>(Seconds, kMostSeconds);
  if (seconds == 0) return;
  const int interval = seconds * 1000;
  if (interval > std::numeric_limits<std::int16_t>::max()) Raise(kOverflow);
  TimerClose_->StartOnce(interval);
}

void frmMsg::OnActivate() {
  if (displayed_) return;
  app_.seams.message_boxes.Show(
      {"frmMsg", "invalid way to show this Dialog Box.\r\nMust be called using the Display method",
       platform::BoxIcon::kStop, platform::BoxButtons::kOk});
  Unload();
}

void frmMsg::OnUnload() {
  TimerClose_->Stop();
}

}  // namespace zendrix::core
