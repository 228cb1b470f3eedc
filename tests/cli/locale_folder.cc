#include "cli/locale_folder.h"

#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "support/temporary_folder.h"

namespace zendrix::test {
namespace {

bool Compile(const std::string& name, const std::string& into) {
  std::string words[] = {"localedef", "-i", name, "-f", "UTF-8", into};
  char* arguments[] = {words[0].data(), words[1].data(), words[2].data(), words[3].data(),
                       words[4].data(), words[5].data(), nullptr};
  pid_t pid = -1;
  int status = 0;
  if (posix_spawnp(&pid, "localedef", nullptr, nullptr, arguments, environ) != 0) return false;
  return waitpid(pid, &status, 0) == pid && access((into + "/LC_TIME").c_str(), R_OK) == 0;
}

std::string MakeLocales(const TemporaryFolder& folder) {
  if (const char* given = std::getenv("ZENDRIX_TEST_LOCPATH")) return given;
  for (const char* name : {"en_US", "de_DE"})
    if (!Compile(name, folder.Path(std::string(name) + ".UTF-8"))) return "";
  return folder.path();
}

}  // namespace

const std::string& LocaleFolder() {
  static const TemporaryFolder folder;
  static const std::string path = MakeLocales(folder);
  return path;
}

}  // namespace zendrix::test
