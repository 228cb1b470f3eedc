#include "qt/browser_start.h"

#include <unistd.h>

#include <QLoggingCategory>
#include <QQuickWindow>
#include <cstdlib>

#include "qt/details_page.h"

namespace zendrix::qt {
namespace {

QtMessageHandler tell_others = nullptr;

// The toolkit asks for a graphics context all the same, and tells each time that there is none.
void TellButOfGraphics(QtMsgType type, const QMessageLogContext& context, const QString& text) {
  for (const char* known :
       {"QXcbIntegration: Cannot create platform OpenGL context", "No suitable graphics backend"})
    if (text.startsWith(QLatin1String(known))) return;
  tell_others(type, context, text);
}

// A page of text needs no graphics processor, and a host under attack no more open doors than that. Without,
// no driver is loaded, a page takes half the memory, and a screen that has no such thing shows it as well.
void DrawWithoutGraphicsProcessor() {
  ::setenv("QT_XCB_GL_INTEGRATION", "none", 1);
  ::setenv("QT_WAYLAND_DISABLE_HW_INTEGRATION", "1", 1);
  QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
  tell_others = qInstallMessageHandler(TellButOfGraphics);
}

}  // namespace

void BeforeBrowser() {
  RegisterPageScheme();
  // The browser part refuses to start as the superuser inside its own sandbox.
  if (::geteuid() == 0) ::setenv("QTWEBENGINE_DISABLE_SANDBOX", "1", 0);
  DrawWithoutGraphicsProcessor();
  // The browser builds the tree that assistive programs read only when it is told to: it does not notice
  // them.
  ::setenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu --force-renderer-accessibility", 0);
  QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext.info=false"));
}

}  // namespace zendrix::qt
