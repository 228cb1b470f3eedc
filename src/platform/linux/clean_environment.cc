#include "platform/linux/clean_environment.h"

#include <stdlib.h>
#include <unistd.h>

#include <algorithm>
#include <fstream>

namespace zendrix::platform {
namespace {

std::string Upper(std::string_view text) {
  std::string upper(text);
  std::transform(upper.begin(), upper.end(), upper.begin(),
                 [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
  return upper;
}

std::string_view VariableOf(std::string_view entry) {
  return entry.substr(0, entry.find('='));
}

}  // namespace

bool SteersTheBrowser(std::string_view name) {
  if (name == "QT_QPA_PLATFORM") return false;
  for (const std::string_view family :
       {"QTWEBENGINE", "CHROMIUM_", "CHROME_", "QT_QPA_", "QML", "QT_QUICK_"}) {
    if (name.starts_with(family)) return true;
  }
  const std::string upper = Upper(name);
  return name == "QT_PLUGIN_PATH" || name == "RESOURCE_NAME" || upper.ends_with("_PROXY") ||
         upper == "SOCKS_SERVER" || upper == "SOCKS_VERSION";
}

void CleanEnvironment() {
  std::vector<std::string> names;
  for (char** entry = environ; entry && *entry; ++entry) {
    if (const auto name = VariableOf(*entry); SteersTheBrowser(name)) names.emplace_back(name);
  }
  for (const std::string& name : names) unsetenv(name.c_str());
}

std::vector<std::string> EnvironmentForOthers() {
  std::vector<std::string> entries;
  for (char** entry = environ; entry && *entry; ++entry) {
    if (!SteersTheBrowser(VariableOf(*entry))) entries.emplace_back(*entry);
  }
  // The kernel's record of the start knows what has been cleared since, and not what the console has set.
  std::ifstream file("/proc/self/environ", std::ios::binary);
  for (std::string entry; std::getline(file, entry, '\0');) {
    if (SteersTheBrowser(VariableOf(entry))) entries.push_back(entry);
  }
  return entries;
}

}  // namespace zendrix::platform
