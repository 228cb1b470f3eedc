// zendrix: the console.
#include <QApplication>
#include <cstdio>
#include <string>
#include <vector>

#include "app/console.h"
#include "app/options.h"
#include "app/prepare.h"
#include "core/version.h"
#include "core/version_text.h"

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
  app::BeforeApplication(options.edition);
  QApplication application(argc, argv);
  app::AfterApplication(options.edition);
  // The toolkit has taken its own arguments out of the list by now.
  options = app::ParseOptions(std::vector<std::string>(argv + 1, argv + argc), options.exe_path);
  app::Console console(options);
  console.Start();
  return QApplication::exec();
}
