// zendrix-inspect: the console's logic on a terminal.
#include <CLI/CLI.hpp>
#include <iostream>

#include "core/run_time_error.h"
#include "inspect/commands.h"
#include "inspect/console.h"
#include "inspect/document.h"

namespace zendrix::inspect {
namespace {

enum ExitStatus { kDone = 0, kFatal = 1, kWrongUsage = 2, kNotFound = 3 };

// The program's own options, wherever they stand in front of a "--"; everything else is left in `arguments`.
class CommandLine {
 public:
  explicit CommandLine(Options& options) : options_(options) {
    app_.add_option(
            "--folder", options.folder,
            "Program folder (default: the executable's; where installed, the system's and the user's)")
        ->type_name("DIR");
    app_.add_flag("--write", options.write, "Let changes reach the folder");
    app_.add_option("--edition", options.edition, "Home (default) or Administrator")
        ->check(CLI::IsMember({"Home", "Administrator"}));
    app_.add_option("--agent", agent_, "Answer of the service layer: running, stopped or missing")
        ->check(CLI::IsMember({"running", "stopped", "missing"}));
    app_.add_option("--answer", answer_, "Answer to every question: yes (default) or no")
        ->check(CLI::IsMember({"yes", "no"}));
    app_.add_flag("--pretty", options.pretty, "Indent the document");
    app_.footer(
        "Commands: events, follow, log, desc, hash, risk, settings, ini, smtp, valid, token,\n"
        "          alerts, status, alert, decide, act, wizard, checked, link, portal,\n"
        "          quarantine, grid (sort, save, follow, filter, find, replay, state, slots).\n"
        "Options of commands: follow --live; grid --file FILE, filter --host --monitor --change --desc "
        "--from --to,\n"
        "          find --match-case --times, slots --nslots --tslots --tchart.\n"
        "Arguments that begin with \"-\" stand behind \"--\".");
    app_.allow_extras();
  }

  void Parse(int argc, char** argv) {
    app_.parse(argc, argv);
    options_.answer_yes = answer_ == "yes";
    if (!agent_.empty()) options_.agent = agent_;
    options_.chosen = app_.count("--folder") > 0;
    while (options_.folder.size() > 1 && options_.folder.back() == '/') options_.folder.pop_back();
    options_.arguments = app_.remaining();
  }

  std::string Help() const { return app_.help(); }

 private:
  Options& options_;
  CLI::App app_{"Runs the console's own code, without a window, on a program folder and prints JSON.",
                "zendrix-inspect"};
  std::string answer_ = "yes";
  std::string agent_;
};

int Usage(const std::string& text) {
  std::cerr << "zendrix-inspect: " << text.substr(0, text.find('\n')) << '\n';
  return kWrongUsage;
}

// The command and the words behind it. A word that begins with "-" must stand behind "--", but for the
// command's own options and for numbers; the words of a grid see to that themselves.
Words WordsOf(const Options& options) {
  if (!options.arguments.empty() && options.arguments.front() == "grid") return options.arguments;
  Words words;
  bool plain = false;
  for (const std::string& word : options.arguments) {
    if (!plain && word == "--") {
      plain = true;
      continue;
    }
    if (!plain && LooksLikeOption(word) && (words.empty() || words[0] != "follow" || word != "--live"))
      throw WrongUsage("unknown option " + word + " (arguments that begin with \"-\" stand behind --)");
    words.push_back(word);
  }
  return words;
}

int RunCommand(Console& console, Command command, const Words& words) {
  try {
    command(console, words);
    return kDone;
  } catch (const NoSuchThing& error) {
    console.Print({{"error", error.what()}});
    return kNotFound;
  } catch (const platform::ProcessEnded&) {
    console.Print(console.FatalDocument());
  } catch (const core::RunTimeError& error) {
    // An error that no procedure of the console handles ends it just as well.
    console.Print(
        {{"fatal", {{"procedure", ""}, {"number", error.number}, {"description", Text(error.description)}}}});
  }
  return kFatal;
}

int RunWords(const Options& options) {
  Words words = WordsOf(options);
  if (words.empty()) throw WrongUsage("a command is needed; --help lists them");
  const std::string name = words.front();
  words.erase(words.begin());
  const Command command = FindCommand(name);
  if (!command) throw WrongUsage("unknown command '" + name + "'; --help lists them");
  const bool live = name == "follow" && !words.empty();
  try {
    Console console(options, live);
    return RunCommand(console, command, words);
  } catch (const NoSuchThing& error) {
    // The program folder itself: there is no console to tell it.
    const Json document = {{"error", error.what()}, {"messages", Json::array()}, {"log", Json::array()}};
    // The name may be no UTF-8.
    std::cout << document.dump(-1, ' ', false, Json::error_handler_t::replace) << std::endl;
    return kNotFound;
  }
}

int Run(int argc, char** argv) {
  Options options;
  CommandLine command_line(options);
  try {
    command_line.Parse(argc, argv);
    return RunWords(options);
  } catch (const CLI::CallForHelp&) {
    std::cout << command_line.Help();
    return kDone;
  } catch (const CLI::Error& error) {
    return Usage(error.what());
  } catch (const WrongUsage& error) {
    return Usage(error.what());
  }
}

}  // namespace
}  // namespace zendrix::inspect

int main(int argc, char** argv) {
  try {
    return zendrix::inspect::Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "zendrix-inspect: " << error.what() << '\n';
    return zendrix::inspect::kFatal;
  }
}
