// zendrix: the console.
#include <unistd.h>
#include <QApplication>
#include <QLoggingCategory>

#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "app/console.h"
#include "app/end_signals.h"
#include "app/options.h"
#include "core/utils.h"
#include "core/version.h"
#include "qt/details_page.h"

int main(int argc, char** argv) {
  using namespace zendrix;
  std::vector<std::string> early(argv + 1, argv + argc);
  app::Options options = app::ParseOptions(early, app::ExecutablePath());
  if (options.help) {
    std::fputs(app::Usage().c_str(), stdout);
    return 0;
  }
  if (options.version) {
    std::printf(
        "zendrix %s\n",
        core::FormatVersion(core::kVersionMajor, core::kVersionMinor, core::kVersionRevision).c_str());
    return 0;
  }
  if (!options.error.empty()) {
    std::fprintf(stderr, "zendrix: %s\n%s", options.error.c_str(), app::Usage().c_str());
    return 2;
  }
  app::EndSignals::Block();
  qt::RegisterPageScheme();
  // The browser part refuses to start as the superuser inside its own sandbox.
  if (::geteuid() == 0) ::setenv("QTWEBENGINE_DISABLE_SANDBOX", "1", 0);
  // A page of text needs no graphics processor, and a host under attack no more open doors than that.
  ::setenv("QTWEBENGINE_CHROMIUM_FLAGS", "--disable-gpu", 0);
  QLoggingCategory::setFilterRules(QStringLiteral("qt.webenginecontext.info=false"));
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("zendrix"));
  QApplication::setDesktopFileName(QStringLiteral("zendrix"));
  // The console lives in the notification area when its window is closed.
  QApplication::setQuitOnLastWindowClosed(false);
  // The toolkit has taken its own arguments out of the list by now.
  options = app::ParseOptions(std::vector<std::string>(argv + 1, argv + argc), options.exe_path);
  app::Console console(options);
  console.Start();
  return QApplication::exec();
}
