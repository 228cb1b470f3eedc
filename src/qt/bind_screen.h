// The pointer's shape and the beep.
#pragma once

#include <QObject>

#include "widgets/screen.h"

namespace zendrix::qt {

// Lasts as long as `owner`.
void BindScreen(widgets::Screen& screen, QObject* owner);

}  // namespace zendrix::qt
