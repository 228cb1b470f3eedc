#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

#include "core/run_time_error.h"
#include "support/store_fixture.h"

namespace zendrix::test {
namespace {

using store::Direction;
using store::EventCursor;
using store::SortOrder;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SortTest : public StoreFixture {
 protected:
  void LoadOf(const std::vector<std::string>& lines) {
    AppendLines(lines);
    Load();
  }
  // The IDs from the first row to the last; the way back must give the same.
  static std::vector<std::int32_t> Walk(EventCursor& cursor) {
    std::vector<std::int32_t> forward, backward;
    for (cursor.MoveFirst(); !cursor.Eof(); cursor.MoveNext()) forward.push_back(cursor.ID());
    for (cursor.MoveLast(); !cursor.Bof(); cursor.MovePrevious())
      backward.insert(backward.begin(), cursor.ID());
    EXPECT_EQ(backward, forward);
    EXPECT_EQ(cursor.RecordCount(), forward.size());
    return forward;
  }
  std::vector<std::int32_t> Sorted(int column, SortOrder order, const std::string& filter = "") {
    EventCursor cursor = reader_->EventTable->Clone();
    cursor.SetFilter(filter);
    cursor.SetSort(column, order);
    return Walk(cursor);
  }
};

TEST_F(SortTest, IdIsSortedAsANumber) {
  for (int i = 0; i < 11; ++i) AppendLine(Line("1", "A", "x"));
  Load();
  EXPECT_THAT(Sorted(store::kID, SortOrder::kDescending), ElementsAre(11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1));
  EXPECT_THAT(Sorted(store::kID, SortOrder::kAscending), ElementsAre(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11));
}

TEST_F(SortTest, TextsAreSortedByTheirBytes) {
  LoadOf({Line("1", "A", "b"), Line("2", "A", "\xE4"), Line("3", "A", "B"), Line("4", "A", ""),
          Line("5", "A", "a"), Line("6", "A", "ab")});
  EXPECT_THAT(Sorted(store::kDescription, SortOrder::kAscending), ElementsAre(3, 5, 6, 1, 2));
  EXPECT_THAT(Sorted(store::kDescription, SortOrder::kDescending), ElementsAre(2, 1, 6, 5, 3));
}

TEST_F(SortTest, NumbersInTextColumnsAndDatesAreTexts) {
  LoadOf({Line("9", "A", "x", "9"), Line("10", "A", "x", "10"), Line("100", "A", "x", "-1")});
  EXPECT_THAT(Sorted(store::kChange, SortOrder::kAscending), ElementsAre(3, 2, 1));
  EXPECT_THAT(Sorted(store::kDateUTC, SortOrder::kAscending), ElementsAre(2, 3, 1));
}

TEST_F(SortTest, ColumnsOfAFewLinesStandEmptyFirst) {
  LoadOf({Line("1", "A", "x") + "|q|z", Line("2", "A", "x") + "|p", Line("3", "A", "x")});
  EXPECT_THAT(Sorted(store::kFirstDescr, SortOrder::kAscending), ElementsAre(3, 2, 1));
  EXPECT_THAT(Sorted(store::kFirstDescr + 1, SortOrder::kAscending), ElementsAre(2, 3, 1));
}

TEST_F(SortTest, EqualRowsKeepTheirOrderOfArrivalBothWays) {
  LoadOf({Line("1", "B", "x"), Line("2", "A", "x"), Line("3", "B", "x"), Line("4", "A", "x")});
  EXPECT_THAT(Sorted(store::kMonitor, SortOrder::kAscending), ElementsAre(2, 4, 1, 3));
  EXPECT_THAT(Sorted(store::kMonitor, SortOrder::kDescending), ElementsAre(1, 3, 2, 4));
}

TEST_F(SortTest, FilterAndSortKeepToEachOther) {
  LoadOf({Line("1", "B", "y"), Line("2", "A", "y"), Line("3", "B", "x"), Line("4", "A", "x"),
          Line("5", "B", "z")});
  EXPECT_THAT(Sorted(store::kDescription, SortOrder::kAscending, "Monitor = 'B'"), ElementsAre(3, 1, 5));
  EXPECT_THAT(Sorted(store::kDescription, SortOrder::kAscending, "Monitor = 'C'"), IsEmpty());
  EventCursor cursor = reader_->EventTable->Clone();
  cursor.SetSort(store::kDescription, SortOrder::kDescending);
  EXPECT_EQ(cursor.ID(), 5);
  cursor.SetFilter("Monitor = 'A'");
  EXPECT_EQ(cursor.ID(), 2);
  EXPECT_THAT(Walk(cursor), ElementsAre(2, 4));
  cursor.ClearSort();
  EXPECT_EQ(cursor.ID(), 2);
  cursor.SetFilter("");
  EXPECT_THAT(Walk(cursor), ElementsAre(1, 2, 3, 4, 5));
}

TEST_F(SortTest, SortAndItsEndMoveToTheFirstRow) {
  LoadOf({Line("1", "A", "b"), Line("2", "A", "a"), Line("3", "A", "c")});
  EventCursor cursor = reader_->EventTable->Clone();
  cursor.MoveLast();
  cursor.SetSort(store::kDescription, SortOrder::kAscending);
  EXPECT_EQ(cursor.ID(), 2);
  cursor.ClearSort();
  EXPECT_EQ(cursor.ID(), 1);
}

TEST_F(SortTest, FindGoesInTheOrderOfTheSort) {
  LoadOf({Line("1", "A", "c"), Line("2", "B", "a"), Line("3", "A", "b"), Line("4", "B", "d"),
          Line("5", "A", "e")});
  EventCursor cursor = reader_->EventTable->Clone();
  cursor.SetSort(store::kDescription, SortOrder::kAscending);  // 2 3 1 4 5
  cursor.Find("Monitor = 'A'", 0, Direction::kForward);
  EXPECT_EQ(cursor.ID(), 3);
  cursor.Find("Monitor = 'A'", 1, Direction::kForward);
  EXPECT_EQ(cursor.ID(), 1);
  cursor.Find("Monitor = 'B'", 1, Direction::kBackward);
  EXPECT_EQ(cursor.ID(), 2);
  cursor.Find("Monitor = 'A'", 1, Direction::kBackward);
  EXPECT_TRUE(cursor.Bof());
  cursor.SetFilter("ID < 5");
  cursor.Find("Monitor = 'A'", 3, Direction::kForward);
  EXPECT_TRUE(cursor.Eof());
  cursor.Find("Monitor = 'A'", 1, Direction::kBackward);
  EXPECT_EQ(cursor.ID(), 1);
}

TEST_F(SortTest, RowsThatArriveTakeTheirPlaces) {
  LoadOf({Line("100", "A", "c"), Line("101", "A", "a"), Line("102", "A", "e")});
  EventCursor cursor = reader_->EventTable->Clone();
  cursor.SetSort(store::kDescription, SortOrder::kAscending);
  cursor.MoveNext();
  EXPECT_EQ(cursor.ID(), 1);
  AppendLines({Line("103", "A", "d"), Line("104", "A", "a"), Line("105", "A", "b")});
  Tick();
  EXPECT_EQ(cursor.ID(), 1);
  cursor.MoveNext();
  EXPECT_EQ(cursor.ID(), 4);
  EXPECT_THAT(Walk(cursor), ElementsAre(2, 5, 6, 1, 4, 3));
  cursor.GoTo(4);
  cursor.MovePrevious();
  EXPECT_EQ(cursor.ID(), 2);
}

TEST_F(SortTest, CursorCanGoToARowThatHasJustArrived) {
  LoadOf({Line("100", "A", "c"), Line("101", "A", "a")});
  EventCursor cursor = reader_->EventTable->Clone();
  cursor.SetSort(store::kDescription, SortOrder::kAscending);
  AppendLine(Line("102", "A", "b"));
  Tick();
  cursor.GoTo(2);
  cursor.MoveNext();
  EXPECT_EQ(cursor.ID(), 1);
}

TEST_F(SortTest, EachCursorHasItsOwnOrder) {
  LoadOf({Line("1", "A", "b"), Line("2", "A", "a")});
  const auto shared = reader_->EventTable->cursor();
  shared->SetSort(store::kDescription, SortOrder::kAscending);
  EventCursor clone = shared->Clone();
  EXPECT_THAT(Walk(clone), ElementsAre(1, 2));
  EXPECT_THAT(Walk(*shared), ElementsAre(2, 1));
}

TEST_F(SortTest, ColumnsThatTheTableDoesNotHaveRaise3265AndChangeNothing) {
  LoadOf({Line("1", "A", "b"), Line("2", "A", "a")});
  EventCursor cursor = reader_->EventTable->Clone();
  cursor.SetSort(store::kDescription, SortOrder::kAscending);
  cursor.MoveLast();
  for (const int column : {-1, 11, 1000}) {
    try {
      cursor.SetSort(column, SortOrder::kAscending);
      ADD_FAILURE() << column;
    } catch (const core::RunTimeError& error) {
      EXPECT_EQ(error.number, 3265);
    }
  }
  EXPECT_EQ(cursor.ID(), 1);
}

TEST_F(SortTest, EmptyTableIsAtBothEnds) {
  AppendBytes("");
  Load();
  EventCursor cursor = reader_->EventTable->Clone();
  cursor.SetSort(store::kID, SortOrder::kDescending);
  EXPECT_TRUE(cursor.Bof() && cursor.Eof());
  EXPECT_THAT(Walk(cursor), IsEmpty());
}

TEST_F(SortTest, AgreesWithAPlainSortOfManyRows) {
  std::uint64_t state = 3;
  const auto random = [&state](std::uint64_t n) {
    state = state * 6364136223846793005u + 1442695040888963407u;
    return (state >> 33) % n;
  };
  int date = 100000;
  const auto more = [&](int lines) {
    for (int i = 0; i < lines; ++i) {
      AppendLine(Line(std::to_string(++date), "M" + std::to_string(random(3)),
                      "d" + std::to_string(random(40)), std::to_string(random(9))));
    }
  };
  more(300);
  Load();
  EventCursor cursor = reader_->EventTable->Clone();
  for (int round = 0; round < 40; ++round) {
    if (round % 10 == 9) {
      more(20);
      Tick();
    }
    const int column = std::vector{0, 1, 5, 7, 8}[random(5)];
    const bool descending = random(2) == 0;
    std::vector<store::Bookmark> rows(Rows());
    for (store::Bookmark row = 0; row < rows.size(); ++row) rows[row] = row;
    std::stable_sort(rows.begin(), rows.end(), [&](store::Bookmark one, store::Bookmark other) {
      if (descending) std::swap(one, other);
      return column == 0 ? ID(one) < ID(other) : Text(one, column) < Text(other, column);
    });
    const std::string monitor = "M" + std::to_string(random(3));
    std::erase_if(
        rows, [&](store::Bookmark row) { return round % 2 == 0 && Text(row, store::kMonitor) != monitor; });
    std::vector<std::int32_t> expected;
    for (const store::Bookmark row : rows) expected.push_back(ID(row));
    cursor.SetFilter(round % 2 == 0 ? "Monitor = '" + monitor + "'" : "");
    cursor.SetSort(column, descending ? SortOrder::kDescending : SortOrder::kAscending);
    EXPECT_EQ(Walk(cursor), expected) << column << descending;
  }
}

}  // namespace
}  // namespace zendrix::test
