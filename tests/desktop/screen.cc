#include "desktop/screen.h"

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

#include <algorithm>
#include <stdexcept>

namespace zendrix::desktop {
namespace {

constexpr long kMostItems = 4096;

// Windows come and go while they are asked about.
int Ignore(Display*, XErrorEvent*) {
  return 0;
}

// The accessibility bridge hands every key on behind a round trip over its bus. Keys without a pause between
// them, which no hand strikes, would come in another order than the shortcuts that they make.
constexpr unsigned long kBetweenKeysMs = 30;

KeySym SymbolOf(const std::string& name) {
  const KeySym symbol = XStringToKeysym(name.c_str());
  if (symbol == NoSymbol) throw std::runtime_error("no such key: " + name);
  return symbol;
}

}  // namespace

Screen::Screen() : display_(XOpenDisplay(nullptr)) {
  if (!display_) throw std::runtime_error("no screen");
  XSetErrorHandler(Ignore);
}

Screen::~Screen() {
  XCloseDisplay(display_);
}

bool Screen::HasWindowManager() {
  const Screen screen;
  return !screen.Property(DefaultRootWindow(screen.display_), "_NET_SUPPORTING_WM_CHECK").empty();
}

bool Screen::HasTray() const {
  return XGetSelectionOwner(display_, XInternAtom(display_, "_NET_SYSTEM_TRAY_S0", False)) != None;
}

void Screen::Key(const std::string& keys) {
  std::vector<KeyCode> codes;
  for (std::size_t at = 0; at <= keys.size();) {
    const std::size_t end = std::min(keys.find('+', at), keys.size());
    const std::string name = keys.substr(at, end - at);
    codes.push_back(XKeysymToKeycode(display_, name == "shift"  ? XK_Shift_L
                                               : name == "ctrl" ? XK_Control_L
                                               : name == "alt"  ? XK_Alt_L
                                                                : SymbolOf(name)));
    at = end + 1;
  }
  for (const KeyCode code : codes) XTestFakeKeyEvent(display_, code, True, kBetweenKeysMs);
  for (auto code = codes.rbegin(); code != codes.rend(); ++code)
    XTestFakeKeyEvent(display_, *code, False, kBetweenKeysMs);
  XSync(display_, False);
}

void Screen::Type(const std::string& text) {
  for (const char c : text) {
    const auto symbol = static_cast<KeySym>(static_cast<unsigned char>(c));
    const KeyCode code = XKeysymToKeycode(display_, symbol);
    const bool shifted = XkbKeycodeToKeysym(display_, code, 0, 0) != symbol;
    const KeyCode shift = XKeysymToKeycode(display_, XK_Shift_L);
    if (shifted) XTestFakeKeyEvent(display_, shift, True, CurrentTime);
    XTestFakeKeyEvent(display_, code, True, CurrentTime);
    XTestFakeKeyEvent(display_, code, False, CurrentTime);
    if (shifted) XTestFakeKeyEvent(display_, shift, False, CurrentTime);
  }
  XSync(display_, False);
}

void Screen::Click(int x, int y, unsigned button) {
  XTestFakeMotionEvent(display_, -1, x, y, CurrentTime);
  XTestFakeButtonEvent(display_, button, True, CurrentTime);
  XTestFakeButtonEvent(display_, button, False, CurrentTime);
  XSync(display_, False);
}

void Screen::AskManager(WindowId window, const char* message, long first, long second) {
  XEvent event = {};
  event.xclient.type = ClientMessage;
  event.xclient.window = window;
  event.xclient.message_type = XInternAtom(display_, message, False);
  event.xclient.format = 32;
  event.xclient.data.l[0] = first;
  event.xclient.data.l[1] = second;
  XSendEvent(display_, DefaultRootWindow(display_), False, SubstructureRedirectMask | SubstructureNotifyMask,
             &event);
  XSync(display_, False);
}

// 2: a pager asks, on behalf of the user.
void Screen::CloseWindow(WindowId window) {
  AskManager(window, "_NET_CLOSE_WINDOW", 0, 2);
}

void Screen::Activate(WindowId window) {
  AskManager(window, "_NET_ACTIVE_WINDOW", 2, 0);
}

void Screen::Minimise(WindowId window) {
  XIconifyWindow(display_, window, DefaultScreen(display_));
  XSync(display_, False);
}

void Screen::Move(WindowId window, int x, int y) {
  XMoveWindow(display_, window, x, y);
  XSync(display_, False);
}

std::optional<Place> Screen::PlaceOf(WindowId window) const {
  XWindowAttributes attributes;
  if (!XGetWindowAttributes(display_, window, &attributes)) return std::nullopt;
  Place place{0, 0, attributes.width, attributes.height};
  Window child = None;
  XTranslateCoordinates(display_, window, DefaultRootWindow(display_), 0, 0, &place.x, &place.y, &child);
  return place;
}

std::vector<WindowId> Screen::Windows() const {
  const auto listed = Property(DefaultRootWindow(display_), "_NET_CLIENT_LIST");
  return {listed.begin(), listed.end()};
}

std::string Screen::TitleOf(WindowId window) const {
  Atom type = None;
  int format = 0;
  unsigned long items = 0, left = 0;
  unsigned char* bytes = nullptr;
  XGetWindowProperty(display_, window, XInternAtom(display_, "_NET_WM_NAME", False), 0, kMostItems, False,
                     AnyPropertyType, &type, &format, &items, &left, &bytes);
  const std::string title = bytes ? reinterpret_cast<const char*>(bytes) : "";
  if (bytes) XFree(bytes);
  return title;
}

bool Screen::IsMinimised(WindowId window) const {
  const Atom hidden = XInternAtom(display_, "_NET_WM_STATE_HIDDEN", False);
  for (const unsigned long state : Property(window, "_NET_WM_STATE"))
    if (state == hidden) return true;
  return false;
}

WindowId Screen::Active() const {
  const auto active = Property(DefaultRootWindow(display_), "_NET_ACTIVE_WINDOW");
  return active.empty() ? None : active.front();
}

std::optional<WindowId> Screen::WithTitle(const std::string& part) const {
  for (const Window window : Windows())
    if (TitleOf(window).find(part) != std::string::npos) return window;
  return std::nullopt;
}

std::vector<unsigned long> Screen::Pixels(const Place& place) const {
  std::vector<unsigned long> pixels;
  XImage* const image =
      XGetImage(display_, DefaultRootWindow(display_), place.x, place.y, static_cast<unsigned>(place.width),
                static_cast<unsigned>(place.height), AllPlanes, ZPixmap);
  if (!image) return pixels;
  for (int y = 0; y < place.height; ++y)
    for (int x = 0; x < place.width; ++x) pixels.push_back(XGetPixel(image, x, y));
  XDestroyImage(image);
  return pixels;
}

std::vector<WindowId> Screen::Children(WindowId window) const {
  Window root = None, parent = None, *children = nullptr;
  unsigned count = 0;
  if (!XQueryTree(display_, window, &root, &parent, &children, &count)) return {};
  std::vector<WindowId> all(children, children + count);
  if (children) XFree(children);
  return all;
}

// An icon is a window of the console's that the notification area has taken in, at some depth.
std::optional<Place> Screen::IconIn(WindowId window, bool in_tray) const {
  XWindowAttributes attributes;
  if (!XGetWindowAttributes(display_, window, &attributes)) return std::nullopt;
  if (in_tray && ClassOf(window) == "zendrix" && attributes.map_state == IsViewable) return PlaceOf(window);
  in_tray = in_tray || ClassOf(window) == "trayer";
  for (const WindowId each : Children(window))
    if (const auto place = IconIn(each, in_tray)) return place;
  return std::nullopt;
}

std::optional<Place> Screen::TrayIcon() const {
  return IconIn(DefaultRootWindow(display_), false);
}

// The window manager leaves menus alone, and they are no window's children.
bool Screen::HasMenu() const {
  for (const WindowId window : Children(DefaultRootWindow(display_))) {
    XWindowAttributes attributes;
    if (XGetWindowAttributes(display_, window, &attributes) && attributes.override_redirect &&
        attributes.map_state == IsViewable && ClassOf(window) == "zendrix")
      return true;
  }
  return false;
}

std::pair<std::string, std::string> Screen::ClassPartsOf(WindowId window) const {
  XClassHint hint = {};
  if (!XGetClassHint(display_, window, &hint)) return {};
  std::pair<std::string, std::string> parts(hint.res_name ? hint.res_name : "",
                                            hint.res_class ? hint.res_class : "");
  XFree(hint.res_name);
  XFree(hint.res_class);
  return parts;
}

std::string Screen::EntryOf(WindowId window) const {
  return ClassPartsOf(window).first;
}

std::string Screen::ClassOf(WindowId window) const {
  return ClassPartsOf(window).second;
}

std::vector<unsigned long> Screen::Property(WindowId window, const char* name) const {
  Atom type = None;
  int format = 0;
  unsigned long items = 0, left = 0;
  unsigned char* bytes = nullptr;
  XGetWindowProperty(display_, window, XInternAtom(display_, name, False), 0, kMostItems, False,
                     AnyPropertyType, &type, &format, &items, &left, &bytes);
  std::vector<unsigned long> values;
  // The library hands out 32-bit items as longs.
  if (bytes && format == 32) {
    const auto* const all = reinterpret_cast<const unsigned long*>(bytes);
    values.assign(all, all + items);
  }
  if (bytes) XFree(bytes);
  return values;
}

}  // namespace zendrix::desktop
