// Menu commands and the menus made of them. "&" in a caption marks the access key.
#pragma once

#include <string>
#include <vector>

#include "widgets/control.h"

namespace zendrix::widgets {

class MenuItem : public Control {
 public:
  MenuItem(std::string name, std::string text) : Control(std::move(name)), caption(std::move(text)) {}
  Observed<std::string> caption;
  Signal<> clicked;
};

class Menu : public Control {
 public:
  Menu(std::string name, std::string text, std::vector<MenuItem*> commands)
      : Control(std::move(name)), caption(std::move(text)), items(std::move(commands)) {}
  Observed<std::string> caption;
  std::vector<MenuItem*> items;
  // Opens the menu where the pointer is.
  Signal<> popup;
};

}  // namespace zendrix::widgets
