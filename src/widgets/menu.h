// Menu commands and the menus made of them. "&" in a caption marks the access key. What a command is,
// checkable or the first of a group, is settled before a view is made of it.
#pragma once

#include <string>
#include <vector>

#include "widgets/control.h"

namespace zendrix::widgets {

class MenuItem : public Control {
 public:
  MenuItem(std::string name, std::string text) : Control(std::move(name)), caption(std::move(text)) {}
  Observed<std::string> caption;
  // The key of a toolbar button's picture; empty: the button's own name.
  Observed<std::string> picture;
  // A command that shows a setting as a mark in front of it. The mark is the program's to set: a click does
  // not move it.
  bool checkable = false;
  Observed<bool> checked{false};
  // A line stands above it, or in a toolbar in front of it.
  bool begins_group = false;
  // The keys that stand for it wherever its menu's window is active, as "Ctrl+O"; empty for none.
  std::string shortcut;
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
