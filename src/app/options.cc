#include "app/options.h"

#include <filesystem>
#include <optional>
#include <string_view>

namespace zendrix::app {

namespace {

// The value of "--name=value" or "--name value"; moves `i` to the last argument used.
std::optional<std::string> ValueOf(std::string_view name, const std::vector<std::string>& arguments,
                                   std::size_t& i) {
  const std::string& argument = arguments[i];
  if (argument == name && i + 1 < arguments.size()) return arguments[++i];
  const std::string with_sign = std::string(name) + "=";
  if (argument.starts_with(with_sign)) return argument.substr(with_sign.size());
  return std::nullopt;
}

std::string WithoutClosingSeparator(std::string path) {
  while (path.size() > 1 && path.back() == '/') path.pop_back();
  return path;
}

}  // namespace

Options ParseOptions(const std::vector<std::string>& arguments, const std::string& exe_path) {
  Options options;
  const std::filesystem::path exe(exe_path);
  options.exe_path = exe_path;
  options.exe_name = exe.stem().string();
  options.folder = exe.parent_path().string();
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (const auto edition = ValueOf("--edition", arguments, i)) {
      options.edition = *edition;
      if (*edition != "Home" && *edition != "Administrator")
        options.error = "--edition is Home or Administrator, not \"" + *edition + "\"";
    } else if (const auto folder = ValueOf("--folder", arguments, i)) {
      std::error_code error;
      const auto path = std::filesystem::canonical(*folder, error);
      if (error)
        options.error = "--folder: \"" + *folder + "\": " + error.message();
      else
        options.folder = path.string();
      options.chosen = true;
    } else if (arguments[i] == "--help" || arguments[i] == "-h") {
      options.help = true;
    } else if (arguments[i] == "--version") {
      options.version = true;
    } else {
      if (!options.command_line.empty()) options.command_line += ' ';
      options.command_line += arguments[i];
    }
  }
  options.folder = WithoutClosingSeparator(options.folder);
  return options;
}

std::string Usage() {
  return "Usage: zendrix [--edition=Home|Administrator] [--folder=DIR] [-ns]\n"
         "\n"
         "  --edition=EDITION  console to open: Home (default) or Administrator\n"
         "  --folder=DIR       program folder with the monitoring file and its side files\n"
         "                     (default: the folder of the executable; where the program is\n"
         "                     installed, the folders of the system and of the user)\n"
         "  -ns                no splash window\n"
         "  -nv                first start after an update: greets, and stays in the notification area\n"
         "  --version          prints the version\n"
         "  --help             prints this text\n";
}

std::string ExecutablePath() {
  std::error_code error;
  const auto path = std::filesystem::canonical("/proc/self/exe", error);
  return error ? std::string("zendrix") : path.string();
}

}  // namespace zendrix::app
