// The console as a process of its own: what another process can see of it.
#include <gmock/gmock.h>

#include <QPluginLoader>
#include <QProcess>
#include <QTest>
#include <filesystem>
#include <functional>

#include "core/hash_utils.h"
#include "e2e/patience.h"
#include "platform/linux/linux_family.h"
#include "platform/linux/linux_files.h"
#include "support/temporary_folder.h"

namespace zendrix::e2e {
namespace {

using ::testing::HasSubstr;

constexpr char kLog[] = "KorvessaAdministratorEventLog.kvl";

class ProcessTest : public ::testing::Test {
 protected:
  ProcessTest() {
    folder_.Write("KorvessaMonitoring.kvl", "1795225500,HOST,7,Running Processes|0|0|/usr/bin/first|||x\r\n");
    folder_.Write("zendrix.ini", "[Misc]\r\nDetSho=1\r\n");
    platform::LinuxFiles files;
    platform::LinuxFamily family("/");
    core::HashUtils(files, family).StoreFileHash(folder_.Path("zendrix.ini"));
  }
  void Start(QProcess& process, const QStringList& more = {}) {
    process.start(QStringLiteral(ZENDRIX_EXECUTABLE),
                  QStringList{QStringLiteral("--folder=") + QString::fromStdString(folder_.path())} + more);
    ASSERT_TRUE(process.waitForStarted(kPatienceMs));
  }
  // Waits for the condition, a bounded time.
  static bool Wait(const std::function<bool()>& condition) { return QTest::qWaitFor(condition, kPatienceMs); }
  bool Logged(const std::string& text) const { return folder_.Read(kLog).find(text) != std::string::npos; }
  int LoggedTimes(const std::string& text) const {
    const std::string log = folder_.Read(kLog);
    int times = 0;
    for (auto at = log.find(text); at != std::string::npos; at = log.find(text, at + 1)) ++times;
    return times;
  }

  test::TemporaryFolder folder_;
};

TEST_F(ProcessTest, StartsAndEndsWhenAskedTo) {
  QProcess console;
  Start(console);
  ASSERT_TRUE(Wait([&] { return Logged("'Load': UI started."); })) << folder_.Read(kLog);
  console.terminate();
  ASSERT_TRUE(console.waitForFinished(kPatienceMs));
  EXPECT_EQ(console.exitStatus(), QProcess::NormalExit);
  EXPECT_EQ(console.exitCode(), 0);
  EXPECT_TRUE(Logged("'Unload': Ending version"));
}

// QT_PLUGIN_PATH had the console load a stranger's code, and QTWEBENGINEPROCESS_PATH put a stranger's program
// in the place of its browser.
TEST_F(ProcessTest, HostileEnvironmentPlantsNothing) {
#ifdef ZENDRIX_TEST_BUILD
  GTEST_SKIP() << "this build keeps the environment";
#endif
  folder_.Write("browser", "#!/bin/sh\n: > '" + folder_.Path("browser-mark") + "'\n");
  std::filesystem::permissions(folder_.Path("browser"), std::filesystem::perms::owner_all);
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  const auto set = [&](const char* name, const std::string& value) {
    environment.insert(QString::fromLatin1(name), QString::fromStdString(value));
  };
  set("QT_PLUGIN_PATH", ZENDRIX_PLANTED_PLUGINS);
  set("QT_STYLE_OVERRIDE", "planted");
  set("ZENDRIX_PLANTED_MARK", folder_.Path("plugin-mark"));
  set("QTWEBENGINEPROCESS_PATH", folder_.Path("browser"));
  set("QT_QPA_PLATFORM_PLUGIN_PATH", "/nonexistent");
  set("QT_QPA_PLATFORMTHEME", "planted");
  set("http_proxy", "http://127.0.0.1:9/");
  QProcess console;
  console.setProcessEnvironment(environment);
  Start(console);
  ASSERT_TRUE(Wait([&] { return Logged("'Load': UI started."); })) << folder_.Read(kLog);
  console.terminate();
  ASSERT_TRUE(console.waitForFinished(kPatienceMs));
  EXPECT_EQ(console.exitCode(), 0);
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("plugin-mark")));
  EXPECT_FALSE(std::filesystem::exists(folder_.Path("browser-mark")));
  // The plant is a live one: it does leave its mark where it is loaded.
  qputenv("ZENDRIX_PLANTED_MARK", QByteArray::fromStdString(folder_.Path("plugin-mark")));
  EXPECT_TRUE(QPluginLoader(QStringLiteral(ZENDRIX_PLANTED_STYLE)).load());
  EXPECT_TRUE(std::filesystem::exists(folder_.Path("plugin-mark")));
  qunsetenv("ZENDRIX_PLANTED_MARK");
}

TEST_F(ProcessTest, AdministratorEditionStarts) {
  QProcess console;
  Start(console, {QStringLiteral("--edition=Administrator"), QStringLiteral("-ns")});
  ASSERT_TRUE(Wait([&] { return Logged("'Initial': Start UI."); })) << folder_.Read(kLog);
  EXPECT_TRUE(Logged("Do not show Splash screen."));
  console.terminate();
  ASSERT_TRUE(console.waitForFinished(kPatienceMs));
  EXPECT_EQ(console.exitCode(), 0);
}

TEST_F(ProcessTest, SecondStartTouchesNothingAndTheFirstGoesOn) {
  QProcess first, second;
  Start(first);
  ASSERT_TRUE(Wait([&] { return Logged("'Load': UI started."); }));
  // The toolkit tells what it shows to those who cannot see.
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("qt.accessibility.cache.debug=true"));
  second.setProcessEnvironment(environment);
  second.setProcessChannelMode(QProcess::MergedChannels);
  Start(second);
  QByteArray shown;
  ASSERT_TRUE(Wait([&] {
    second.waitForReadyRead(10);
    shown += second.readAll();
    return shown.contains("Another instance of this program is already open.");
  })) << shown.toStdString();
  EXPECT_EQ(LoggedTimes("Loading version"), 1);
  second.terminate();
  ASSERT_TRUE(second.waitForFinished(kPatienceMs));
  EXPECT_EQ(second.exitCode(), 0);
  EXPECT_EQ(first.state(), QProcess::Running);
  first.terminate();
  ASSERT_TRUE(first.waitForFinished(kPatienceMs));
}

TEST_F(ProcessTest, KilledConsoleLeavesTheWayFreeForTheNext) {
  QProcess killed;
  Start(killed);
  ASSERT_TRUE(Wait([&] { return Logged("'Load': UI started."); }));
  killed.kill();
  ASSERT_TRUE(killed.waitForFinished(kPatienceMs));
  QProcess next;
  Start(next);
  EXPECT_TRUE(Wait([&] { return LoggedTimes("'Load': UI started.") == 2; })) << folder_.Read(kLog);
  next.terminate();
  ASSERT_TRUE(next.waitForFinished(kPatienceMs));
}

TEST_F(ProcessTest, WrongEditionIsRefusedWithTheUsage) {
  QProcess console;
  Start(console, {QStringLiteral("--edition=Other")});
  ASSERT_TRUE(console.waitForFinished(kPatienceMs));
  EXPECT_EQ(console.exitCode(), 2);
  EXPECT_THAT(console.readAllStandardError().toStdString(), HasSubstr("--edition is Home or Administrator"));
}

TEST_F(ProcessTest, HelpAndVersionNeedNoScreen) {
  for (const char* option : {"--help", "--version"}) {
    QProcess console;
    console.setProcessEnvironment(QProcessEnvironment());
    Start(console, {QString::fromLatin1(option)});
    ASSERT_TRUE(console.waitForFinished(kPatienceMs));
    EXPECT_EQ(console.exitCode(), 0);
    EXPECT_THAT(console.readAllStandardOutput().toStdString(), HasSubstr("zendrix"));
  }
}

}  // namespace
}  // namespace zendrix::e2e
