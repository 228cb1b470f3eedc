// zendrix-inspect: the console's logic on a terminal.
#include <CLI/CLI.hpp>
#include <filesystem>
#include <iostream>

#include "inspect/commands.h"
#include "inspect/console.h"
#include "inspect/document.h"

namespace zendrix::inspect {
namespace {

std::string ExecutableFolder() {
  std::error_code error;
  const auto path = std::filesystem::read_symlink("/proc/self/exe", error);
  return error ? std::string(".") : path.parent_path().string();
}

// The command line up to the command; everything from there on is left in `arguments`.
class CommandLine {
 public:
  explicit CommandLine(Options& options) : options_(options) {
    app_.add_option("--folder", options.folder, "Program folder (default: the executable's)")
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
        "          alerts, alert, decide, act, checked, link, portal.\n"
        "Arguments that begin with \"-\" stand behind \"--\".");
    app_.prefix_command();
  }

  void Parse(int argc, char** argv) {
    app_.parse(argc, argv);
    options_.answer_yes = answer_ == "yes";
    if (!agent_.empty()) options_.agent = agent_;
    if (options_.folder.empty()) options_.folder = ExecutableFolder();
    while (options_.folder.size() > 1 && options_.folder.back() == '/') options_.folder.pop_back();
    options_.arguments = app_.remaining();
    if (!options_.arguments.empty() && options_.arguments[0] == "--")
      options_.arguments.erase(options_.arguments.begin());
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
  return 2;
}

// The words behind the command. A word that begins with "-" must stand behind "--", but for the command's own
// options.
Words WordsOf(const Options& options) {
  Words words;
  bool plain = false;
  for (std::size_t i = 1; i < options.arguments.size(); ++i) {
    const std::string& word = options.arguments[i];
    if (!plain && word == "--") {
      plain = true;
      continue;
    }
    const bool option = !plain && word.size() > 1 && word[0] == '-';
    if (option && !(options.arguments[0] == "follow" && word == "--live"))
      throw WrongUsage("unknown option " + word + " (arguments that begin with \"-\" stand behind --)");
    words.push_back(word);
  }
  return words;
}

int RunCommand(const Options& options) {
  const Command command = FindCommand(options.arguments[0]);
  if (!command) return Usage("unknown command '" + options.arguments[0] + "'; --help lists them");
  try {
    const Words words = WordsOf(options);
    const bool live = options.arguments[0] == "follow" && !words.empty() && words[0] == "--live";
    Console console(options, live);
    try {
      command(console, words);
      return 0;
    } catch (const NoSuchThing& error) {
      console.Print({{"error", error.what()}});
      return 3;
    } catch (const platform::ProcessEnded&) {
      console.Print(console.FatalDocument());
      return 1;
    }
  } catch (const WrongUsage& error) {
    return Usage(error.what());
  } catch (const NoSuchThing& error) {
    // The program folder itself: there is no console to tell it.
    std::cout << Json{{"error", error.what()}, {"messages", Json::array()}, {"log", Json::array()}}
              << std::endl;
    return 3;
  }
}

int Run(int argc, char** argv) {
  Options options;
  CommandLine command_line(options);
  try {
    command_line.Parse(argc, argv);
  } catch (const CLI::CallForHelp&) {
    std::cout << command_line.Help();
    return 0;
  } catch (const CLI::Error& error) {
    return Usage(error.what());
  }
  if (options.arguments.empty()) return Usage("a command is needed; --help lists them");
  return RunCommand(options);
}

}  // namespace
}  // namespace zendrix::inspect

int main(int argc, char** argv) {
  try {
    return zendrix::inspect::Run(argc, argv);
  } catch (const std::exception& error) {
    std::cerr << "zendrix-inspect: " << error.what() << '\n';
    return 2;
  }
}
