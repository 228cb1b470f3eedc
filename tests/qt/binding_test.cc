#include <gmock/gmock.h>

#include <QApplication>
#include <QCheckBox>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTimer>
#include <algorithm>

#include "admin/event_grid.h"
#include "qt/bind_check_box.h"
#include "qt/bind_click.h"
#include "qt/bind_form.h"
#include "qt/bind_grid.h"
#include "qt/bind_image.h"
#include "qt/bind_label.h"
#include "qt/bind_list_view.h"
#include "qt/bind_menu.h"
#include "qt/contrast.h"
#include "qt/qt_dialogs.h"
#include "support/console_world.h"
#include "support/grid_rows.h"

namespace zendrix::qt {
namespace {

using ::testing::ElementsAre;

class BindingTest : public ::testing::Test {
 protected:
  zendrix::testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  Toolkit kit_{guard_, pictures_, theme_};
};

TEST_F(BindingTest, LabelShowsEventTextAsItStands) {
  widgets::Label label("sTitleDesc", "<b>bold</b>");
  const std::unique_ptr<QLabel> widget(MakeLabel(label, kit_));
  EXPECT_EQ(widget->textFormat(), Qt::PlainText);
  EXPECT_EQ(widget->text(), QStringLiteral("<b>bold</b>"));
  EXPECT_EQ(widget->objectName(), QStringLiteral("sTitleDesc"));
  label.caption = std::string("other");
  EXPECT_EQ(widget->text(), QStringLiteral("other"));
  label.visible = false;
  EXPECT_TRUE(widget->isHidden());
}

TEST_F(BindingTest, BoundWidgetDoesNotBecomeAWindow) {
  widgets::Label label("x", "x");
  const std::unique_ptr<QLabel> widget(MakeLabel(label, kit_));
  EXPECT_FALSE(widget->isVisible());
}

TEST_F(BindingTest, PictureThatLeadsSomewhereIsClickedByTheLeftButtonAlone) {
  widgets::Image image("Flag(0)", "FlagG");
  int clicks = 0;
  image.clicked.ConnectForever([&] { ++clicks; });
  const std::unique_ptr<QLabel> widget(MakeImage(image, 24, kit_));
  BindClick(image.name(), image.clicked, widget.get(), kit_);
  QTest::mouseClick(widget.get(), Qt::RightButton);
  EXPECT_EQ(clicks, 0);
  QTest::mouseClick(widget.get(), Qt::LeftButton);
  EXPECT_EQ(clicks, 1);
  QTest::mousePress(widget.get(), Qt::LeftButton);
  QTest::mouseRelease(widget.get(), Qt::LeftButton, {}, QPoint(200, 200));
  EXPECT_EQ(clicks, 1);
}

TEST_F(BindingTest, EnterAndTheSpaceBarPressAButtonOnce) {
  widgets::Label label("ViewItems(0)", "Alerts");
  int clicks = 0;
  label.clicked.ConnectForever([&] { ++clicks; });
  const std::unique_ptr<QPushButton> button(MakeButton(label, "nav", kit_));
  int expected = 0;
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) {
    QTest::keyClick(button.get(), key);
    EXPECT_EQ(clicks, ++expected) << key;
  }
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, {}, true);
  QApplication::sendEvent(button.get(), &held);
  EXPECT_EQ(clicks, expected);
}

TEST_F(BindingTest, WarningIsPlainTextReachedByTheKeyboardAndRead) {
  widgets::Label label("lblRootWarning", "<i>Careful</i>");
  const std::unique_ptr<QLabel> widget(MakeWarning(label, kit_));
  EXPECT_EQ(widget->textFormat(), Qt::PlainText);
  EXPECT_EQ(widget->accessibleName(), QStringLiteral("<i>Careful</i>"));
  EXPECT_TRUE(widget->focusPolicy() & Qt::TabFocus);
}

TEST_F(BindingTest, WarningReadsWellOnLightAndOnDarkPaper) {
  widgets::Label label("lblRootWarning", "Careful");
  const std::unique_ptr<QLabel> widget(MakeWarning(label, kit_));
  widget->resize(300, 60);
  for (const bool dark : {false, true}) {
    theme_.SetDark(dark);
    const QImage picture = widget->grab().toImage();
    const QColor paper = picture.pixelColor(picture.width() - 6, picture.height() / 2);
    double best = 1;
    for (int y = 4; y < picture.height() - 4; ++y)
      for (int x = 4; x < picture.width() / 2; ++x)
        best = std::max(best, Contrast(picture.pixelColor(x, y), paper));
    EXPECT_GT(best, kReadable) << (dark ? "dark" : "light");
  }
  theme_.SetDark(false);
}

TEST_F(BindingTest, ButtonClickReachesTheLogic) {
  widgets::Label label("aClearAll", "Clear && <All>");
  int clicks = 0;
  label.clicked.ConnectForever([&] { ++clicks; });
  const std::unique_ptr<QPushButton> widget(MakeButton(label, "flat", kit_));
  QTest::keyClick(widget.get(), Qt::Key_Space);
  EXPECT_EQ(clicks, 1);
  EXPECT_FALSE(label.bordered);
}

TEST_F(BindingTest, FlatButtonHasABorderWhileItIsHeldDown) {
  widgets::Label label("hGetStr", "Getting Started");
  const std::unique_ptr<QPushButton> widget(MakeButton(label, "flat", kit_));
  label.fore_colour = 1;
  QTest::mousePress(widget.get(), Qt::LeftButton);
  EXPECT_TRUE(label.bordered);
  QTest::mouseRelease(widget.get(), Qt::LeftButton);
  EXPECT_FALSE(label.bordered);
  EXPECT_EQ(label.fore_colour.Get(), widgets::kSystemButtonText);
}

// A held entry of the navigation lost the colour that tells which pane is on show.
TEST_F(BindingTest, LinkIsNoFlatButton) {
  widgets::Label label("ViewItems(0)", "Alerts");
  label.fore_colour = 1;
  const std::unique_ptr<QPushButton> widget(MakeButton(label, "nav", kit_));
  QTest::mousePress(widget.get(), Qt::LeftButton);
  EXPECT_FALSE(label.bordered);
  QTest::mouseRelease(widget.get(), Qt::LeftButton);
  EXPECT_EQ(label.fore_colour.Get(), 1U);
}

TEST_F(BindingTest, WidgetThatIsGoneIsNotTold) {
  widgets::Label label("x", "x");
  delete MakeLabel(label, kit_);
  label.caption = std::string("y");
}

TEST_F(BindingTest, CheckBoxGoesBothWays) {
  widgets::CheckBox box("sckShowAll", "Display blocked events");
  std::vector<bool> seen;
  box.clicked.ConnectForever([&] { seen.push_back(box.checked); });
  const std::unique_ptr<QCheckBox> widget(MakeCheckBox(box, kit_));
  box.checked = true;
  EXPECT_TRUE(widget->isChecked());
  EXPECT_THAT(seen, ElementsAre());
  widget->click();
  EXPECT_THAT(seen, ElementsAre(false));
}

class ListTableTest : public BindingTest {
 protected:
  ListTableTest() {
    list_.columns =
        std::vector<widgets::ListColumn>{{"Time", 0.4, 0}, {"Status", 0, 700}, {"Details", 0, 700}};
    list_.item_clicked.ConnectForever(
        [this](widgets::ListView::Slot slot) { clicked_.push_back(list_.in_slot(slot).key); });
    for (const char* key : {"a", "b", "c"}) list_.InsertTop(key, key, 0, "");
    table_ = std::make_unique<ListTable>(list_, QStringLiteral("h3"), QStringLiteral("Alerts"),
                                         QStringLiteral("No alerts"), kit_);
    table_->resize(600, 300);
    table_->show();
  }
  // A press and a release of a mouse button over a row.
  void Click(int row, Qt::MouseButton button) {
    const QPoint where = table_->visualRect(table_->model()->index(row, 0)).center();
    QTest::mouseClick(table_->viewport(), button, {}, where);
  }
  widgets::ListView list_{"lvAlerts"};
  std::vector<std::string> clicked_;
  std::unique_ptr<ListTable> table_;
};

TEST_F(ListTableTest, SelectionOfTheLogicIsShownAndIsNoClick) {
  list_.Select(list_.Find("a"));
  EXPECT_EQ(table_->currentIndex().row(), 2);
  EXPECT_THAT(clicked_, ElementsAre());
}

TEST_F(ListTableTest, KeysMoveTheSelectionAndCountAsClicks) {
  list_.Select(list_.Find("c"));
  QTest::keyClick(table_.get(), Qt::Key_Down);
  EXPECT_THAT(clicked_, ElementsAre("b"));
  EXPECT_EQ(list_.selected(), list_.Find("b"));
}

// A click on the row that was selected already moves nothing in the view and went unnoticed.
TEST_F(ListTableTest, ClickOnTheSelectedRowCountsAgain) {
  list_.Select(list_.Find("c"));
  Click(0, Qt::LeftButton);
  EXPECT_THAT(clicked_, ElementsAre("c"));
  Click(0, Qt::LeftButton);
  EXPECT_THAT(clicked_, ElementsAre("c", "c"));
}

TEST_F(ListTableTest, RightClickOnTheSelectedRowCountsAndThenOpensTheMenu) {
  list_.right_button_up.ConnectForever([this] { clicked_.push_back("menu"); });
  list_.Select(list_.Find("c"));
  Click(0, Qt::RightButton);
  EXPECT_THAT(clicked_, ElementsAre("c", "menu"));
}

TEST_F(ListTableTest, EmptyListShowsItsReasonAsPlainText) {
  list_.Clear();
  auto* const words = table_->viewport()->findChild<QLabel*>();
  ASSERT_NE(words, nullptr);
  const QString own_words = words->text();
  list_.empty_text = "<b>nothing</b> since \xE4";
  EXPECT_EQ(words->text(), QString::fromUtf8("<b>nothing</b> since \u00E4"));
  EXPECT_EQ(words->textFormat(), Qt::PlainText);
  EXPECT_FALSE(words->isHidden());
  list_.empty_text = "";
  EXPECT_EQ(words->text(), own_words);
  list_.InsertTop("K9", "time", 0, "9");
  EXPECT_TRUE(words->isHidden());
}

TEST_F(ListTableTest, MenuKeyOpensTheMenuBesideTheCurrentRow) {
  widgets::MenuItem item("mPopRNormal", "Allow");
  widgets::Menu menu("mPopReview", "", {&item});
  const std::unique_ptr<QMenu> shown(MakeMenu(menu, nullptr, kit_));
  list_.right_button_up.ConnectForever([&] { menu.popup.Raise(); });
  table_->activateWindow();
  table_->setFocus();
  ASSERT_TRUE(QTest::qWaitFor([&] { return QApplication::focusWidget() == table_.get(); }));
  QContextMenuEvent without_a_row(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(table_.get(), &without_a_row);
  EXPECT_FALSE(shown->isVisible());
  list_.Select(list_.Find("b"));
  QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, {});
  QApplication::sendEvent(table_.get(), &event);
  EXPECT_TRUE(shown->isVisible());
  const QRect row = table_->visualRect(table_->currentIndex());
  EXPECT_EQ(shown->pos(), table_->viewport()->mapToGlobal(row.bottomLeft()));
  EXPECT_FALSE(table_->property(kMenuPlace).isValid());
}

TEST_F(ListTableTest, MouseOpensTheMenuOnceAndNotTwice) {
  int menus = 0;
  list_.right_button_up.ConnectForever([&] { ++menus; });
  list_.Select(list_.Find("b"));
  Click(1, Qt::RightButton);
  QContextMenuEvent event(QContextMenuEvent::Mouse, {}, {});
  QApplication::sendEvent(table_.get(), &event);
  EXPECT_EQ(menus, 1);
}

TEST_F(ListTableTest, OfF10AndTheShiftKeyOnlyBothOpenTheMenu) {
  int menus = 0;
  list_.right_button_up.ConnectForever([&] { ++menus; });
  list_.Select(list_.Find("b"));
  QTest::keyClick(table_.get(), Qt::Key_F10);
  QTest::keyClick(table_.get(), Qt::Key_F9, Qt::ShiftModifier);
  EXPECT_EQ(menus, 0);
  QTest::keyClick(table_.get(), Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_EQ(menus, 1);
}

// A pop-up leads to an alert that may be the selected one and scrolled away.
TEST_F(ListTableTest, SelectedRowThatIsScrolledAwayIsRevealed) {
  for (int i = 0; i < 200; ++i) list_.InsertTop("n" + std::to_string(i), "x", 0, "");
  list_.Select(list_.Find("n199"));
  table_->scrollToBottom();
  const QModelIndex first = table_->model()->index(0, 0);
  ASSERT_FALSE(table_->viewport()->rect().intersects(table_->visualRect(first)));
  list_.reveal.Raise(*list_.Find("n199"));
  EXPECT_TRUE(table_->viewport()->rect().intersects(table_->visualRect(first)));
}

TEST_F(ListTableTest, ClickOnAnotherRowCountsOnce) {
  list_.Select(list_.Find("c"));
  Click(1, Qt::LeftButton);
  Click(2, Qt::RightButton);
  EXPECT_THAT(clicked_, ElementsAre("b", "a"));
  EXPECT_EQ(list_.selected(), list_.Find("a"));
}

TEST_F(ListTableTest, ClickBelowTheRowsIsNoClickOnOne) {
  list_.Select(list_.Find("c"));
  const QPoint below(20, table_->viewport()->height() - 4);
  QTest::mouseClick(table_->viewport(), Qt::LeftButton, {}, below);
  EXPECT_THAT(clicked_, ElementsAre());
}

TEST_F(ListTableTest, EnterAndSpaceClickTheCurrentRow) {
  list_.Select(list_.Find("b"));
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) QTest::keyClick(table_.get(), key);
  EXPECT_THAT(clicked_, ElementsAre("b", "b", "b"));
  EXPECT_EQ(table_->currentIndex().row(), 1);
}

TEST_F(ListTableTest, EnterWithoutARowDoesNothing) {
  QTest::keyClick(table_.get(), Qt::Key_Return);
  EXPECT_THAT(clicked_, ElementsAre());
}

// The page of the first click may serve the message loop while it waits.
TEST_F(ListTableTest, ClickWithinTheHandlingOfAClickCountsOnceToo) {
  bool again = true;
  list_.item_clicked.ConnectForever([&](widgets::ListView::Slot) {
    if (std::exchange(again, false)) Click(1, Qt::LeftButton);
  });
  Click(0, Qt::LeftButton);
  EXPECT_THAT(clicked_, ElementsAre("c", "b"));
  EXPECT_EQ(list_.selected(), list_.Find("b"));
}

TEST_F(ListTableTest, ListClearedByAClickLeavesNothingSelected) {
  list_.item_clicked.ConnectForever([&](widgets::ListView::Slot) { list_.Clear(); });
  Click(1, Qt::LeftButton);
  EXPECT_THAT(clicked_, ElementsAre("b"));
  EXPECT_FALSE(table_->currentIndex().isValid());
}

TEST_F(ListTableTest, SelectedRowStaysSelectedWhileRowsArrive) {
  list_.Select(list_.Find("b"));
  list_.InsertTop("d", "d", 0, "");
  EXPECT_EQ(table_->currentIndex().row(), 2);
  EXPECT_EQ(list_.selected(), list_.Find("b"));
  EXPECT_THAT(clicked_, ElementsAre());
}

TEST_F(ListTableTest, RowSelectedInABatchIsShownAtItsEnd) {
  {
    const widgets::ListBatch batch(list_);
    list_.Select(list_.InsertTop("d", "d", 0, ""));
  }
  EXPECT_EQ(table_->currentIndex().row(), 0);
}

TEST_F(ListTableTest, ClearForgetsTheSelection) {
  list_.Select(list_.Find("b"));
  list_.Clear();
  EXPECT_FALSE(table_->currentIndex().isValid());
  EXPECT_FALSE(list_.selected());
}

TEST_F(ListTableTest, FirstColumnTakesItsShare) {
  EXPECT_EQ(table_->columnWidth(0), static_cast<int>(table_->viewport()->width() * 0.4));
}

TEST_F(ListTableTest, ColumnIsWideEnoughForItsFirstRowsUpToAThirdOfTheList) {
  list_.Clear();
  list_.InsertTop("short", "x", 0, "");
  EXPECT_EQ(table_->columnWidth(1), 96);
  list_.Clear();
  {
    const widgets::ListBatch batch(list_);
    list_.AddSubItem(*list_.InsertTop("wide", "x", 0, ""), "eighteen letters w");
  }
  EXPECT_GE(table_->columnWidth(1), table_->sizeHintForIndex(table_->model()->index(0, 1)).width());
  list_.Clear();
  {
    const widgets::ListBatch batch(list_);
    list_.AddSubItem(*list_.InsertTop("endless", "x", 0, ""), std::string(1000, 'x'));
  }
  EXPECT_EQ(table_->columnWidth(1), table_->viewport()->width() / 3);
}

class GridTableTest : public BindingTest {
 protected:
  GridTableTest() {
    grid_.SetFormatString("0|1|2|3|4|5|6|7|8");
    for (int i = 1; i <= 3; ++i)
      zendrix::testing::InsertTop(rows_, grid_, {i, "t", "h", "System", "A", "the whole text", i});
    table_ =
        std::make_unique<GridTable>(grid_, QStringLiteral("grid"), QStringLiteral("Events"), QString(), kit_);
    table_->resize(900, 300);
    table_->show();
  }
  platform::MemoryFamily grid_family_;
  admin::EventRows rows_{grid_family_, {}};
  admin::EventGrid grid_{"EventList", rows_};
  std::unique_ptr<GridTable> table_;
};

TEST_F(GridTableTest, WidthsFollowTheLogicAndZeroHides) {
  grid_.SetColWidth(2, 1500);
  grid_.SetColWidth(5, 0);
  EXPECT_EQ(table_->columnWidth(2), 100);
  EXPECT_TRUE(table_->isColumnHidden(5));
  grid_.SetColWidth(5, 300);
  EXPECT_FALSE(table_->isColumnHidden(5));
}

TEST_F(GridTableTest, DraggedWidthReachesTheLogicButTheStretchedLastOneDoesNot) {
  grid_.SetColWidth(8, 3945);
  table_->horizontalHeader()->resizeSection(1, 80);
  EXPECT_EQ(grid_.column(1).width, 1200);
  EXPECT_EQ(grid_.column(8).width, 3945);
}

TEST_F(GridTableTest, MarkedRowIsShown) {
  grid_.Row = 2;
  EXPECT_EQ(table_->currentIndex().row(), 1);
  QTest::keyClick(table_.get(), Qt::Key_Down);
  EXPECT_EQ(grid_.Row.Get(), 3);
}

TEST_F(GridTableTest, RowsSelectedTogetherBeginAtTheCursorsRow) {
  grid_.Row = 3;
  EXPECT_TRUE(grid_.OneCellSelected());
  QTest::keyClick(table_.get(), Qt::Key_Up, Qt::ShiftModifier);
  QTest::keyClick(table_.get(), Qt::Key_Up, Qt::ShiftModifier);
  EXPECT_EQ(grid_.Row.Get(), 3);
  EXPECT_EQ(grid_.RowSel.Get(), 1);
  EXPECT_FALSE(grid_.OneCellSelected());
  QTest::keyClick(table_.get(), Qt::Key_Down);
  EXPECT_TRUE(grid_.OneCellSelected());
}

TEST_F(GridTableTest, SelectionThatTheLogicEndsIsOfOneRowAgain) {
  grid_.Row = 1;
  QTest::keyClick(table_.get(), Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(table_->selectionModel()->selectedRows().size(), 2);
  grid_.Select(1, 0, 1, 0);
  EXPECT_EQ(table_->selectionModel()->selectedRows().size(), 1);
  EXPECT_EQ(grid_.RowSel.Get(), 1);
}

TEST_F(GridTableTest, FirstColumnOfTheLogicStandsAtTheLeft) {
  for (int col = 0; col < grid_.Cols(); ++col) grid_.SetColWidth(col, 6000);
  grid_.LeftCol = 1;
  EXPECT_EQ(table_->horizontalScrollBar()->value(), 0) << "the narrow first column stays in sight";
  grid_.LeftCol = 3;
  EXPECT_EQ(table_->horizontalScrollBar()->value(), table_->horizontalHeader()->sectionPosition(3));
  EXPECT_EQ(grid_.LeftCol.Get(), 3);
}

TEST_F(GridTableTest, RowOfNoHeightIsHidden) {
  grid_.SetRowHeight(2, 0);
  EXPECT_TRUE(table_->isRowHidden(1));
  grid_.SetRowHeight(2, widgets::kDefaultHeight);
  EXPECT_FALSE(table_->isRowHidden(1));
}

// The style left the colour out. A click selects the row that it marks, and hid the mark.
TEST_F(GridTableTest, MarkedRowIsPaintedInItsColourAlsoWhereItIsSelected) {
  const QColor own(0x80, 0x80, 0xFF);
  const auto colour = [this](int row, int y) {
    const QRect cell = table_->visualRect(table_->model()->index(row, 1));
    const QImage picture = table_->viewport()->grab(cell).toImage();
    return picture.pixelColor(picture.width() - 3, y);
  };
  EXPECT_NE(colour(1, 4), own);
  grid_.SetRowColor(2, 0xFF8080);
  EXPECT_EQ(colour(1, 4), own);
  EXPECT_EQ(colour(1, 0), own);
  EXPECT_NE(colour(0, 4), own);
  grid_.Row = 2;
  EXPECT_EQ(colour(1, 4), own);
  EXPECT_NE(colour(1, 0), own) << "a line shows the selection";
  grid_.Row = 1;
  grid_.SetRowColor(2, 0);
  EXPECT_NE(colour(1, 4), own);
}

// A description of megabytes kept the window busy with every paint.
TEST_F(GridTableTest, NoMoreOfAHugeTextIsDrawnThanAWindowHasRoomFor) {
  zendrix::testing::InsertTop(rows_, grid_, {9, "t", "h", "System", "A", std::string(1 << 20, 'x'), 9});
  const QModelIndex cell = table_->model()->index(0, admin::kColDescription);
  EXPECT_EQ(cell.data(Qt::DisplayRole).toString().size(), 2000);
  EXPECT_EQ(cell.data(kLongTextRole).toString().size(), 2000);
  EXPECT_LT(cell.data(Qt::ToolTipRole).toString().size(), 2100);
  EXPECT_EQ(cell.data(kWholeTextRole).toString().size(), 1 << 20) << "what is copied is whole";
}

TEST_F(GridTableTest, ClickNamesItsRowAlsoWhereItIsTheCurrentOne) {
  std::vector<int> clicked;
  grid_.row_clicked.ConnectForever([&](int row) { clicked.push_back(row); });
  const auto click = [&](int row, Qt::MouseButton button) {
    const QPoint where = table_->visualRect(table_->model()->index(row, 2)).center();
    QTest::mouseClick(table_->viewport(), button, {}, where);
  };
  click(1, Qt::LeftButton);
  click(1, Qt::LeftButton);
  click(2, Qt::RightButton);
  QTest::mouseClick(table_->viewport(), Qt::LeftButton, {}, QPoint(20, table_->viewport()->height() - 2));
  EXPECT_THAT(clicked, ElementsAre(2, 2, 0));
}

TEST_F(GridTableTest, EnterAndTheSpaceBarClickTheCurrentRowAndArrowsClickNone) {
  std::vector<int> clicked;
  grid_.row_clicked.ConnectForever([&](int row) { clicked.push_back(row); });
  QTest::keyClick(table_.get(), Qt::Key_Return);
  grid_.Row = 1;
  QTest::keyClick(table_.get(), Qt::Key_Down);
  EXPECT_THAT(clicked, ElementsAre());
  for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space}) QTest::keyClick(table_.get(), key);
  QKeyEvent held(QEvent::KeyPress, Qt::Key_Return, {}, {}, true);
  QApplication::sendEvent(table_.get(), &held);
  EXPECT_THAT(clicked, ElementsAre(2, 2, 2));
}

TEST_F(GridTableTest, TopRowGoesBothWays) {
  for (int i = 4; i <= 100; ++i)
    zendrix::testing::InsertTop(rows_, grid_, {i, "t", "h", "System", "A", "w", i});
  grid_.TopRow = 40;
  EXPECT_EQ(table_->rowAt(0), 39);
  EXPECT_EQ(grid_.TopRow.Get(), 40);
  table_->verticalScrollBar()->setValue(7);
  EXPECT_EQ(grid_.TopRow.Get(), 8);
  grid_.TopRow = 100;
  EXPECT_EQ(grid_.TopRow.Get(), table_->rowAt(0) + 1) << "the last row cannot stand on top";
  EXPECT_LT(grid_.TopRow.Get(), 100);
}

TEST_F(GridTableTest, ViewTellsTheCellUnderThePointer) {
  const auto at = [&](int row, int col) {
    return table_->viewport()->mapToGlobal(table_->visualRect(table_->model()->index(row, col)).center());
  };
  const auto cell = [&] {
    const widgets::Grid::Cell found = grid_.cell_under_pointer();
    return std::pair(found.row, found.col);
  };
  const auto comes_over = [&](QPoint place, std::pair<int, int> wanted) {
    QCursor::setPos(place);
    return QTest::qWaitFor([&] { return cell() == wanted; }, 60'000);
  };
  EXPECT_EQ(cell(), std::pair(0, 0));
  EXPECT_TRUE(comes_over(at(1, 3), {2, 3}));
  const QPoint below = table_->viewport()->mapToGlobal(QPoint(5, table_->viewport()->height() - 3));
  EXPECT_TRUE(comes_over(below, {0, 0}));
  EXPECT_TRUE(comes_over(at(2, 1), {3, 1}));
  table_.reset();
  EXPECT_EQ(cell(), std::pair(0, 0));
}

TEST_F(GridTableTest, HeaderClickNamesItsColumn) {
  std::vector<int> clicked;
  grid_.header_clicked.ConnectForever([&](int column) { clicked.push_back(column); });
  auto* header = table_->horizontalHeader();
  const QPoint where(header->sectionViewportPosition(1) + 10, header->height() / 2);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, where);
  EXPECT_THAT(clicked, ElementsAre(1));
}

// A sort that was turned round at once stayed as it was.
TEST_F(GridTableTest, EachOfTwoQuickClicksOnAHeadingCounts) {
  std::vector<int> clicked;
  grid_.header_clicked.ConnectForever([&](int column) { clicked.push_back(column); });
  auto* header = table_->horizontalHeader();
  const QPoint where(header->sectionViewportPosition(1) + 10, header->height() / 2);
  QTest::mouseClick(header->viewport(), Qt::LeftButton, {}, where);
  QTest::mouseDClick(header->viewport(), Qt::LeftButton, {}, where);
  QTest::mouseRelease(header->viewport(), Qt::LeftButton, {}, where);
  EXPECT_THAT(clicked, ElementsAre(1, 1));
}

TEST_F(GridTableTest, ControlAndADigitClicksTheHeadingAtThatPlace) {
  std::vector<int> clicked;
  grid_.header_clicked.ConnectForever([&](int column) { clicked.push_back(column); });
  grid_.SetColWidth(2, 0);
  for (const auto key : {Qt::Key_1, Qt::Key_3, Qt::Key_8, Qt::Key_9})
    QTest::keyClick(table_.get(), key, Qt::ControlModifier);
  QTest::keyClick(table_.get(), Qt::Key_1);
  EXPECT_THAT(clicked, ElementsAre(0, 3, 8)) << "there is no ninth in sight";
}

class PlainForm : public widgets::Form {
 public:
  explicit PlainForm(widgets::FormList& forms) : Form(forms, "frmTest") {}

 protected:
  bool QueryUnload(widgets::UnloadCause cause) override {
    if (cause == widgets::UnloadCause::kCloseBox) visible = false;
    return cause != widgets::UnloadCause::kCloseBox;
  }
};

class FormWindowTest : public BindingTest {
 protected:
  PlainForm form_{world_.state.forms};
  FormWindow window_{form_, kit_};
};

TEST_F(FormWindowTest, CloseBoxAsksTheFormWhichHides) {
  form_.visible = true;
  EXPECT_TRUE(window_.isVisible());
  window_.close();
  EXPECT_FALSE(window_.isVisible());
  EXPECT_TRUE(form_.loaded());
}

TEST_F(FormWindowTest, PlaceIsToldAndTaken) {
  form_.left = 40;
  form_.top = 50;
  form_.width = 300;
  form_.height = 200;
  form_.visible = true;
  EXPECT_EQ(window_.size(), QSize(300, 200));
  window_.resize(320, 210);
  EXPECT_EQ(form_.width.Get(), 320);
  EXPECT_EQ(form_.height.Get(), 210);
}

TEST_F(FormWindowTest, StateGoesBothWays) {
  form_.visible = true;
  form_.state = widgets::WindowState::kMaximised;
  EXPECT_TRUE(window_.isMaximized());
  window_.showMinimized();
  EXPECT_EQ(form_.state.Get(), widgets::WindowState::kMinimised);
}

// A desktop takes a window that is activated out of the task bar again: "Minimize" of the tray's menu did
// nothing.
TEST_F(FormWindowTest, MinimisedWindowThatIsAskedForwardStaysMinimised) {
  struct Raises : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
      if (event->type() == QEvent::ZOrderChange) ++count;
      return false;
    }
    int count = 0;
  } raises;
  form_.visible = true;
  form_.state = widgets::WindowState::kMinimised;
  window_.installEventFilter(&raises);
  form_.bring_forward.Raise();
  EXPECT_TRUE(window_.isMinimized());
  EXPECT_EQ(raises.count, 0);
  form_.BringUp();
  EXPECT_FALSE(window_.isMinimized());
  EXPECT_GT(raises.count, 0);
  EXPECT_EQ(form_.state.Get(), widgets::WindowState::kNormal);
}

TEST_F(FormWindowTest, MaximisedWindowThatWasHiddenComesForwardMaximised) {
  form_.visible = true;
  form_.state = widgets::WindowState::kMaximised;
  form_.visible = false;
  EXPECT_FALSE(window_.isVisible());
  form_.visible = true;
  form_.bring_forward.Raise();
  EXPECT_TRUE(window_.isVisible());
  EXPECT_TRUE(window_.isMaximized());
  EXPECT_EQ(form_.state.Get(), widgets::WindowState::kMaximised);
}

TEST_F(BindingTest, MessageBoxIsPlainTextAndDisablesTheForms) {
  PlainForm form(world_.state.forms);
  QtMessageBoxes plain;
  core::ModalMessageBoxes boxes(plain, world_.state.forms);
  bool enabled_meanwhile = true;
  QTimer::singleShot(0, [&] {
    auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->textFormat(), Qt::PlainText);
    EXPECT_EQ(box->text(), QStringLiteral("<b>one</b>\ntwo"));
    enabled_meanwhile = form.enabled;
    box->button(QMessageBox::Yes)->click();
  });
  const auto answer = boxes.Show(
      {"title", "<b>one</b>\r\ntwo", platform::BoxIcon::kExclamation, platform::BoxButtons::kYesNo});
  EXPECT_EQ(answer, platform::BoxAnswer::kYes);
  EXPECT_FALSE(enabled_meanwhile);
  EXPECT_TRUE(form.enabled);
}

TEST_F(BindingTest, ClosedQuestionIsANo) {
  QtMessageBoxes boxes;
  QTimer::singleShot(0, [] { QApplication::activeModalWidget()->close(); });
  EXPECT_EQ(boxes.Show({"t", "x", platform::BoxIcon::kNone, platform::BoxButtons::kYesNo}),
            platform::BoxAnswer::kNo);
}

TEST_F(BindingTest, DarkPaletteIsDark) {
  theme_.SetDark(true);
  EXPECT_LT(QApplication::palette().color(QPalette::Window).lightness(), 60);
  EXPECT_GT(QApplication::palette().color(QPalette::Text).lightness(), 200);
  theme_.SetDark(false);
  EXPECT_GT(QApplication::palette().color(QPalette::Window).lightness(), 200);
}

TEST_F(BindingTest, ColoursOfTheLogicAreBlueFirst) {
  EXPECT_EQ(theme_.ColourOf(14518894), QColor(0x6E, 0x8A, 0xDD));
}

}  // namespace
}  // namespace zendrix::qt
