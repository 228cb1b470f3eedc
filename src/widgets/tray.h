// The icon in the notification area. Mouse acts on it arrive as the desktop's message numbers.
#pragma once

#include <functional>
#include <string>

#include "widgets/observed.h"

namespace zendrix::widgets {

inline constexpr int kTrayLeftUp = 514;
inline constexpr int kTrayLeftDouble = 515;
inline constexpr int kTrayRightUp = 517;

enum class TrayIcon { kForm, kNotableSystemTrayIcon };

class Tray {
 public:
  // Characters that the tip can hold; its field has one more for the closing NUL.
  static constexpr std::size_t kTipCharacters = 63;

  void SetTip(const std::string& text) { tip = text.substr(0, kTipCharacters); }

  // Whether a desktop shows the icon at the moment; without one a hidden window could not be brought back.
  // Told by the screen toolkit.
  std::function<bool()> hosted = [] { return true; };
  Observed<bool> shown{false};
  Observed<TrayIcon> icon{TrayIcon::kForm};
  Observed<std::string> tip;
  // Whether the desktop may open the icon's menu; it asks nobody then.
  Observed<bool> has_menu{true};
  // Whether a click opens something that would take the second click of a double one, such as a menu: the
  // first one then arrives only when the desktop's time for a double click is over.
  bool click_waits = false;
  // The user did something with the icon.
  Signal<int> mouse;
  // The desktop opens the icon's menu.
  Signal<> menu_opens;
};

}  // namespace zendrix::widgets
