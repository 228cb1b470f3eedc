#include "desktop/desktop.h"

#include <atspi/atspi.h>
#include <gio/gio.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <memory>
#include <stdexcept>

#include "desktop/accessible.h"
#include "desktop/eventually.h"
#include "desktop/screen.h"

namespace zendrix::desktop {
namespace {

constexpr int kBusPatienceMs = 60'000;

// What a screen reader says when it comes up: from now on programs are to tell what they show.
void AnnounceScreenReader() {
  GDBusConnection* const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr);
  if (!bus) throw std::runtime_error("no session bus");
  for (const char* property : {"IsEnabled", "ScreenReaderEnabled"}) {
    GVariant* const answer = g_dbus_connection_call_sync(
        bus, "org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
        g_variant_new("(ssv)", "org.a11y.Status", property, g_variant_new_boolean(TRUE)), nullptr,
        G_DBUS_CALL_FLAGS_NONE, kBusPatienceMs, nullptr, nullptr);
    if (!answer) throw std::runtime_error("no accessibility bus");
    g_variant_unref(answer);
  }
}

}  // namespace

Desktop::Desktop(const std::string& folder) : folder_(folder) {
  for (const char* name : {"home", "run", "tmp"}) mkdir((folder + "/" + name).c_str(), 0700);
  environment_ = {{"PATH", "/usr/local/bin:/usr/bin:/bin"},
                  {"HOME", folder + "/home"},
                  {"USER", "tester"},
                  {"XDG_RUNTIME_DIR", folder + "/run"},
                  {"XDG_DATA_DIRS", "/usr/share"},
                  {"XDG_CONFIG_DIRS", "/etc/xdg"},
                  {"TMPDIR", folder + "/tmp"},
                  {"GSETTINGS_BACKEND", "memory"},
                  {"DBUS_SYSTEM_BUS_ADDRESS", "unix:path=" + folder + "/no-system-bus"},
                  {"LC_ALL", "C.UTF-8"},
                  {"TZ", "UTC"}};
  StartScreen();
  StartBuses();
  StartWindowManager();
}

ChildProcess Desktop::Start(const std::vector<std::string>& command, const std::string& name) const {
  return ChildProcess(command, environment_, folder_ + "/" + name + ".out");
}

void Desktop::StartScreen() {
  screen_ = Start({"/usr/bin/Xvfb", "-displayfd", "{fd}", "-screen", "0", "1280x1024x24", "-nolisten", "tcp",
                   "-noreset", "-dpi", "96"},
                  "screen");
  environment_["DISPLAY"] = ":" + screen_.ReadLine();
  // The libraries of this process are to find this desktop and no other.
  clearenv();
  for (const auto& [name, value] : environment_) setenv(name.c_str(), value.c_str(), 1);
}

void Desktop::StartBuses() {
  session_bus_ =
      Start({"/usr/bin/dbus-daemon", "--session", "--nofork", "--nosyslog", "--print-address={fd}"}, "bus");
  environment_["DBUS_SESSION_BUS_ADDRESS"] = session_bus_.ReadLine();
  setenv("DBUS_SESSION_BUS_ADDRESS", environment_["DBUS_SESSION_BUS_ADDRESS"].c_str(), 1);
  accessibility_ = Start({"/usr/libexec/at-spi-bus-launcher", "--launch-immediately"}, "accessibility");
  AnnounceScreenReader();
  if (atspi_init() > 1) throw std::runtime_error("no accessibility library");
  atspi_set_timeout(kBusPatienceMs, kBusPatienceMs);
  Accessible::ListenForFocus();
}

void Desktop::StartWindowManager() {
  window_manager_ = Start({"/usr/bin/openbox", "--sm-disable"}, "windows");
  if (!Eventually([] { return Screen::HasWindowManager(); })) throw std::runtime_error("no window manager");
}

}  // namespace zendrix::desktop
