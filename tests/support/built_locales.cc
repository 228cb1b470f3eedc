#include "support/built_locales.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string_view>

#include "platform/linux/linux_locale.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/lsan_interface.h>
#define ZENDRIX_LEAKS_ARE_LOOKED_FOR
#endif
#endif

namespace zendrix::test {
namespace {

namespace fs = std::filesystem;

constexpr char kSources[] = "/usr/share/i18n/locales";

bool SaysHowDatesAreWritten(const fs::path& source) {
  std::ifstream file(source);
  for (std::string line; std::getline(file, line);) {
    if (line == "LC_TIME") return true;
  }
  return false;
}

// The categories that are left out are those of no locale, which saves most of the time; the compiler says so
// and must be told to go on.
std::string DatesAndNumbersOf(const std::string& source) {
  return "LC_CTYPE\ncopy \"POSIX\"\nEND LC_CTYPE\nLC_TIME\ncopy \"" + source +
         "\"\nEND LC_TIME\nLC_NUMERIC\ncopy \"" + source + "\"\nEND LC_NUMERIC\n";
}

bool Compile(const std::string& source, const std::string& to) {
  std::string words[] = {"localedef", "-c", "--quiet", "-i", source, "-f", "UTF-8", to};
  char* arguments[std::size(words) + 1] = {};
  std::ranges::transform(words, arguments, [](std::string& word) { return word.data(); });
  posix_spawn_file_actions_t silent;
  posix_spawn_file_actions_init(&silent);
  posix_spawn_file_actions_addopen(&silent, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t pid = -1;
  int status = 0;
  const bool ran = posix_spawnp(&pid, words[0].c_str(), &silent, nullptr, arguments, environ) == 0 &&
                   waitpid(pid, &status, 0) == pid;
  posix_spawn_file_actions_destroy(&silent);
  return ran && WIFEXITED(status) && fs::exists(to + "/LC_TIME");
}

}  // namespace

std::vector<std::string> LocaleSources() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(kSources)) {
    const std::string name = entry.path().filename();
    const bool no_language = name == "C" || name == "POSIX" || name.starts_with("i18n");
    if (!no_language && SaysHowDatesAreWritten(entry.path())) names.push_back(name);
  }
  std::ranges::sort(names);
  return names;
}

std::string LocaleFolder() {
  const char* given = std::getenv("ZENDRIX_TEST_LOCPATH");
  std::string folder = given ? given : ZENDRIX_BUILT_LOCALES;
  fs::create_directories(folder);
  return folder;
}

std::string BuildLocale(const std::string& source) {
  const std::size_t modifier = std::min(source.find('@'), source.size());
  const std::string name = source.substr(0, modifier) + ".UTF-8" + source.substr(modifier);
  const std::string folder = LocaleFolder();
  const auto there = [&] { return fs::exists(folder + "/" + name + "/LC_TIME"); };
  if (there()) return name;
  // Made aside and renamed, so that nobody ever sees half a locale.
  const TemporaryFolder aside(folder);
  aside.Write("source", DatesAndNumbersOf(source));
  // A few sources crash the compiler in this short form.
  if (!Compile(aside.Path("source"), aside.Path(name)) && !Compile(source, aside.Path(name))) return "";
  std::error_code taken;
  fs::rename(aside.Path(name), folder + "/" + name, taken);
  return there() ? name : "";
}

platform::LocaleInfo SettingsOf(const std::string& locale) {
  const EnvironmentVariable folder("LOCPATH", LocaleFolder());
  const EnvironmentVariable all("LC_ALL", locale);
#ifdef ZENDRIX_LEAKS_ARE_LOOKED_FOR
  // The C library never frees what it makes of LOCPATH.
  const __lsan::ScopedDisabler no_leak_of_ours;
#endif
  return platform::LinuxLocale().Current();
}

}  // namespace zendrix::test
