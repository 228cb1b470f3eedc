#include "widgets/option_button.h"

namespace zendrix::widgets {

OptionGroup::OptionGroup(std::initializer_list<OptionButton*> buttons) : buttons_(buttons) {
  for (OptionButton* button : buttons_)
    connections_.push_back(button->checked.changed.Connect([this, button] {
      if (button->checked) ClearOthers(button);
    }));
}

void OptionGroup::ClearOthers(const OptionButton* chosen) {
  for (OptionButton* button : buttons_)
    if (button != chosen) button->checked = false;
}

void OptionGroup::Clear() {
  ClearOthers(nullptr);
}

std::optional<std::size_t> OptionGroup::chosen() const {
  for (std::size_t i = 0; i < buttons_.size(); ++i)
    if (buttons_[i]->checked) return i;
  return std::nullopt;
}

}  // namespace zendrix::widgets
