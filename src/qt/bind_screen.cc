#include "qt/bind_screen.h"

#include <QApplication>

#include "qt/bind.h"

namespace zendrix::qt {

void BindScreen(widgets::Screen& screen, QObject* owner) {
  Reflect(owner, screen.MousePointer, [](int shape) {
    while (QApplication::overrideCursor()) QApplication::restoreOverrideCursor();
    if (shape == widgets::kPointerHourglass) QApplication::setOverrideCursor(Qt::WaitCursor);
  });
  Keep(owner, screen.beep.Connect([] { QApplication::beep(); }));
}

}  // namespace zendrix::qt
