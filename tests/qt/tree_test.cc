#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <memory>

#include "qt/bind_tool_bar.h"
#include "qt/bind_tree.h"
#include "qt/text_edge.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

widgets::Tree::Items Numbered(std::size_t count) {
  return {count, [](std::size_t i) { return "item " + std::to_string(i); }};
}

class TreeBindingTest : public ::testing::Test {
 protected:
  TreeBindingTest() {
    view_ = std::make_unique<TreeView>(tree_, QStringLiteral("h3"), QStringLiteral("System State"), kit_);
    view_->resize(300, 200);
    view_->show();
  }
  void Fill(bool first_open = true, bool second_open = false) {
    tree_.Fill("System State @ now", {{"System", "System", 2, first_open, Numbered(3)},
                                      {"Tcp Port", "<b>Tcp Port</b>", 11, second_open, Numbered(2)}});
  }
  const TreeModel& Model() const { return dynamic_cast<const TreeModel&>(*view_->model()); }
  QModelIndex Item(int branch, int row) const { return Model().index(row, 0, Model().Branch(branch)); }

  zendrix::testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  Toolkit kit_{guard_, pictures_, theme_};
  widgets::Tree tree_{"tvVCR"};
  std::unique_ptr<TreeView> view_;
};

TEST_F(TreeBindingTest, ModelHoldsTheToolkitsRules) {
  const QAbstractItemModelTester tester(view_->model(),
                                        QAbstractItemModelTester::FailureReportingMode::Fatal);
  EXPECT_EQ(Model().rowCount(), 0);
  Fill();
  EXPECT_EQ(Model().rowCount(), 1);
  EXPECT_EQ(Model().rowCount(Model().Root()), 2);
  EXPECT_EQ(Model().rowCount(Model().Branch(0)), 3);
  EXPECT_EQ(Model().rowCount(Item(0, 0)), 0);
  EXPECT_EQ(Item(1, 1).parent(), Model().Branch(1));
  EXPECT_EQ(Model().Branch(1).parent(), Model().Root());
  EXPECT_FALSE(Model().Root().parent().isValid());
  tree_.Fill("System State");
  EXPECT_EQ(Model().rowCount(Model().Root()), 0);
  tree_.Clear();
  EXPECT_EQ(Model().rowCount(), 0);
}

TEST_F(TreeBindingTest, NodesAreShownAsPlainText) {
  Fill();
  EXPECT_EQ(Model().Root().data().toString(), QStringLiteral("System State @ now"));
  EXPECT_EQ(Model().Branch(1).data().toString(), QStringLiteral("<b>Tcp Port</b>"));
  EXPECT_EQ(Model().Branch(1).data(Qt::ToolTipRole).toString(), ToolTipText("<b>Tcp Port</b>"));
  EXPECT_EQ(Item(1, 1).data().toString(), QStringLiteral("item 1"));
  EXPECT_EQ(Item(1, 1).data(Qt::AccessibleTextRole).toString(), QStringLiteral("item 1"));
  EXPECT_EQ(view_->objectName(), QStringLiteral("tvVCR"));
  EXPECT_EQ(view_->accessibleName(), QStringLiteral("System State"));
}

TEST_F(TreeBindingTest, BranchesAloneHavePictures) {
  Fill();
  EXPECT_TRUE(Model().Branch(0).data(Qt::DecorationRole).isValid());
  EXPECT_FALSE(Model().Root().data(Qt::DecorationRole).isValid());
  EXPECT_FALSE(Item(0, 0).data(Qt::DecorationRole).isValid());
}

TEST_F(TreeBindingTest, NodesOpenAsTheLogicSays) {
  Fill(true, false);
  EXPECT_TRUE(view_->isExpanded(Model().Root()));
  EXPECT_TRUE(view_->isExpanded(Model().Branch(0)));
  EXPECT_FALSE(view_->isExpanded(Model().Branch(1)));
  EXPECT_EQ(view_->currentIndex(), Model().Branch(1));
  Fill(false, true);
  EXPECT_FALSE(view_->isExpanded(Model().Branch(0)));
  EXPECT_TRUE(view_->isExpanded(Model().Branch(1)));
  EXPECT_TRUE(tree_.branches()[1].expanded);
}

TEST_F(TreeBindingTest, ArrowKeysOpenAndCloseWhichTheLogicKnows) {
  Fill();
  QTest::keyClick(view_.get(), Qt::Key_Right);
  EXPECT_TRUE(tree_.branches()[1].expanded);
  QTest::keyClick(view_.get(), Qt::Key_Left);
  EXPECT_FALSE(tree_.branches()[1].expanded);
  EXPECT_TRUE(tree_.branches()[0].expanded);
  view_->collapse(Model().Root());
  EXPECT_FALSE(tree_.root_expanded());
}

TEST_F(TreeBindingTest, WhatIsFilledAnewKeepsItsScrolledPlace) {
  tree_.Fill("root", {{"a", "a", 0, true, Numbered(500)}});
  QScrollBar* const bar = view_->verticalScrollBar();
  bar->setValue(200);
  ASSERT_EQ(bar->value(), 200);
  tree_.Fill("root", {{"a", "a", 0, true, Numbered(501)}});
  EXPECT_EQ(bar->value(), 200);
}

TEST_F(TreeBindingTest, OnlyItemsInSightAreRead) {
  std::size_t reads = 0;
  tree_.Fill("root", {{"a", "a", 0, true, {1'000'000, [&reads](std::size_t i) {
                                             ++reads;
                                             return std::to_string(i);
                                           }}}});
  view_->grab();
  EXPECT_GT(reads, 0U);
  EXPECT_LT(reads, 1000U);
  view_->scrollToBottom();
  view_->grab();
  EXPECT_LT(reads, 2000U);
}

TEST_F(TreeBindingTest, LineOfMegabytesIsShownInItsFirstPart) {
  tree_.Fill("root", {{"a", "a", 0, true, {1, [](std::size_t) { return std::string(10'000'000, 'x'); }}}});
  EXPECT_EQ(Item(0, 0).data().toString().size(), 2000);
}

TEST_F(TreeBindingTest, TreeThatIsOutOfUseIsShownSo) {
  tree_.enabled = false;
  EXPECT_FALSE(view_->isEnabled());
}

TEST_F(TreeBindingTest, ToolbarButtonChangesItsPicture) {
  const QTemporaryDir folder;
  ASSERT_TRUE(QDir(folder.path()).mkpath(QStringLiteral("Images/toolbar")));
  for (const auto& [name, colour] : {std::pair("Play", "#ff0000"), std::pair("Playing", "#0000ff")}) {
    QFile file(folder.filePath(QStringLiteral("Images/toolbar/%1.svg").arg(QLatin1String(name))));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(
        "<svg xmlns='http://www.w3.org/2000/svg' width='16' height='16'><rect width='16' height='16' fill='");
    file.write(colour);
    file.write("'/></svg>");
  }
  Pictures pictures(PathFromQt(folder.path()));
  const Toolkit kit{guard_, pictures, theme_};
  widgets::MenuItem play("Play", "Play");
  const std::unique_ptr<QToolBar> bar(MakeBarOfTools(QStringLiteral("Tbar"), {&play}, kit));
  const auto colour = [&] { return bar->actions().first()->icon().pixmap(16).toImage().pixelColor(8, 8); };
  EXPECT_EQ(colour(), QColor(Qt::red));
  play.picture = std::string("Playing");
  EXPECT_EQ(colour(), QColor(Qt::blue));
  play.picture = std::string();
  EXPECT_EQ(colour(), QColor(Qt::red));
}

}  // namespace
}  // namespace zendrix::qt
