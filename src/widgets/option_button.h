// A button of a group of which at most one is checked.
#pragma once

#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

#include "widgets/control.h"

namespace zendrix::widgets {

class OptionButton : public Control {
 public:
  OptionButton(std::string name, std::string text) : Control(std::move(name)), caption(std::move(text)) {}
  Observed<std::string> caption;
  Observed<bool> checked{false};
  // The user clicked it; it is checked, and the others of its group are not.
  Signal<> clicked;

  // The user's act; the button that is checked already may be clicked again.
  void Click() {
    checked = true;
    clicked.Raise();
  }
};

// Ties buttons together: checking one clears the others. The buttons live as long as the group.
class OptionGroup {
 public:
  OptionGroup(std::initializer_list<OptionButton*> buttons);
  OptionGroup(const OptionGroup&) = delete;
  OptionGroup& operator=(const OptionGroup&) = delete;

  // None is checked from now on.
  void Clear();
  // The index of the checked one, in the order given.
  std::optional<std::size_t> chosen() const;

 private:
  void ClearOthers(const OptionButton* chosen);

  std::vector<OptionButton*> buttons_;
  std::vector<Connection> connections_;
};

}  // namespace zendrix::widgets
