#include <stdlib.h>
#include <sys/stat.h>

#include <charconv>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "act/run.h"

namespace {

constexpr char kHelp[] =
    "zendrix-act [--folder DIR] [--file FILE] [--decisions FILE] [--mail FILE] [--agent USER] [--idle MS]\n"
    "            [--patience MS]\n"
    "\n"
    "Puts files in quarantine and brings them back, for the console and the Agent. The system bus starts\n"
    "it; it ends by itself when nobody has asked for anything for a while.\n"
    "\n"
    "  --folder DIR    where the quarantine is (/var/lib/zendrix/quarantine)\n"
    "  --file FILE     the Agent's monitoring file (/var/lib/zendrix/home/KorvessaMonitoring.kvl)\n"
    "  --decisions FILE  where it files decisions for the Agent "
    "(/var/lib/zendrix/decisions/KorvessaActivations.kvl)\n"
    "  --mail FILE     the mailer's settings (/etc/zendrix/KorvessaSMTPConfig.kvl)\n"
    "  --agent USER    the Agent's user (zendrix)\n"
    "  --idle MS       milliseconds without work before it ends (60000)\n"
    "  --patience MS   milliseconds that a user may take to answer (120000)\n"
    "  --help          this text\n";

bool ReadMilliseconds(const std::string& text, std::chrono::milliseconds& into) {
  int number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  into = std::chrono::milliseconds(number);
  return error == std::errc() && end == text.data() + text.size() && number > 0;
}

bool Take(const std::string& name, const std::string& value, zendrix::act::Settings& settings) {
  if (name == "--idle") return ReadMilliseconds(value, settings.idle);
  if (name == "--patience") return ReadMilliseconds(value, settings.patience);
  if (value.empty()) return false;
  if (name == "--folder") settings.folder = value;
  if (name == "--file") settings.monitoring_file = value;
  if (name == "--decisions") settings.decisions_file = value;
  if (name == "--mail") settings.mail_file = value;
  if (name == "--agent") settings.agent = value;
  return name == "--decisions" || name == "--mail" || name == "--folder" || name == "--file" ||
         name == "--agent";
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + (argc > 0), argv + argc);
  if (arguments.size() == 1 && arguments[0] == "--help") {
    std::cout << kHelp;
    return 0;
  }
  zendrix::act::Settings settings;
  bool good = arguments.size() % 2 == 0;
  for (std::size_t i = 0; good && i < arguments.size(); i += 2)
    good = Take(arguments[i], arguments[i + 1], settings);
  if (!good) {
    std::cerr << kHelp;
    return 2;
  }
  // Where autostart entries lie is the accounts' word, not that of whoever started this.
  ::unsetenv("XDG_CONFIG_HOME");
  ::umask(S_IRWXG | S_IRWXO);
  try {
    return zendrix::act::Run(settings);
  } catch (const std::exception& error) {  // out of memory, at most
    std::cerr << "zendrix-act: " << error.what() << "\n";
    return 1;
  }
}
