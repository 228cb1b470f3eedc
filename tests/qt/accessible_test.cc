// What assistive programs are told of widgets that the toolkit takes for mere holders of others.
#include <gmock/gmock.h>

#include <QAccessible>
#include <QToolBar>

#include "qt/bind_splitter.h"
#include "qt/bind_tool_bar.h"
#include "qt/bind_tree.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

class AccessibleTest : public ::testing::Test {
 protected:
  static QAccessibleInterface& Of(QWidget& widget) { return *QAccessible::queryAccessibleInterface(&widget); }

  zendrix::testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  Toolkit kit_{guard_, pictures_, theme_};
};

// It was an unnamed holder without anything in it.
TEST_F(AccessibleTest, LineBetweenGroupsOfAToolBarIsASeparatorAndNoStop) {
  widgets::MenuItem first{"First", "First"}, second{"Second", "Second"};
  second.begins_group = true;
  const std::unique_ptr<QToolBar> bar(MakeBarOfTools(QStringLiteral("Tbar"), {&first, &second}, kit_));
  bar->show();
  std::vector<QAccessible::Role> roles;
  for (int i = 0; i < Of(*bar).childCount(); ++i) {
    QAccessibleInterface* const part = Of(*bar).child(i);
    if (part->state().invisible) continue;
    roles.push_back(part->role());
    EXPECT_EQ(part->state().focusable, part->role() == QAccessible::Button);
  }
  EXPECT_THAT(roles,
              ::testing::ElementsAre(QAccessible::Button, QAccessible::Separator, QAccessible::Button));
}

class AccessibleSplitterTest : public AccessibleTest {
 protected:
  AccessibleSplitterTest() {
    window_.resize(400, 600);
    bar_.setParent(&window_);
    splitter_.dragged.ConnectForever(
        [this](int y) { splitter_.Top = splitter_.Top + y - widgets::Splitter::kGrip; });
  }

  QWidget window_;
  widgets::Splitter splitter_{"lblHDrag", 6000, 90};
  SplitterBar bar_{splitter_, QStringLiteral("Height of the events"), kit_};
};

TEST_F(AccessibleSplitterTest, IsANamedSeparatorThatTheKeyboardReaches) {
  EXPECT_EQ(Of(bar_).role(), QAccessible::Separator);
  EXPECT_EQ(Of(bar_).text(QAccessible::Name), QStringLiteral("Height of the events"));
  EXPECT_TRUE(Of(bar_).state().focusable);
}

TEST_F(AccessibleSplitterTest, ItsValueIsItsPlaceAndMovesIt) {
  QAccessibleValueInterface* const value = Of(bar_).valueInterface();
  ASSERT_NE(value, nullptr);
  EXPECT_EQ(value->currentValue().toInt(), 400);
  value->setCurrentValue(350);
  EXPECT_EQ(splitter_.Top, 5250);
  EXPECT_EQ(value->currentValue().toInt(), 350);
  EXPECT_EQ(value->maximumValue().toInt(), 600);
}

TEST_F(AccessibleTest, BranchOfATreeSaysItsNameAndWhetherItIsOpen) {
  widgets::Tree tree{"tvVCR"};
  TreeView view(tree, QStringLiteral("h3"), QStringLiteral("System State"), kit_);
  const widgets::Tree::Items items{2, [](std::size_t i) { return "item " + std::to_string(i); }};
  tree.Fill("System State @ now",
            {{"System", "System", 2, true, items}, {"Tcp Port", "Tcp Port", 11, false, items}});
  view.show();
  EXPECT_EQ(Of(view).text(QAccessible::Name), QStringLiteral("System State"));
  std::vector<std::string> told;
  for (int i = 0; i < Of(view).childCount(); ++i) {
    QAccessibleInterface* const node = Of(view).child(i);
    const QAccessible::State state = node->state();
    if (state.invisible) continue;
    told.push_back((!state.expandable ? "  "
                    : state.expanded  ? "- "
                                      : "+ ") +
                   node->text(QAccessible::Name).toStdString());
  }
  EXPECT_THAT(
      told, ::testing::ElementsAre("- System State @ now", "- System", "  item 0", "  item 1", "+ Tcp Port"));
}

}  // namespace
}  // namespace zendrix::qt
