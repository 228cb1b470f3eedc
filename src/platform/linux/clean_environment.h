// The environment that the toolkit and its browser would take orders from. A switch in it can open the
// browser's debugger to the network, take its sandbox away, put another program in the browser's place, load
// a plugin from anywhere, or send its traffic through somebody's proxy; none of that is a setting of the
// console. So these families are taken out before the toolkit is started.
//
// Cleared, in every letter case where the readers do not mind it:
//   QTWEBENGINE...           switches, sandbox, debugger, and (QTWEBENGINEPROCESS_PATH) the browser's program
//   CHROMIUM_..., CHROME_... the same for the browser inside
//   QT_PLUGIN_PATH, QT_QPA_... (but QT_QPA_PLATFORM, the name of the screen system): code to load
//   QML..., QT_QUICK_...     import paths and plugins of the scripting layer that the browser is drawn with
//   RESOURCE_NAME            the name by which a desktop knows the windows; the console sets its own
//   ..._proxy, SOCKS_SERVER, SOCKS_VERSION: the console's pages have no business with any host
// Left alone is what only changes looks, language, input method or accessibility (QT_STYLE_OVERRIDE,
// QT_SCALE_FACTOR, QT_IM_MODULE, QT_LINUX_ACCESSIBILITY_ALWAYS_ON, ...): it names plugins, but they are
// looked for in the toolkit's own folder. What the loader of programs reads (LD_PRELOAD, ...) has had its
// effect before the first line of this program and is beyond its reach.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zendrix::platform {

// Whether a variable of this name steers the toolkit's loading or the browser.
bool SteersTheBrowser(std::string_view name);

// Takes those variables out of this process's environment. To be called while there is one thread.
void CleanEnvironment();

// What programs get that are the user's and not the console's, such as the web browser behind a link: the
// present environment, "NAME=value" each, but the families above as they were when this process was started.
std::vector<std::string> EnvironmentForOthers();

}  // namespace zendrix::platform
