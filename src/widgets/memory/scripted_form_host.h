// Shows forms to a test. Every form shown is written down; a modal one stays "open" while the test's script
// for it runs, in which timers may fire and other windows open, and is closed by its close box if the script
// leaves it open. A modal form without a script is a failure of the test, the exception std::logic_error.
#pragma once

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "widgets/form_host.h"

namespace zendrix::widgets {

class ScriptedFormHost : public FormHost {
 public:
  using Script = std::function<void(Form& form)>;

  // What happens while the next modal form of this name is open; several wait in order.
  void WhileOpen(const std::string& name, Script script) { scripts_[name].push_back(std::move(script)); }

  struct Shown {
    std::string name;
    std::string owner;  // empty without one
    bool on_top = false;
    bool take_focus = true;
    bool modal = false;
    bool operator==(const Shown&) const = default;
  };
  // In the order in which they were shown.
  std::vector<Shown> shown;
  // Called for every form that is shown, when its window is there and nothing of it has been loaded.
  Script on_show;
  // The modal forms whose windows were destroyed at once, by name.
  std::vector<std::string> taken_down;
  // Windows stay behind their forms, as while handlers of theirs run.
  bool windows_linger = false;

  bool HasWindow(const Form& form) const override { return form.loaded() || windows_linger; }

 protected:
  void MakeWindow(Form& form, const ShowOptions& options) override;
  void RunModal(Form& form) override;
  void TakeDown(const Form& form) override { taken_down.push_back(form.name()); }

 private:
  std::map<std::string, std::deque<Script>> scripts_;
};

}  // namespace zendrix::widgets
