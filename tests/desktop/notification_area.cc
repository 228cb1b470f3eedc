#include "desktop/notification_area.h"

#include <stdexcept>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {

NotificationArea::NotificationArea(Screen& screen)
    : screen_(screen),
      area_(TheStage().desktop->Start(
          {"/usr/bin/trayer", "--edge", "top", "--align", "left", "--widthtype", "request"}, "tray")) {
  if (!Eventually([&] { return screen_.HasTray(); }))
    throw std::runtime_error("no notification area: " + area_.Output());
}

void NotificationArea::AwaitIcon() {
  if (!Eventually([&] { return screen_.TrayIcon().has_value(); })) throw std::runtime_error("no icon");
}

std::vector<unsigned long> NotificationArea::Icon() const {
  return screen_.Pixels(*screen_.TrayIcon());
}

void NotificationArea::Click(unsigned button) {
  const Place icon = *screen_.TrayIcon();
  screen_.Click(icon.x + icon.width / 2, icon.y + icon.height / 2, button);
}

}  // namespace zendrix::desktop
