// The Options and Advanced panes in the real window, on real files, driven by keys and clicks.
#include <gmock/gmock.h>

#include <QApplication>
#include <QCheckBox>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QSlider>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <fstream>
#include <sstream>

#include "app/console.h"
#include "core/hash_utils.h"
#include "home/frm_new_ui.h"
#include "platform/linux/linux_family.h"
#include "platform/linux/linux_files.h"
#include "support/temporary_folder.h"

namespace zendrix::e2e {
namespace {

using ::testing::HasSubstr;

class OptionsTest : public ::testing::Test {
 protected:
  OptionsTest() {
    folder_.Write("zendrix.ini", "[Misc]\r\nShRskLvl=0\r\nDetSho=1\r\n");
    platform::LinuxFiles files;
    platform::LinuxFamily family("/");
    core::HashUtils(files, family).StoreFileHash(folder_.Path("zendrix.ini"));
    folder_.Write("KorvessaMonitoring.kvl",
                  "1795225500,HOST,7,Aggregation|0.5|0.5|Tcp Port=22,A,one|||x\r\n");
    folder_.Write("KorvessaEventLog.kvl",
                  "1795225500,HOST,7,Agent started\r\n1795225501,HOST,7,Agent works\r\n");
  }
  void Open() {
    console_.reset();
    app::Options options =
        app::ParseOptions({"--edition=Home", "--folder=" + folder_.path(), "-ns"}, folder_.Path("zendrix"));
    console_ = std::make_unique<app::Console>(options);
    console_->Start();
    for (QWidget* window : QApplication::topLevelWidgets())
      if (window->objectName() == QLatin1String("frmNewUI") && window->isVisible()) window_ = window;
    ASSERT_NE(window_, nullptr);
    QApplication::setActiveWindow(window_);
  }
  template <class Widget>
  Widget* The(const char* name) {
    auto* widget = window_->findChild<Widget*>(QString::fromLatin1(name));
    EXPECT_NE(widget, nullptr) << name;
    return widget;
  }
  void Press(const char* name) { QTest::mouseClick(The<QPushButton>(name), Qt::LeftButton); }
  std::string File(const std::string& name) {
    std::ifstream file(folder_.Path(name), std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
  }

  test::TemporaryFolder folder_;
  std::unique_ptr<app::Console> console_;
  QWidget* window_ = nullptr;
};

TEST_F(OptionsTest, WhatIsTypedAndSavedIsThereAtTheNextStart) {
  Open();
  Press("ViewItems(3)");
  auto* enable = The<QCheckBox>("eEnable");
  ASSERT_TRUE(enable->isVisible());
  enable->setFocus();
  QTest::keyClick(enable, Qt::Key_Space);
  QTest::keyClick(enable, Qt::Key_Tab);
  auto* address = The<QLineEdit>("Email");
  ASSERT_TRUE(address->hasFocus());
  QTest::keyClicks(address, QStringLiteral("user@example.org"));
  QTest::keyClick(address, Qt::Key_Tab);
  QTest::keyClicks(The<QLineEdit>("Server"), QStringLiteral("mail.example.org"));
  QTest::keyClick(The<QLineEdit>("Server"), Qt::Key_Tab);
  QTest::keyClicks(The<QLineEdit>("Port"), QStringLiteral("5x87"));
  Press("eSave");
  EXPECT_EQ(File("KorvessaSMTPConfig.kvl"),
            "Send Alerts To=user@example.org;SMTP Server=mail.example.org:587;");
  auto* tabs = window_->findChild<QTabBar*>();
  ASSERT_NE(tabs, nullptr);
  tabs->setFocus();
  QTest::keyClick(tabs, Qt::Key_Right);
  ASSERT_TRUE(The<QSlider>("eSbSensitivity")->isVisible());
  QTest::keyClick(The<QSlider>("eSbSensitivity"), Qt::Key_End);
  Press("eSave");
  EXPECT_THAT(File("zendrix.ini"), HasSubstr("Se=10\r\n"));
  EXPECT_THAT(File("zendrix.ini"), HasSubstr("enblAlr=1\r\n"));
  Open();
  Press("ViewItems(3)");
  EXPECT_TRUE(The<QCheckBox>("eEnable")->isChecked());
  EXPECT_EQ(The<QLineEdit>("Email")->text(), QStringLiteral("user@example.org"));
  EXPECT_EQ(The<QLineEdit>("Port")->text(), QStringLiteral("587"));
  EXPECT_EQ(The<QSlider>("eSbSensitivity")->value(), 1000);
}

TEST_F(OptionsTest, BadAddressIsToldOnceAndNothingIsSaved) {
  Open();
  Press("ViewItems(3)");
  QTest::keyClick(The<QCheckBox>("eEnable"), Qt::Key_Space);
  auto* address = The<QLineEdit>("Email");
  address->setFocus();
  QTest::keyClicks(address, QStringLiteral("nobody"));
  std::vector<std::string> told;
  QTimer watch;
  QObject::connect(&watch, &QTimer::timeout, &watch, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    if (!box) return;
    told.push_back(box->text().toStdString());
    box->button(QMessageBox::Ok)->click();
  });
  watch.start(10);
  Press("ViewItems(0)");
  EXPECT_TRUE(address->isVisible()) << "the click that was to leave the pane does nothing";
  Press("eSave");
  watch.stop();
  EXPECT_THAT(told, ::testing::SizeIs(2));
  EXPECT_THAT(told, ::testing::Each(HasSubstr("Not a valid email address.")));
  EXPECT_EQ(File("KorvessaSMTPConfig.kvl"), "");
  EXPECT_EQ(window_->focusWidget(), address);
}

TEST_F(OptionsTest, LogsAreShownClearedAndShownAgain) {
  Open();
  Press("ViewItems(2)");
  auto* list = The<QTableView>("alvAgErrLog");
  ASSERT_EQ(list->model()->rowCount(), 2);
  EXPECT_TRUE(list->hasFocus());
  EXPECT_EQ(list->model()->index(0, 2).data().toString(), QStringLiteral("Agent works"));
  Press("aClearAll");
  EXPECT_EQ(list->model()->rowCount(), 0);
  EXPECT_THAT(File("zendrix.ini"), HasSubstr("ldErlog=1795225501\r\n"));
  Press("aShowAll");
  ASSERT_EQ(list->model()->rowCount(), 2);
  EXPECT_TRUE(list->model()->index(0, 0).data(Qt::ForegroundRole).isValid());
  QTest::mouseClick(The<QRadioButton>("aUIError"), Qt::LeftButton);
  ASSERT_GT(list->model()->rowCount(), 0);
  EXPECT_THAT(list->model()->index(0, 2).data().toString().toStdString(), HasSubstr("UI started."));
}

}  // namespace
}  // namespace zendrix::e2e
