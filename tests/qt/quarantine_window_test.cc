#include <gmock/gmock.h>

#include <QApplication>
#include <QLabel>
#include <QPushButton>
#include <QScrollBar>
#include <QTableView>
#include <QTest>

#include "home/frm_quarantine.h"
#include "qt/qt_form_host.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

class QuarantineViewTest : public ::testing::Test {
 protected:
  QuarantineViewTest() {
    world_.state.UseHost(host_);
    world_.platform.family.quarantine_entries = {{"a", "/home/<b>u</b>", 7, "cafe", 1795225800, 0, ""}};
  }
  zendrix::testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  QtFormHost host_{{guard_, pictures_, theme_}};
};

TEST_F(QuarantineViewTest, RestoreIsReachedAndTextsArePlain) {
  home::frmQuarantine form(world_.state);
  host_.Show(form);
  QWidget* window = nullptr;
  for (QWidget* each : QApplication::topLevelWidgets())
    if (each->objectName() == QLatin1String("frmQuarantine")) window = each;
  ASSERT_NE(window, nullptr);
  EXPECT_EQ(window->windowTitle(), QStringLiteral("Quarantine"));
  auto* const entry = window->findChild<QLabel*>(QStringLiteral("lblEntry"));
  EXPECT_EQ(entry->textFormat(), Qt::PlainText);
  EXPECT_EQ(entry->text(), QStringLiteral("/home/<b>u</b>\nSHA-256: cafe"));
  EXPECT_EQ(window->findChild<QTableView*>(QStringLiteral("lvQuarantine"))->model()->rowCount(), 1);
  for (const QPushButton* button : window->findChildren<QPushButton*>())
    EXPECT_FALSE(button->isDefault() || button->autoDefault());
  world_.platform.message_boxes.Answer(platform::BoxAnswer::kYes);
  window->findChild<QPushButton*>(QStringLiteral("qRestore"))->click();
  EXPECT_EQ(world_.platform.family.restore_calls, std::vector<std::string>{"a"});
  EXPECT_FALSE(window->findChild<QPushButton*>(QStringLiteral("qRestore"))->isEnabled());
  QTest::keyClick(window, Qt::Key_Escape);
  EXPECT_FALSE(form.loaded());
}

// Both moments ended in dots, at the hour.
TEST_F(QuarantineViewTest, MomentsAreSeenWhole) {
  home::frmQuarantine form(world_.state);
  host_.Show(form);
  for (QWidget* window : QApplication::topLevelWidgets()) {
    const auto* const table = window->findChild<QTableView*>(QStringLiteral("lvQuarantine"));
    if (!table || !window->isVisible()) continue;
    const QModelIndex moment = table->model()->index(0, 1);
    ASSERT_FALSE(moment.data().toString().isEmpty());
    EXPECT_GE(table->columnWidth(1), table->sizeHintForIndex(moment).width());
    EXPECT_EQ(table->columnWidth(2), table->columnWidth(1)) << "the alert's moment is as long";
    EXPECT_EQ(table->horizontalScrollBar()->maximum(), 0);
    return;
  }
  ADD_FAILURE() << "no window";
}

}  // namespace
}  // namespace zendrix::qt
