// The screen as a person at the keyboard has it: keys, mouse, and what windows the window manager shows.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

struct _XDisplay;

namespace zendrix::desktop {

using WindowId = unsigned long;  // as the X server numbers them

struct Place {
  int x = 0, y = 0, width = 0, height = 0;
};

class Screen {
 public:
  Screen();
  ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  static bool HasWindowManager();
  // Whether somebody shows the icons of the notification area.
  bool HasTray() const;

  // "Tab", "Return", "shift+F10": names of keys as X has them.
  void Key(const std::string& keys);
  void Type(const std::string& text);
  void Click(int x, int y, unsigned button = 1);
  // Asks as the frame's button does.
  void CloseWindow(WindowId window);
  void Minimise(WindowId window);
  void Move(WindowId window, int x, int y);
  // As a task bar does.
  void Activate(WindowId window);

  // The windows that the window manager has, oldest first.
  std::vector<WindowId> Windows() const;
  std::string TitleOf(WindowId window) const;
  // The first part of its class, by which a desktop finds its entry in the menu.
  std::string EntryOf(WindowId window) const;
  bool IsMinimised(WindowId window) const;
  // Inside the window manager's frame.
  std::optional<Place> PlaceOf(WindowId window) const;
  WindowId Active() const;
  std::optional<WindowId> WithTitle(const std::string& part) const;
  // What is painted there.
  std::vector<unsigned long> Pixels(const Place& place) const;
  // Where the console's icon in the notification area is.
  std::optional<Place> TrayIcon() const;
  // Whether a menu of the console's is open.
  bool HasMenu() const;

 private:
  std::vector<WindowId> Children(WindowId window) const;
  std::optional<Place> IconIn(WindowId window, bool in_tray) const;
  std::pair<std::string, std::string> ClassPartsOf(WindowId window) const;
  std::string ClassOf(WindowId window) const;
  void AskManager(WindowId window, const char* message, long first, long second);
  std::vector<unsigned long> Property(WindowId window, const char* name) const;

  _XDisplay* display_;
};

}  // namespace zendrix::desktop
