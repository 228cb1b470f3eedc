// The console as a process on a private desktop: an installation, a program folder, and verbs. `Find...`
// looks once, `Await...` until the thing is there and throws with what is on the screen when it never comes.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "desktop/accessible.h"
#include "desktop/child_process.h"
#include "desktop/desktop.h"
#include "desktop/screen.h"
#include "support/temporary_folder.h"

namespace zendrix::desktop {

// What every test of this process shares, set up by main: the installation, readable by all, and the desktop.
struct Stage {
  std::string installation;
  std::unique_ptr<Desktop> desktop;
};
Stage& TheStage();

// Copies the programs, their library and their data out of the build.
void Install(const std::string& from, const std::string& to);

class ConsoleProgram {
 public:
  ConsoleProgram();

  const test::TemporaryFolder& folder() const { return folder_; }
  // One event `seconds` behind the newest one; its row number in the list of all.
  int Event(const std::string& monitor, const std::string& description, const std::string& change = "0",
            const std::string& reaction = "", const std::string& code = "C,1");
  void Setting(const std::string& key, const std::string& value);
  // The value that the program saved, from the settings file.
  std::string Saved(const std::string& key) const;
  std::string Log() const;

  void Start(const std::vector<std::string>& more = {"-ns"});
  // Reading a file of megabytes takes seconds.
  void StartOnSlowDisk();
  // Started, its window on the screen and in the accessibility tree.
  void StartAndWait(const std::vector<std::string>& more = {"-ns"});
  ChildProcess& process() { return process_; }
  ChildProcess& second() { return second_; }
  void StartSecond();

  // The program on the bus.
  Accessible Tree();
  std::optional<Accessible> Find(const std::string& role, const std::string& name);
  Accessible Await(const std::string& role, const std::string& name);
  // Something whose text holds this.
  Accessible AwaitText(const std::string& part);
  bool HasText(const std::string& part);
  void AwaitGone(const std::string& role, const std::string& name);
  void Press(const std::string& role, const std::string& name);
  // Presses Tab (or another key) until the thing has the focus.
  void MoveFocusTo(const std::string& role, const std::string& name, const std::string& key = "Tab");
  // Role and name of what has the focus: push button "Help".
  static std::string FocusLabel();
  void ClickOn(const Accessible& thing, unsigned button = 1);
  void OpenPane(const std::string& name);
  // Asks for the end, and says Yes; the process has ended behind it.
  void Quit();
  // The alert's row, by a text of it.
  Accessible AwaitRow(const std::string& text);
  WindowId MainWindow();
  bool IsActive();

  Screen& screen() { return screen_; }

 private:
  test::TemporaryFolder folder_;
  Screen screen_;
  ChildProcess process_, second_;
  long long next_moment_;
  int events_ = 0;
};

}  // namespace zendrix::desktop
