#include "platform/linux/clean_environment.h"

#include <gtest/gtest.h>
#include <spawn.h>
#include <stdlib.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>

#include "support/environment.h"

namespace zendrix::platform {
namespace {

TEST(SteersTheBrowserTest, FamiliesOfBrowserAndToolkitDo) {
  for (const char* name : {"QTWEBENGINE_CHROMIUM_FLAGS",
                           "QTWEBENGINE_REMOTE_DEBUGGING",
                           "QTWEBENGINE_DISABLE_SANDBOX",
                           "QTWEBENGINEPROCESS_PATH",
                           "QTWEBENGINE_RESOURCES_PATH",
                           "CHROMIUM_FLAGS",
                           "CHROME_DEVEL_SANDBOX",
                           "QT_PLUGIN_PATH",
                           "RESOURCE_NAME",
                           "QT_QPA_PLATFORM_PLUGIN_PATH",
                           "QT_QPA_PLATFORMTHEME",
                           "QT_QPA_GENERIC_PLUGINS",
                           "QT_QPA_FONTDIR",
                           "QML2_IMPORT_PATH",
                           "QML_IMPORT_PATH",
                           "QMLSCENE_DEVICE",
                           "QT_QUICK_BACKEND",
                           "QT_QUICK_CONTROLS_STYLE",
                           "http_proxy",
                           "HTTP_PROXY",
                           "https_proxy",
                           "HTTPS_PROXY",
                           "Https_Proxy",
                           "ftp_proxy",
                           "all_proxy",
                           "ALL_PROXY",
                           "auto_proxy",
                           "no_proxy",
                           "NO_PROXY",
                           "SOCKS_SERVER",
                           "socks_version"}) {
    EXPECT_TRUE(SteersTheBrowser(name)) << name;
  }
}

TEST(SteersTheBrowserTest, ScreenLooksLanguageAndAccessibilityDoNot) {
  for (const char* name : {"QT_QPA_PLATFORM",
                           "QT_STYLE_OVERRIDE",
                           "QT_SCALE_FACTOR",
                           "QT_IM_MODULE",
                           "QT_LINUX_ACCESSIBILITY_ALWAYS_ON",
                           "QT_LOGGING_RULES",
                           "QT_PLUGIN_PATHS",
                           "DISPLAY",
                           "WAYLAND_DISPLAY",
                           "XDG_RUNTIME_DIR",
                           "LANG",
                           "LC_ALL",
                           "TZ",
                           "PATH",
                           "HOME",
                           "PROXY",
                           "proxy_x",
                           "SOCKS_SERVERS",
                           "XQTWEBENGINE_X",
                           "qt_plugin_path",
                           ""}) {
    EXPECT_FALSE(SteersTheBrowser(name)) << name;
  }
}

bool Has(const std::vector<std::string>& entries, const std::string& entry) {
  return std::count(entries.begin(), entries.end(), entry) == 1;
}

bool HasName(const std::vector<std::string>& entries, const std::string& name) {
  return std::any_of(entries.begin(), entries.end(),
                     [&](const std::string& entry) { return entry.starts_with(name + "="); });
}

TEST(CleanEnvironmentTest, SteeringVariablesGoAndTheOthersStay) {
  const test::EnvironmentVariable flags("QTWEBENGINE_CHROMIUM_FLAGS", "--remote-debugging-port=9222");
  const test::EnvironmentVariable plugins("QT_PLUGIN_PATH", "/planted");
  const test::EnvironmentVariable proxy("http_proxy", "");
  const test::EnvironmentVariable screen("QT_QPA_PLATFORM", "offscreen");
  const test::EnvironmentVariable style("QT_STYLE_OVERRIDE", "fusion");
  CleanEnvironment();
  EXPECT_EQ(getenv("QTWEBENGINE_CHROMIUM_FLAGS"), nullptr);
  EXPECT_EQ(getenv("QT_PLUGIN_PATH"), nullptr);
  EXPECT_EQ(getenv("http_proxy"), nullptr);
  EXPECT_STREQ(getenv("QT_QPA_PLATFORM"), "offscreen");
  EXPECT_STREQ(getenv("QT_STYLE_OVERRIDE"), "fusion");
}

// With no environment at all there's nothing to clear, and nothing to fall over.
TEST(CleanEnvironmentTest, EmptyEnvironmentStaysEmpty) {
  char** const before = environ;
  char* nothing[] = {nullptr};
  environ = nothing;
  CleanEnvironment();
  EXPECT_EQ(environ[0], nullptr);
  environ = nullptr;
  CleanEnvironment();
  EXPECT_FALSE(HasName(EnvironmentForOthers(), "PATH"));
  environ = before;
}

TEST(CleanEnvironmentTest, ProgramsOfTheUserGetWhatWasThereAtTheStart) {
  constexpr char kAgain[] = "ZENDRIX_STARTED_AGAIN";
  if (!getenv(kAgain)) {
    // This very test once more, in a process that was started with the variables.
    std::string filter = "--gtest_filter=CleanEnvironmentTest.ProgramsOfTheUserGetWhatWasThereAtTheStart";
    std::string program = "test_platform";
    std::string again = std::string(kAgain) + "=1";
    std::string proxy = "http_proxy=http://proxy:3128/";
    char* arguments[] = {program.data(), filter.data(), nullptr};
    char* environment[] = {again.data(), proxy.data(), nullptr};
    pid_t child = 0;
    ASSERT_EQ(posix_spawn(&child, "/proc/self/exe", nullptr, nullptr, arguments, environment), 0);
    int status = 1;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    return;
  }
  CleanEnvironment();
  const test::EnvironmentVariable own("QTWEBENGINE_DISABLE_SANDBOX", "1");
  const test::EnvironmentVariable later("LATER", "x");
  const std::vector<std::string> others = EnvironmentForOthers();
  EXPECT_EQ(getenv("http_proxy"), nullptr);
  EXPECT_TRUE(Has(others, "http_proxy=http://proxy:3128/"));
  EXPECT_TRUE(Has(others, "LATER=x"));
  EXPECT_TRUE(Has(others, "ZENDRIX_STARTED_AGAIN=1"));
  EXPECT_FALSE(HasName(others, "QTWEBENGINE_DISABLE_SANDBOX"));
}

}  // namespace
}  // namespace zendrix::platform
