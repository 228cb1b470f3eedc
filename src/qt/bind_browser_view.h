// An embedded browser on a form.
#pragma once

#include "qt/bind.h"
#include "widgets/browser_view.h"

class QWidget;

namespace zendrix::qt {

QWidget* MakeBrowserView(widgets::BrowserView& view, const QString& accessible_name, const Toolkit& kit);

}  // namespace zendrix::qt
