#include "widgets/list_view.h"

#include <gtest/gtest.h>

namespace zendrix::widgets {
namespace {

class ListViewTest : public ::testing::Test {
 protected:
  ListViewTest() {
    list_.rows_added.ConnectForever([this] { ++added_; });
    list_.cleared.ConnectForever([this] { ++cleared_; });
    list_.selection_changed.ConnectForever([this] { ++selected_; });
  }
  ListView::Slot Insert(const std::string& key) {
    return *list_.InsertTop(key, "text " + key, 1, "tag " + key);
  }

  ListView list_{"list"};
  int added_ = 0, cleared_ = 0, selected_ = 0;
};

TEST_F(ListViewTest, NewestRowStandsOnTop) {
  Insert("a");
  list_.AddSubItem(Insert("b"), "sub", 7);
  EXPECT_EQ(list_.Print(), "text b[1] | sub[7]\ntext a[1]\n");
}

TEST_F(ListViewTest, KeyThatIsTakenInsertsNothing) {
  Insert("a");
  EXPECT_FALSE(list_.InsertTop("a", "other", 2, ""));
  EXPECT_EQ(list_.size(), 1u);
  EXPECT_EQ(added_, 1);
}

TEST_F(ListViewTest, SlotsStayWhileRowsAreInserted) {
  const auto first = Insert("a");
  Insert("b");
  Insert("c");
  EXPECT_EQ(list_.in_slot(first).key, "a");
  EXPECT_EQ(list_.Find("a"), first);
  EXPECT_EQ(list_.at(2).key, "a");
}

TEST_F(ListViewTest, BatchTellsItsRowsOnce) {
  {
    const ListBatch batch(list_);
    for (const char* key : {"a", "b", "c"}) Insert(key);
    EXPECT_EQ(added_, 0);
  }
  EXPECT_EQ(added_, 1);
}

TEST_F(ListViewTest, GhostedRowIsMarkedAndTold) {
  int changed = 0;
  list_.row_changed.ConnectForever([&](ListView::Slot) { ++changed; });
  const auto first = Insert("a");
  Insert("b");
  list_.Ghost(first);
  EXPECT_EQ(list_.Print(), "text b[1]\n~text a[1]\n");
  EXPECT_EQ(changed, 1);
}

TEST_F(ListViewTest, RowGhostedInItsBatchIsToldWithIt) {
  int changed = 0;
  list_.row_changed.ConnectForever([&](ListView::Slot) { ++changed; });
  const ListBatch batch(list_);
  list_.Ghost(Insert("a"));
  EXPECT_EQ(changed, 0);
}

TEST_F(ListViewTest, InnerBatchDoesNotTell) {
  const ListBatch outer(list_);
  {
    const ListBatch inner(list_);
    Insert("a");
  }
  EXPECT_EQ(added_, 0);
}

TEST_F(ListViewTest, EmptyBatchTellsNothing) {
  { const ListBatch batch(list_); }
  EXPECT_EQ(added_, 0);
}

TEST_F(ListViewTest, ClearIsToldAtOnceEvenInABatch) {
  Insert("a");
  const ListBatch batch(list_);
  list_.Clear();
  EXPECT_EQ(cleared_, 1);
  EXPECT_FALSE(list_.first_visible());
}

TEST_F(ListViewTest, ClearEndsTheSelection) {
  list_.Select(Insert("a"));
  list_.Clear();
  EXPECT_FALSE(list_.selected());
  EXPECT_EQ(selected_, 2);
}

TEST_F(ListViewTest, SelectingTheSelectedRowIsToldToNobody) {
  const auto row = Insert("a");
  list_.Select(row);
  list_.Select(row);
  EXPECT_EQ(selected_, 1);
  list_.Select(std::nullopt);
  list_.Select(std::nullopt);
  EXPECT_EQ(selected_, 2);
}

// A click on the row that was selected already went unnoticed, so that a page which had stayed blank could
// not be shown again.
TEST_F(ListViewTest, ClickOnTheSelectedRowCountsAgain) {
  std::vector<ListView::Slot> clicked;
  list_.item_clicked.ConnectForever([&](ListView::Slot slot) {
    EXPECT_EQ(list_.selected(), slot);
    clicked.push_back(slot);
  });
  const auto a = Insert("a"), b = Insert("b");
  for (const auto slot : {a, a, b}) list_.Click(slot);
  EXPECT_EQ(clicked, (std::vector<ListView::Slot>{a, a, b}));
  EXPECT_EQ(selected_, 2);
}

TEST_F(ListViewTest, ClickOnARowThatIsGoneDoesNothing) {
  const auto a = Insert("a"), b = Insert("b");
  int clicked = 0;
  list_.item_clicked.ConnectForever([&](ListView::Slot) { ++clicked; });
  list_.selection_changed.ConnectForever([&] {
    if (list_.selected() == b) list_.Clear();
  });
  list_.Click(b);
  list_.Click(a);
  EXPECT_EQ(clicked, 0);
  EXPECT_FALSE(list_.selected());
}

TEST_F(ListViewTest, KeysAreFreeAgainAfterClear) {
  Insert("a");
  list_.Clear();
  EXPECT_TRUE(list_.InsertTop("a", "", 0, ""));
}

TEST_F(ListViewTest, FirstVisibleRowFollowsTheScrolledPlace) {
  for (const char* key : {"a", "b", "c"}) Insert(key);
  EXPECT_EQ(list_.in_slot(*list_.first_visible()).key, "c");
  list_.SetScrolledRows(1);
  EXPECT_EQ(list_.in_slot(*list_.first_visible()).key, "b");
  list_.SetScrolledRows(9);
  EXPECT_EQ(list_.in_slot(*list_.first_visible()).key, "a");
}

TEST_F(ListViewTest, ChangeOfARowThatNobodyKnowsYetIsNotTold) {
  int changed = 0;
  list_.row_changed.ConnectForever([&](ListView::Slot) { ++changed; });
  {
    const ListBatch batch(list_);
    list_.AddSubItem(Insert("a"), "x");
  }
  EXPECT_EQ(changed, 0);
  list_.SetSubItem(0, 2, "y", 3);
  EXPECT_EQ(changed, 1);
  EXPECT_EQ(list_.Print(), "text a[1] | x |  | y[3]\n");
}

TEST_F(ListViewTest, ColumnOfARowThatNobodyKnowsYetIsNotTold) {
  int changed = 0;
  list_.row_changed.ConnectForever([&](ListView::Slot) { ++changed; });
  Insert("a");
  {
    const ListBatch batch(list_);
    list_.SetSubItem(Insert("b"), 0, "x", 1);
    EXPECT_EQ(changed, 0);
    list_.SetSubItem(0, 0, "y", 2);
    EXPECT_EQ(changed, 1);
  }
  EXPECT_EQ(list_.Print(), "text b[1] | x[1]\ntext a[1] | y[2]\n");
}

TEST_F(ListViewTest, ColumnRightBehindTheLastIsAdded) {
  const auto slot = Insert("a");
  list_.SetSubItem(slot, 0, "x", 1);
  list_.SetSubItem(slot, 1, "y", 2);
  EXPECT_EQ(list_.Print(), "text a[1] | x[1] | y[2]\n");
}

TEST_F(ListViewTest, ChangeOfARowThatViewsKnowIsTold) {
  std::vector<ListView::Slot> changed;
  list_.row_changed.ConnectForever([&](ListView::Slot slot) { changed.push_back(slot); });
  Insert("a");
  const auto b = Insert("b");
  list_.AddSubItem(b, "x");
  EXPECT_EQ(changed, (std::vector<ListView::Slot>{b}));
}

TEST_F(ListViewTest, RowsOfABatchBehindAClearAreNotKnownYet) {
  int changed = 0;
  list_.row_changed.ConnectForever([&](ListView::Slot) { ++changed; });
  Insert("a");
  {
    const ListBatch batch(list_);
    list_.Clear();
    list_.AddSubItem(Insert("b"), "x");
    EXPECT_EQ(changed, 0);
    EXPECT_EQ(added_, 1);
  }
  EXPECT_EQ(added_, 2);
  EXPECT_EQ(list_.Print(), "text b[1] | x\n");
}

TEST_F(ListViewTest, ScrolledPlaceIsForgottenByAClear) {
  for (const char* key : {"a", "b", "c"}) Insert(key);
  list_.SetScrolledRows(2);
  list_.Clear();
  for (const char* key : {"d", "e", "f"}) Insert(key);
  EXPECT_EQ(list_.in_slot(*list_.first_visible()).key, "f");
}

}  // namespace
}  // namespace zendrix::widgets
