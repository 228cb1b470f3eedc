#include "agent/options.h"

#include "agent/host/text.h"

namespace zendrix::agent {

const char* const kHelpText =
    "Usage: zendrix-agent [--once | --for SECONDS | --start | --stop | --status] [--interval SECONDS]\n"
    "                     [--folder DIR] [--form home|admin] [--state DIR] [--plain]\n"
    "       zendrix-agent explain [ALERT] [--folder DIR | --state DIR]\n"
    "\n"
    "Watches this computer and appends what it sees to DIR/KorvessaMonitoring.kvl, for the console to read.\n"
    "It changes nothing else on the computer.\n"
    "\n"
    "  --once              look once and end\n"
    "  --for SECONDS       end after that time; without it, run until SIGTERM or SIGINT\n"
    "  --start             start an Agent that goes on by itself, and end when it has looked once\n"
    "  --stop              stop the Agent of the folder, however it was started\n"
    "  --status            print as JSON how the Agent of the folder watches, or would watch, and end\n"
    "  --interval SECONDS  time between two looks at what nobody tells of, 1 to 3600 (default 5)\n"
    "  --folder DIR        folder of the files written (default: that of this program)\n"
    "  --form home|admin   lines for the Home or the Administrator console (default home)\n"
    "  --state DIR         both forms at once, in DIR/home and DIR/admin; for the service\n"
    "  --plain             use nothing that takes a right or reaches into the kernel\n"
    "  --help              this text\n"
    "  explain [ALERT]     say what the risk of an alert is made of: ALERT is its second or its code;\n"
    "                      without it, list the newest\n";

namespace {

// Takes a value into the options; the error, or an empty text.
std::string TakeValue(const std::string& name, const std::string& value, Options& options) {
  if (const auto error = platform::TakeRunTime(name, value, options)) return *error;
  if (name == "--folder") {
    options.folder = value;
    return value.empty() ? "--folder needs a folder" : "";
  }
  if (name == "--state") {
    options.state = value;
    return value.empty() ? "--state needs a folder" : "";
  }
  if (value != "home" && value != "admin") return "--form needs home or admin";
  options.form = value == "home" ? Form::kHome : Form::kAdmin;
  return "";
}

bool TakesValue(const std::string& name) {
  return name == "--interval" || name == "--for" || name == "--folder" || name == "--form" ||
         name == "--state";
}

// kRecord for what names no task.
Task TaskOf(const std::string& argument) {
  if (argument == "--start") return Task::kStart;
  if (argument == "--stop") return Task::kStop;
  return argument == "--status" ? Task::kStatus : Task::kRecord;
}

}  // namespace

ParsedOptions ParseOptions(const std::vector<std::string>& arguments) {
  ParsedOptions parsed;
  Options& options = parsed.options;
  int tasks = 0;
  for (std::size_t i = 0; i < arguments.size() && parsed.error.empty(); ++i) {
    const std::size_t sign = arguments[i].find('=');
    const std::string name = arguments[i].substr(0, sign);
    if (TakesValue(name)) {
      const bool has_value = sign != std::string::npos || i + 1 < arguments.size();
      if (!has_value) {
        parsed.error = name + " needs a value";
        break;
      }
      parsed.error = TakeValue(
          name, sign != std::string::npos ? arguments[i].substr(sign + 1) : arguments[++i], options);
    } else if (arguments[i] == "--once") {
      options.once = true;
    } else if (const Task task = TaskOf(arguments[i]); task != Task::kRecord) {
      options.task = task;
      ++tasks;
    } else if (arguments[i] == "--plain") {
      options.plain = true;
    } else if (arguments[i] == "--help") {
      options.help = true;
    } else if (arguments[i] == "explain" && options.task == Task::kRecord) {
      options.task = Task::kExplain;
      ++tasks;
    } else if (options.task == Task::kExplain && options.alert.empty() && !arguments[i].starts_with("-")) {
      options.alert = arguments[i];
    } else {
      parsed.error = "unknown argument " + CleanName(arguments[i]);
    }
  }
  tasks += options.once + options.for_seconds.has_value();
  if (parsed.error.empty() && tasks > 1)
    parsed.error = "--once, --for, --start, --stop, --status and explain exclude each other";
  const bool in_background = options.task == Task::kStart || options.task == Task::kStop;
  if (parsed.error.empty() && !options.state.empty() && (in_background || !options.folder.empty()))
    parsed.error = "--state goes with neither --folder nor --start nor --stop";
  return parsed;
}

}  // namespace zendrix::agent
