#include <gmock/gmock.h>

#include <QAbstractItemModelTester>
#include <QApplication>
#include <QBrush>
#include <QPalette>

#include "admin/event_grid.h"
#include "platform/memory/memory_family.h"
#include "qt/grid_model.h"
#include "qt/list_model.h"
#include "support/grid_rows.h"

namespace zendrix::qt {
namespace {

using ::testing::ElementsAre;

// What a view would show, row by row.
std::vector<std::string> Shown(const QAbstractItemModel& model, int column) {
  std::vector<std::string> texts;
  for (int row = 0; row < model.rowCount(); ++row)
    texts.push_back(model.index(row, column).data().toString().toStdString());
  return texts;
}

class ListModelTest : public ::testing::Test {
 protected:
  ListModelTest() { list_.columns = std::vector<widgets::ListColumn>{{"Time", 0.5, 0}, {"Level", 0, 700}}; }
  void Insert(const std::string& key) {
    list_.AddSubItem(*list_.InsertTop(key, key, 28, ""), "level " + key, 18);
  }

  widgets::ListView list_{"list"};
  Pictures pictures_{"/nowhere"};
  ListModel model_{list_, pictures_, QStringLiteral("h3")};
  QAbstractItemModelTester tester_{&model_, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(ListModelTest, RowsAppearOnTop) {
  Insert("a");
  Insert("b");
  EXPECT_THAT(Shown(model_, 0), ElementsAre("b", "a"));
  EXPECT_THAT(Shown(model_, 1), ElementsAre("level b", "level a"));
}

TEST_F(ListModelTest, RowsOfAnOpenBatchDoNotExistYet) {
  Insert("a");
  {
    const widgets::ListBatch batch(list_);
    Insert("b");
    Insert("c");
    EXPECT_THAT(Shown(model_, 0), ElementsAre("a"));
    EXPECT_EQ(model_.RowOf(*list_.Find("c")), -1);
  }
  EXPECT_THAT(Shown(model_, 0), ElementsAre("c", "b", "a"));
  EXPECT_EQ(model_.RowOf(*list_.Find("a")), 2);
}

TEST_F(ListModelTest, ClearInTheMiddleOfABatch) {
  Insert("a");
  const widgets::ListBatch batch(list_);
  Insert("b");
  list_.Clear();
  EXPECT_EQ(model_.rowCount(), 0);
  Insert("c");
  EXPECT_EQ(model_.rowCount(), 0);
}

TEST_F(ListModelTest, GhostedRowIsGreyAndSaysSo) {
  Insert("a");
  Insert("b");
  list_.Ghost(*list_.Find("a"));
  EXPECT_FALSE(model_.index(0, 0).data(Qt::ForegroundRole).isValid());
  EXPECT_FALSE(model_.index(0, 0).data(Qt::AccessibleDescriptionRole).isValid());
  for (const int column : {0, 1}) {
    const auto grey = model_.index(1, column).data(Qt::ForegroundRole).value<QBrush>();
    EXPECT_EQ(grey.color(), QApplication::palette().color(QPalette::PlaceholderText));
  }
  EXPECT_EQ(model_.index(1, 0).data(Qt::AccessibleDescriptionRole).toString(),
            QStringLiteral("Marked as deleted"));
}

TEST_F(ListModelTest, MissingSubItemIsAnEmptyCell) {
  list_.InsertTop("a", "a", 0, "");
  EXPECT_FALSE(model_.index(0, 1).data().isValid());
}

TEST_F(ListModelTest, TextOfAnEventIsNoMarkupInATip) {
  list_.InsertTop("a", "<img src=x>", 0, "");
  EXPECT_TRUE(model_.index(0, 0).data(Qt::ToolTipRole).toString().contains(QStringLiteral("&lt;img")));
  EXPECT_EQ(model_.index(0, 0).data().toString(), QStringLiteral("<img src=x>"));
}

TEST_F(ListModelTest, BytesBecomeTheirCharacters) {
  list_.InsertTop("a", "caf\xE9 \x80", 0, "");
  EXPECT_EQ(model_.index(0, 0).data().toString(), QString::fromUtf8("café €"));
}

class GridModelTest : public ::testing::Test {
 protected:
  GridModelTest() { grid_.SetFormatString("0|1|2|3|4|5|6|7|8"); }
  void Insert(int id, std::string_view host = "h") {
    zendrix::testing::InsertTop(rows_, grid_, {id, "t", host, "System", "A", "whole", id});
  }

  platform::MemoryFamily family_;
  admin::EventRows rows_{family_, {}};
  admin::EventGrid grid_{"grid", rows_};
  Pictures pictures_{"/nowhere"};
  GridModel model_{grid_, pictures_, QStringLiteral("grid")};
  QAbstractItemModelTester tester_{&model_, QAbstractItemModelTester::FailureReportingMode::Fatal};
};

TEST_F(GridModelTest, RowsAppearOnTopAndColumnsHaveTheirHeadings) {
  Insert(1);
  Insert(2);
  EXPECT_THAT(Shown(model_, 0), ElementsAre("2", "1"));
  EXPECT_EQ(model_.headerData(8, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("8"));
  EXPECT_EQ(model_.index(0, 3).data().toString(), QStringLiteral("System"));
}

// The arrow beside a heading is a picture, which nobody reads out.
TEST_F(GridModelTest, HeadingSaysInWordsWhichWayItIsSorted) {
  const auto said = [&](int column) {
    return model_.headerData(column, Qt::Horizontal, Qt::AccessibleDescriptionRole).toString();
  };
  grid_.SetArrow(2, widgets::SortArrow::kUp);
  grid_.SetArrow(3, widgets::SortArrow::kDown);
  EXPECT_EQ(said(2), QStringLiteral("Sorted ascending"));
  EXPECT_EQ(said(3), QStringLiteral("Sorted descending"));
  EXPECT_EQ(said(4), QString());
}

TEST_F(GridModelTest, RowsReadWhileRedrawIsOffAreTheOnesThatWereThere) {
  Insert(1);
  grid_.SetRedraw(false);
  Insert(2);
  Insert(3);
  EXPECT_THAT(Shown(model_, 0), ElementsAre("1"));
  grid_.SetRedraw(true);
  EXPECT_THAT(Shown(model_, 0), ElementsAre("3", "2", "1"));
}

TEST_F(GridModelTest, SortedRowsAreShownSorted) {
  Insert(1, "b");
  Insert(2, "a");
  grid_.SortByText(admin::kColHostname, false);
  EXPECT_THAT(Shown(model_, 2), ElementsAre("b", "a"));
}

TEST_F(GridModelTest, ClearWhileRedrawIsOff) {
  Insert(1);
  grid_.SetRedraw(false);
  grid_.Clear();
  rows_.Clear();
  EXPECT_EQ(model_.rowCount(), 0);
  Insert(2);
  grid_.SetRedraw(true);
  EXPECT_THAT(Shown(model_, 0), ElementsAre("2"));
}

TEST_F(GridModelTest, ChangeOfFormatResetsTheColumns) {
  Insert(1);
  grid_.SetFormatString("a|b|c");
  EXPECT_EQ(model_.columnCount(), 3);
}

TEST_F(GridModelTest, RowsInsertedAnywhereAppearInTheirPlaces) {
  Insert(1);
  Insert(2);
  const std::uint32_t middle = zendrix::testing::Append(rows_, {3});
  const std::uint32_t last = zendrix::testing::Append(rows_, {4});
  grid_.Insert(2, middle);
  grid_.Insert(4, last);
  EXPECT_THAT(Shown(model_, 0), ElementsAre("2", "3", "1", "4"));
}

TEST_F(GridModelTest, RowsInsertedInSeveralPlacesInAPauseAppearAtItsEnd) {
  Insert(1);
  Insert(2);
  grid_.SetRedraw(false);
  const std::uint32_t last = zendrix::testing::Append(rows_, {3});
  grid_.Insert(3, last);
  Insert(4);
  EXPECT_EQ(model_.rowCount(), 2);
  grid_.SetRedraw(true);
  EXPECT_THAT(Shown(model_, 0), ElementsAre("4", "2", "1", "3"));
}

TEST_F(GridModelTest, ColouredRowsAreShownSoAndCanBeRead) {
  Insert(1);
  EXPECT_FALSE(model_.index(0, 0).data(Qt::BackgroundRole).isValid());
  grid_.SetRowColor(1, 0xFF8000);
  EXPECT_EQ(model_.index(0, 0).data(Qt::BackgroundRole).value<QBrush>().color(), QColor(0, 0x80, 0xFF));
  grid_.SetCellColor(1, 2, 0x100000);
  EXPECT_EQ(model_.index(0, 2).data(Qt::ForegroundRole).value<QBrush>().color(), QColor(Qt::white));
}

TEST_F(GridModelTest, PictureOfAChangeHasWords) {
  Insert(1);
  EXPECT_EQ(model_.index(0, admin::kColChange).data(Qt::AccessibleTextRole).toString(),
            QStringLiteral("Added"));
}

}  // namespace
}  // namespace zendrix::qt
