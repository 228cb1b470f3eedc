// The whole program put together inside the test: real files, real timers, the windows as they are.
#include <gmock/gmock.h>

#include <QApplication>
#include <QLabel>
#include <QTableView>
#include <QTest>
#include <QWidget>
#include <fstream>

#include "admin/frm_main.h"
#include "app/console.h"
#include "core/hash_utils.h"
#include "e2e/patience.h"
#include "home/frm_new_ui.h"
#include "platform/linux/linux_family.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/linux_instance_lock.h"
#include "support/temporary_folder.h"

namespace zendrix::e2e {
namespace {

class ConsoleTest : public ::testing::Test {
 protected:
  ConsoleTest() {
    folder_.Write("zendrix.ini", "[Misc]\r\nShRskLvl=0\r\nDetSho=1\r\n");
    platform::LinuxFiles files;
    platform::LinuxFamily family("/");
    core::HashUtils(files, family).StoreFileHash(folder_.Path("zendrix.ini"));
    Append("1795225500,HOST,7,Aggregation|0.5|0.5|Tcp Port=22,A,first|||x");
  }
  void Append(const std::string& line) {
    std::ofstream(folder_.Path("KorvessaMonitoring.kvl"), std::ios::binary | std::ios::app) << line << "\r\n";
  }
  app::Console& Open(const std::string& edition) {
    app::Options options = app::ParseOptions({"--edition=" + edition, "--folder=" + folder_.path(), "-ns"},
                                             folder_.Path("zendrix"));
    console_ = std::make_unique<app::Console>(options);
    console_->Start();
    return *console_;
  }
  static QTableView* Table(const char* name) {
    for (QWidget* window : QApplication::topLevelWidgets())
      if (auto* table = window->findChild<QTableView*>(QString::fromLatin1(name))) return table;
    return nullptr;
  }

  test::TemporaryFolder folder_;
  std::unique_ptr<app::Console> console_;
};

TEST_F(ConsoleTest, AlertAppearsInTheListWhileTheAgentWrites) {
  Open("Home");
  QTableView* list = Table("lvAlerts");
  ASSERT_NE(list, nullptr);
  ASSERT_EQ(list->model()->rowCount(), 1);
  Append("1795225560,HOST,7,Aggregation|0.99|0.99|Tcp Port=23|||x");
  ASSERT_TRUE(QTest::qWaitFor([&] { return list->model()->rowCount() == 2; }, kPatienceMs));
  EXPECT_EQ(list->model()->index(0, 1).data().toString(), QStringLiteral("Intrusion"));
  EXPECT_TRUE(console_->home()->visible);
}

TEST_F(ConsoleTest, LineAppearsInTheGridWhileTheAgentWrites) {
  Open("Administrator");
  QTableView* grid = Table("EventList");
  ASSERT_NE(grid, nullptr);
  const int rows = grid->model()->rowCount();
  Append("1795225560,host-2,running processes,A,/usr/bin/second");
  ASSERT_TRUE(QTest::qWaitFor([&] { return grid->model()->rowCount() == rows + 1; }, kPatienceMs));
  EXPECT_EQ(grid->model()->index(0, 3).data().toString(), QStringLiteral("Running Processes"));
}

TEST_F(ConsoleTest, RequestOfAnotherStartBringsTheHiddenWindowBack) {
  Open("Home");
  // As if this screen had a notification area; without one the window is not hidden but minimised.
  console_->home()->tray.hosted = [] { return true; };
  console_->home()->Unload(widgets::UnloadCause::kCloseBox);
  ASSERT_FALSE(console_->home()->visible);
  platform::LinuxInstanceLock other;
  ASSERT_FALSE(other.Acquire(console_->state().InstanceMutex));
  other.AskToComeForward(console_->state().InstanceMutex);
  EXPECT_TRUE(QTest::qWaitFor([&] { return console_->home()->visible.Get(); }, kPatienceMs));
}

TEST_F(ConsoleTest, EveryControlThatTakesTheKeyboardHasAName) {
  Open("Home");
  for (const QWidget* widget : QApplication::allWidgets()) {
    if (widget->focusPolicy() == Qt::NoFocus || !widget->isVisible()) continue;
    if (widget->objectName().isEmpty() || widget->objectName().startsWith(QLatin1String("qt_"))) continue;
    EXPECT_FALSE(widget->accessibleName().isEmpty())
        << widget->metaObject()->className() << " " << widget->objectName().toStdString();
  }
}

}  // namespace
}  // namespace zendrix::e2e
