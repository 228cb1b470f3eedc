// An embedded browser on a form. The browser costs a lot of memory and time, so it comes into being when it
// is first seen: until then its place keeps what the page would show, and every navigation ends at once.
#pragma once

#include "qt/bind.h"
#include "widgets/browser_view.h"

class QWebEngineView;
class QWidget;

namespace zendrix::qt {

QWidget* MakeBrowserView(widgets::BrowserView& view, const QString& accessible_name, const Toolkit& kit);

// The browser in a widget that MakeBrowserView made; null before it was first seen.
QWebEngineView* BrowserIn(QWidget* widget);

}  // namespace zendrix::qt
