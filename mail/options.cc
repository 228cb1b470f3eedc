#include "mail/options.h"

#include <map>

namespace zendrix::mail {

const char* const kHelpText =
    "Usage: zendrix-mail [--once | --for SECONDS | --try] [--interval SECONDS] [--folder DIR]\n"
    "                    [--settings DIR] [--state DIR] [--authorities FILE]\n"
    "\n"
    "Mails the alerts in DIR/KorvessaMonitoring.kvl as DIR/KorvessaSMTPConfig.kvl says.\n"
    "\n"
    "  --once              read and mail what is new, and end\n"
    "  --for SECONDS       end after that time; without it, run until SIGTERM or SIGINT\n"
    "  --try               send a mail that says that mail arrives, print what became of it, and end\n"
    "  --interval SECONDS  time between two looks at the file, 1 to 3600 (default 2)\n"
    "  --folder DIR        folder of the monitoring file and the log (default: that of this program)\n"
    "  --settings DIR      folder of the SMTP file (default: the same)\n"
    "  --state DIR         folder of what this program keeps (default: the same)\n"
    "  --authorities FILE  certificates to trust in place of the computer's (PEM)\n"
    "  --help              this text\n";

namespace {

// Takes a value into the options; the error, or an empty text.
std::string TakeValue(const std::string& name, const std::string& value, Options& options) {
  if (const auto error = platform::TakeRunTime(name, value, options)) return *error;
  const std::map<std::string, std::string*> texts = {{"--folder", &options.folder},
                                                     {"--settings", &options.settings},
                                                     {"--state", &options.state},
                                                     {"--authorities", &options.authorities}};
  *texts.at(name) = value;
  return value.empty() ? name + " needs a path" : "";
}

}  // namespace

ParsedOptions ParseOptions(const std::vector<std::string>& arguments) {
  ParsedOptions parsed;
  Options& options = parsed.options;
  const std::map<std::string, bool*> switches = {
      {"--help", &options.help}, {"--once", &options.once}, {"--try", &options.trial}};
  const std::string with_value = " --interval --for --folder --settings --state --authorities ";
  for (std::size_t i = 0; i < arguments.size() && parsed.error.empty(); ++i) {
    const std::string& name = arguments[i];
    if (const auto found = switches.find(name); found != switches.end()) {
      *found->second = true;
    } else if (name.find(' ') != std::string::npos ||
               with_value.find(" " + name + " ") == std::string::npos) {
      parsed.error = "unknown argument";
    } else if (i + 1 == arguments.size()) {
      parsed.error = name + " needs a value";
    } else {
      parsed.error = TakeValue(name, arguments[++i], options);
    }
  }
  const int tasks = (options.once ? 1 : 0) + (options.trial ? 1 : 0) + (options.for_seconds ? 1 : 0);
  if (parsed.error.empty() && tasks > 1) parsed.error = "--once, --for and --try exclude each other";
  return parsed;
}

}  // namespace zendrix::mail
