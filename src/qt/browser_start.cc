#include "qt/browser_start.h"

#include <unistd.h>

#include <QLoggingCategory>
#include <cstdlib>

#include "qt/details_page.h"

namespace zendrix::qt {

void BeforeBrowser() {
  RegisterPageScheme();
  // The browser part refuses to start as the superuser inside its own sandbox.
  if (::geteuid() == 0) ::setenv("QTWEBENGINE_DISABLE_SANDBOX", "1", 0);
  // A page of text needs no graphics processor, and a host under attack no more open doors than that. The
  // browser builds the tree that assistive programs read only when it is told to: it does not notice them.
  ::setenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu --force-renderer-accessibility", 0);
  QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext.info=false"));
}

}  // namespace zendrix::qt
