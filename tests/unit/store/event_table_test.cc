#include "store/event_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "core/number_rules.h"
#include "core/run_time_error.h"
#include "store/event_storage.h"
#include "support/store_fixture.h"

namespace zendrix::test {
namespace {

using store::Direction;
using store::EventCursor;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

int NumberRaisedBy(const std::function<void()>& act) {
  try {
    act();
  } catch (const core::RunTimeError& error) {
    return error.number;
  }
  return 0;
}

class EventTableTest : public StoreFixture {
 protected:
  void LoadOf(const std::vector<std::string>& lines) {
    AppendLines(lines);
    Load();
  }
  std::vector<std::int32_t> Filtered(const std::string& filter) {
    EventCursor cursor = reader_->EventTable->Clone();
    cursor.SetFilter(filter);
    std::vector<std::int32_t> forward, backward;
    for (; !cursor.Eof(); cursor.MoveNext()) forward.push_back(cursor.ID());
    for (cursor.MoveLast(); !cursor.Bof(); cursor.MovePrevious()) backward.push_back(cursor.ID());
    EXPECT_EQ(cursor.RecordCount(), forward.size());
    EXPECT_EQ(std::vector<std::int32_t>(backward.rbegin(), backward.rend()), forward);
    return forward;
  }
  int Malformed(const std::string& criterion) {
    EventCursor cursor = reader_->EventTable->Clone();
    const int by_filter = NumberRaisedBy([&] { cursor.SetFilter(criterion); });
    EXPECT_EQ(NumberRaisedBy([&] { cursor.Find(criterion, 0, Direction::kForward); }), by_filter);
    return by_filter;
  }
};

TEST_F(EventTableTest, EmptyTableIsAtBothEnds) {
  AppendBytes("");
  Load();
  EventCursor cursor = reader_->EventTable->Clone();
  for (const auto& move : std::vector<std::function<void()>>{
           [&] {}, [&] { cursor.MoveFirst(); }, [&] { cursor.MoveLast(); }, [&] { cursor.MoveNext(); },
           [&] { cursor.MovePrevious(); }, [&] { cursor.Find("ID = 1", 0, Direction::kForward); },
           [&] { cursor.SetFilter("ID = 1"); }}) {
    move();
    EXPECT_TRUE(cursor.Bof());
    EXPECT_TRUE(cursor.Eof());
  }
  EXPECT_EQ(NumberRaisedBy([&] { cursor.ID(); }), 3021);
  EXPECT_EQ(NumberRaisedBy([&] { cursor.Text(store::kMonitor); }), 3021);
  EXPECT_EQ(NumberRaisedBy([&] { cursor.bookmark(); }), 3021);
}

TEST_F(EventTableTest, CursorWalksBothWays) {
  LoadOf({Line("1", "A", "x"), Line("2", "B", "y"), Line("3", "A", "z")});
  const auto shared = reader_->EventTable->cursor();
  EventCursor& cursor = *shared;
  EXPECT_EQ(cursor.ID(), 1);
  cursor.MovePrevious();
  EXPECT_TRUE(cursor.Bof());
  EXPECT_FALSE(cursor.Eof());
  cursor.MovePrevious();
  EXPECT_TRUE(cursor.Bof());
  cursor.MoveNext();
  EXPECT_EQ(cursor.ID(), 1);
  cursor.MoveLast();
  EXPECT_EQ(cursor.ID(), 3);
  cursor.MoveNext();
  EXPECT_TRUE(cursor.Eof());
  cursor.MoveNext();
  EXPECT_TRUE(cursor.Eof());
  cursor.MovePrevious();
  EXPECT_EQ(cursor.ID(), 3);
}

TEST_F(EventTableTest, ColumnsByNameAndIndex) {
  LoadOf({Line("1", "A", "x") + "|extra"});
  const auto shared = reader_->EventTable->cursor();
  EventCursor& cursor = *shared;
  const auto& table = cursor.table();
  EXPECT_EQ(cursor.Text(table.ColumnIndex("description")), "x");
  EXPECT_EQ(cursor.Text(table.ColumnIndex("Descr10")), "extra");
  EXPECT_EQ(cursor.Text(store::kID), "1");
  for (const char* name :
       {"Descr9", "Descr11", "Descr010", "Descr1x", "Descr", "Descr99999999999", "Desc", ""})
    EXPECT_EQ(table.ColumnIndex(name), -1) << name;
  EXPECT_EQ(NumberRaisedBy([&] { cursor.Text(12); }), 3265);
  EXPECT_EQ(NumberRaisedBy([&] { cursor.Text(-1); }), 3265);
}

TEST_F(EventTableTest, ColumnNamesOutOfRangeRaise3265) {
  LoadOf({Line("1", "A", "x") + "|extra"});
  const auto& table = *reader_->EventTable;
  EXPECT_EQ(table.ColumnName(0), "ID");
  EXPECT_EQ(table.ColumnName(11), "Descr10");
  EXPECT_EQ(NumberRaisedBy([&] { table.ColumnName(-1); }), 3265);
  EXPECT_EQ(NumberRaisedBy([&] { table.ColumnName(12); }), 3265);
  EXPECT_EQ(NumberRaisedBy([&] { table.Text(0, 12); }), 3265);
}

// A cursor that took over another's position kept a selection on its own old table: reading through it was a
// use after free once that table went.
static_assert(!std::is_move_assignable_v<EventCursor> && !std::is_copy_assignable_v<EventCursor>);
static_assert(!std::is_move_constructible_v<EventCursor> && !std::is_copy_constructible_v<EventCursor>);

TEST_F(EventTableTest, ViewsAndBookmarksSurviveAppends) {
  LoadOf({Line("1", "A", "x")});
  EventCursor cursor = reader_->EventTable->Clone();
  const auto view = cursor.Text(store::kDateTime);
  const std::string copy(view);
  const auto bookmark = cursor.bookmark();
  for (int i = 0; i < 20000; ++i) AppendLine(Line(std::to_string(2000000 + i), "A", std::to_string(i)));
  Tick();
  EXPECT_EQ(Rows(), 20001u);
  EXPECT_EQ(view, copy);
  cursor.MoveLast();
  EXPECT_EQ(cursor.Text(store::kDescription), "19999");
  cursor.GoTo(bookmark);
  EXPECT_EQ(cursor.Text(store::kDescription), "x");
  EXPECT_EQ(NumberRaisedBy([&] { cursor.GoTo(20001); }), 3001);
}

TEST_F(EventTableTest, CloneHasItsOwnPositionAndFilter) {
  LoadOf({Line("1", "A", "x"), Line("2", "B", "y")});
  const auto handle = reader_->EventTable->cursor();
  EventCursor& shared = *handle;
  shared.MoveLast();
  EventCursor clone = shared.Clone();
  EXPECT_EQ(clone.ID(), 1);
  clone.SetFilter("Monitor = 'A'");
  EXPECT_EQ(clone.RecordCount(), 1u);
  EXPECT_EQ(shared.ID(), 2);
  EXPECT_EQ(shared.RecordCount(), 2u);
  EventCursor other = clone.Clone();
  EXPECT_EQ(other.RecordCount(), 2u);
}

TEST_F(EventTableTest, AlertFilterComparesChangeAsANumber) {
  LoadOf({Line("1", "System", "x", "0.5"), Line("2", "Aggregation", "x", "0.5"),
          Line("3", "Aggregation", "x", "-0.1"), Line("4", "Aggregation", "x", "0"),
          Line("5", "Aggregation", "x", "12345")});
  EXPECT_THAT(Filtered("Monitor = 'Aggregation' AND Change >= 0"), ElementsAre(2, 4, 5));
  EXPECT_THAT(Filtered("Monitor = 'Aggregation' AND Change >= 0.94995"), ElementsAre(5));
  EXPECT_THAT(Filtered("Monitor = 'Aggregation' and Change < 0 "), ElementsAre(3));
  EXPECT_THAT(Filtered("Change = 12345"), ElementsAre(5));
  EXPECT_THAT(Filtered("Change <> 0.5"), ElementsAre(3, 4, 5));
  EXPECT_THAT(Filtered("Change = '0.5000000000000000'"), ElementsAre(1, 2));
  EXPECT_THAT(Filtered("Change = '0.5'"), IsEmpty());
}

TEST_F(EventTableTest, NumbersFollowTheUsersLocale) {
  platform_.locale.info.decimal = ",";
  platform_.locale.info.thousands = ".";
  LoadOf({Line("1", "Aggregation", "x", "0.5"), Line("2", "Aggregation", "x", "1234.5")});
  EXPECT_EQ(Text(1, store::kChange), "1.234,5000000000000000");
  EXPECT_THAT(Filtered("Change >= 0.94995"), ElementsAre(2));
  EXPECT_THAT(Filtered("Change >= 0,94995"), ElementsAre(2));
  EXPECT_THAT(Filtered("Change = 1234.5"), ElementsAre(2));
}

TEST_F(EventTableTest, TextsThatAreNoNumberMatchNoNumber) {
  LoadOf({"1,H,7,A|0|1|x|N/A|r|", "2,H,7,A|0|1|x|12|r|", "3,H,7,A|0|1|x||r|"});
  EXPECT_THAT(Filtered("Reaction < 100"), ElementsAre(2));
  EXPECT_THAT(Filtered("Reaction <> 5"), ElementsAre(2));
  EXPECT_THAT(Filtered("DateUTC >= 2"), ElementsAre(2, 3));
}

TEST_F(EventTableTest, QuotedValuesAreComparedAsBytes) {
  LoadOf({Line("9", "a", "\xE4"), Line("10", "A", "B"), Line("10", "A ", "b")});
  EXPECT_THAT(Filtered("Monitor = 'A'"), ElementsAre(2));
  EXPECT_THAT(Filtered("Monitor <> 'A'"), ElementsAre(1, 3));
  EXPECT_THAT(Filtered("Description > 'b'"), ElementsAre(1));
  EXPECT_THAT(Filtered("Description <= 'b'"), ElementsAre(2, 3));
  EXPECT_THAT(Filtered("DateUTC < '9'"), ElementsAre(2, 3));
}

// Only of dates that rise from row to row is a comparison a range of rows; which of them are plain numbers
// makes no difference.
TEST_F(EventTableTest, DateThatIsWrittenInAnotherWayCountsForTheOrderToo) {
  LoadOf({Line("1700000009", "System", "a"), Line("01700000001", "System", "b"),
          Line("1700000010", "System", "c")});
  EXPECT_THAT(Filtered("DateUTC = '01700000001'"), ElementsAre(2));
  EXPECT_THAT(Filtered("DateUTC = '1700000009'"), ElementsAre(1));
  EXPECT_THAT(Filtered("DateUTC > '01700000001'"), ElementsAre(1, 3));
}

TEST_F(EventTableTest, IdIsANumberQuotedOrNot) {
  LoadOf({Line("1", "A", "x"), "short", Line("2", "A", "y")});
  EXPECT_THAT(Filtered("ID = '3' "), ElementsAre(3));
  EXPECT_THAT(Filtered("ID = '03'"), ElementsAre(3));
  EXPECT_THAT(Filtered("ID = 2"), IsEmpty());
  EXPECT_THAT(Filtered("ID = ''"), IsEmpty());
  EXPECT_THAT(Filtered("ID = 'x'"), IsEmpty());
  EXPECT_THAT(Filtered("ID > 1.5"), ElementsAre(3));
  EXPECT_THAT(Filtered("ID <> 1"), ElementsAre(3));
  EXPECT_THAT(Filtered("ID >= 1 AND ID <= 2"), ElementsAre(1));
}

TEST_F(EventTableTest, BlanksAroundOperatorsDoNotMatter) {
  LoadOf({Line("1", "A", "x")});
  EXPECT_THAT(Filtered("  Monitor='A'   AND   Description  =  'x'   "), ElementsAre(1));
  EXPECT_THAT(Filtered(""), ElementsAre(1));
  EXPECT_THAT(Filtered("  "), ElementsAre(1));
}

TEST_F(EventTableTest, MalformedCriteriaRaise3001) {
  LoadOf({Line("1", "A", "x")});
  for (const char* criterion : {"Description = 'it's' ",
                                "Description = '''",
                                "Description = 'x''' ",
                                "Description = 'x",
                                "Description = x'",
                                "Description",
                                "Description =",
                                "= 'x'",
                                "Nothing = 'x'",
                                "Description == 'x'",
                                "Description LIKE 'x'",
                                "Description = 'x' OR ID = 1",
                                "Description = 'x' AND",
                                "Description = 'x'AND ID = 1",
                                "ID = 1 ANDID = 2",
                                "ID = abc",
                                "Change >= ",
                                "Change >= 1x",
                                "Change = inf",
                                "Change = nan",
                                "(ID = 1)"}) {
    EXPECT_EQ(Malformed(criterion), 3001) << criterion;
  }
}

TEST_F(EventTableTest, FindTakesOneComparisonOnly) {
  LoadOf({Line("1", "A", "x")});
  EventCursor cursor = reader_->EventTable->Clone();
  // A description that closes its quote and goes on must not widen the search.
  EXPECT_EQ(
      NumberRaisedBy([&] { cursor.Find("Description = 'x' AND Monitor = 'A' ", 0, Direction::kForward); }),
      3001);
  EXPECT_EQ(NumberRaisedBy([&] { cursor.Find("", 0, Direction::kForward); }), 3001);
  EXPECT_EQ(cursor.bookmark(), 0u);
}

TEST_F(EventTableTest, MalformedFilterLeavesTheOldOne) {
  LoadOf({Line("1", "A", "x"), Line("2", "B", "y")});
  EventCursor cursor = reader_->EventTable->Clone();
  cursor.SetFilter("Monitor = 'B'");
  EXPECT_EQ(NumberRaisedBy([&] { cursor.SetFilter("Monitor = 'it's'"); }), 3001);
  EXPECT_EQ(cursor.RecordCount(), 1u);
  EXPECT_EQ(cursor.ID(), 2);
}

TEST_F(EventTableTest, FindStartsSoManyRowsAway) {
  LoadOf({Line("1", "A", "x"), Line("2", "B", "x"), Line("3", "A", "x"), Line("4", "B", "y")});
  EventCursor cursor = reader_->EventTable->Clone();
  cursor.Find("Monitor = 'A' ", 0, Direction::kForward);
  EXPECT_EQ(cursor.ID(), 1);
  cursor.Find("Monitor = 'A' ", 1, Direction::kForward);
  EXPECT_EQ(cursor.ID(), 3);
  cursor.Find("Monitor = 'A' ", 1, Direction::kForward);
  EXPECT_TRUE(cursor.Eof());
  cursor.Find("Monitor = 'A' ", 1, Direction::kForward);
  EXPECT_TRUE(cursor.Eof());
  cursor.Find("Description = 'x' ", 1, Direction::kBackward);
  EXPECT_EQ(cursor.ID(), 3);
  cursor.Find("Monitor = 'B' ", 0, Direction::kBackward);
  EXPECT_EQ(cursor.ID(), 2);
  cursor.Find("Monitor = 'B' ", 1, Direction::kBackward);
  EXPECT_TRUE(cursor.Bof());
  cursor.Find("Monitor = 'A' ", 1, Direction::kBackward);
  EXPECT_TRUE(cursor.Bof());
  cursor.MoveFirst();
  cursor.Find("ID = 4", 3, Direction::kForward);
  EXPECT_EQ(cursor.ID(), 4);
  cursor.Find("ID = 4", 4, Direction::kForward);
  EXPECT_TRUE(cursor.Eof());
}

TEST_F(EventTableTest, FindStaysInsideTheFilter) {
  LoadOf({Line("1", "A", "x"), Line("2", "B", "x"), Line("3", "A", "y"), Line("4", "A", "x")});
  EventCursor cursor = reader_->EventTable->Clone();
  cursor.SetFilter("Monitor = 'A'");
  cursor.Find("Description = 'x'", 1, Direction::kForward);
  EXPECT_EQ(cursor.ID(), 4);
  cursor.Find("Description = 'x'", 1, Direction::kBackward);
  EXPECT_EQ(cursor.ID(), 1);
  EXPECT_EQ(NumberRaisedBy([&] { cursor.GoTo(1); }), 3001);
  cursor.GoTo(2);
  EXPECT_EQ(cursor.ID(), 3);
}

TEST_F(EventTableTest, FindStaysInsideAFilterByIdOrDate) {
  LoadOf({Line("100", "A", "x"), Line("101", "B", "x"), Line("102", "A", "x"), Line("103", "B", "x"),
          Line("104", "A", "x")});
  for (const char* filter : {"ID >= 2 AND ID < 5", "DateUTC > '100' AND DateUTC <= '103'"}) {
    EventCursor cursor = reader_->EventTable->Clone();
    cursor.SetFilter(filter);
    EXPECT_EQ(cursor.ID(), 2) << filter;
    for (const char* criterion : {"Monitor = 'A'", "Description = 'x' "}) {
      cursor.MoveLast();
      cursor.Find(criterion, 1, Direction::kForward);
      EXPECT_TRUE(cursor.Eof()) << filter << criterion;
      cursor.MoveFirst();
      cursor.Find(criterion, 1, Direction::kBackward);
      EXPECT_TRUE(cursor.Bof()) << filter << criterion;
    }
    cursor.MoveFirst();
    cursor.Find("ID = 5", 0, Direction::kForward);
    EXPECT_TRUE(cursor.Eof()) << filter;
    cursor.MoveLast();
    cursor.Find("ID = 1", 0, Direction::kBackward);
    EXPECT_TRUE(cursor.Bof()) << filter;
    EXPECT_EQ(NumberRaisedBy([&] { cursor.GoTo(0); }), 3001) << filter;
    EXPECT_EQ(NumberRaisedBy([&] { cursor.GoTo(4); }), 3001) << filter;
    cursor.GoTo(1);
    EXPECT_EQ(cursor.ID(), 2) << filter;
    cursor.GoTo(3);
    EXPECT_EQ(cursor.ID(), 4) << filter;
  }
}

TEST_F(EventTableTest, RowsThatArriveJoinTheFilter) {
  LoadOf({Line("1", "A", "x"), Line("2", "B", "y")});
  EventCursor cursor = reader_->EventTable->Clone();
  cursor.SetFilter("Monitor = 'C'");
  EXPECT_TRUE(cursor.Bof() && cursor.Eof());
  AppendLines({Line("3", "C", "x"), Line("4", "A", "x")});
  Tick();
  EXPECT_EQ(cursor.RecordCount(), 1u);
  cursor.MoveFirst();
  EXPECT_EQ(cursor.ID(), 3);
  EXPECT_THAT(Filtered("Monitor = 'A'"), ElementsAre(1, 4));
}

TEST_F(EventTableTest, CountOfEarlierOccurrencesFollowsTheDates) {
  std::vector<std::string> lines;
  for (int i = 0; i < 100; ++i) {
    lines.push_back(
        Line(std::to_string(1000 + i / 2), "M", "d" + std::to_string(i % 3), std::to_string(i % 2)));
  }
  LoadOf(lines);
  EXPECT_EQ(Filtered("Description = 'd1' AND DateUTC < '1020' AND Change = '1.0000000000000000' ").size(),
            7u);
  // Dates that fall again: the same question, answered without their order.
  AppendLine(Line("1050", "M", "d1", "1"));
  AppendLine(Line("1001", "M", "d1", "1"));
  Tick();
  EXPECT_EQ(Filtered("Description = 'd1' AND DateUTC < '1020' AND Change = '1.0000000000000000' ").size(),
            8u);
}

// What the rows are by testing each of them against each comparison in the plainest way.
struct Plain {
  int column;
  std::string op;
  bool quoted;
  std::string value;
};

bool PlainMatch(const store::EventTable& table, store::Bookmark row, const Plain& plain) {
  const auto compare = [&](auto left, auto right) {
    if (plain.op == "=") return left == right;
    if (plain.op == "<>") return left != right;
    if (plain.op == "<") return left < right;
    if (plain.op == "<=") return left <= right;
    if (plain.op == ">") return left > right;
    return left >= right;
  };
  const std::string text(table.Text(row, plain.column));
  if (plain.quoted && plain.column != store::kID) {
    return compare(std::vector<unsigned char>(text.begin(), text.end()),
                   std::vector<unsigned char>(plain.value.begin(), plain.value.end()));
  }
  return core::IsNumeric(text, table.locale()) &&
         compare(core::CDbl(text, table.locale()), std::stod(plain.value));
}

TEST_F(EventTableTest, IndexedSearchAgreesWithAPlainScan) {
  std::uint64_t state = 99;
  const auto random = [&state](std::uint64_t n) {
    state = state * 6364136223846793005u + 1442695040888963407u;
    return (state >> 33) % n;
  };
  const std::vector<std::string> ops = {"=", "=", "=", "<>", "<", "<=", ">", ">="};
  for (int round = 0; round < 6; ++round) {
    platform_.files.Put(kPath, "");
    reader_ = std::make_unique<store::CMkvlf>(state_, log_);
    const auto add_lines = [&](int count, int& date) {
      for (int i = 0; i < count; ++i) {
        date += static_cast<int>(random(2));
        if (round % 2 == 1 && random(20) == 0) date -= 3;
        AppendLine(Line(std::to_string(date), "M" + std::to_string(random(3)),
                        "d" + std::to_string(random(6)), std::to_string(random(4))) +
                   "|e" + std::to_string(random(3)));
      }
    };
    int date = 995;
    add_lines(80, date);
    Load();
    for (int step = 0; step < 120; ++step) {
      if (step % 30 == 29) {
        date += 5000;
        add_lines(10, date);
        Tick();
      }
      std::vector<Plain> plains;
      std::string text;
      for (std::uint64_t n = 1 + random(3); n > 0; --n) {
        Plain plain;
        plain.column = static_cast<int>(std::vector{0, 1, 5, 7, 8, 11}[random(6)]);
        plain.op = ops[random(ops.size())];
        const store::Bookmark row = static_cast<store::Bookmark>(random(Rows()));
        plain.value = random(10) == 0 ? "77" : Text(row, plain.column);
        plain.quoted = plain.column == 0 ? random(2) == 0 : plain.column == 7 ? random(2) == 0 : true;
        if (!text.empty()) text += random(2) == 0 ? " AND " : "  and ";
        text += reader_->EventTable->ColumnName(plain.column) + " " + plain.op + " " +
                (plain.quoted ? "'" + plain.value + "'" : plain.value);
        plains.push_back(plain);
      }
      std::vector<std::int32_t> expected;
      std::set<store::Bookmark> rows;
      for (store::Bookmark row = 0; row < Rows(); ++row) {
        if (!std::ranges::all_of(plains,
                                 [&](const Plain& p) { return PlainMatch(*reader_->EventTable, row, p); }))
          continue;
        expected.push_back(ID(row));
        rows.insert(row);
      }
      EXPECT_EQ(Filtered(text), expected) << text;
      if (plains.size() > 1) continue;
      EventCursor cursor = reader_->EventTable->Clone();
      const auto start = static_cast<store::Bookmark>(random(Rows()));
      cursor.GoTo(start);
      cursor.Find(text, 1, Direction::kForward);
      const auto next = rows.upper_bound(start);
      ASSERT_EQ(cursor.Eof(), next == rows.end()) << text;
      if (next != rows.end()) {
        EXPECT_EQ(cursor.bookmark(), *next) << text;
      }
      cursor.GoTo(start);
      cursor.Find(text, 0, Direction::kBackward);
      auto before = rows.upper_bound(start);
      ASSERT_EQ(cursor.Bof(), before == rows.begin()) << text;
      if (before != rows.begin()) {
        EXPECT_EQ(cursor.bookmark(), *--before) << text;
      }
    }
  }
}

TEST(TextPoolTest, EqualTextsShareANumber) {
  store::TextPool pool;
  EXPECT_EQ(pool.Intern(""), store::kEmptyText);
  EXPECT_EQ(pool.Lookup("a"), store::kNoText);
  std::vector<store::TextId> ids;
  std::vector<std::string> texts;
  for (int i = 0; i < 5000; ++i)
    texts.push_back(std::string(static_cast<std::size_t>(i % 40), 'x') + std::to_string(i));
  for (const auto& text : texts) ids.push_back(pool.Intern(text));
  for (std::size_t i = 0; i < texts.size(); ++i) {
    EXPECT_EQ(pool.Intern(texts[i]), ids[i]);
    EXPECT_EQ(pool.Lookup(texts[i]), ids[i]);
    EXPECT_EQ(pool.Text(ids[i]), texts[i]);
  }
  EXPECT_EQ(pool.size(), 5001u);
  const std::string huge(3'000'000, 'h');
  EXPECT_EQ(pool.Text(pool.Intern(huge)), huge);
  EXPECT_EQ(pool.Keep(""), "");
}

TEST(PostingsTest, ListsGrowAndStaySeparate) {
  store::Postings postings;
  std::vector<std::vector<std::uint32_t>> expected(700);
  for (std::uint32_t row = 0; row < 20000; ++row) {
    const std::uint64_t key = row % 3 == 0 ? 0 : row % 700;
    postings.Add(key << 32 | key);
    expected[key].push_back(row);
  }
  for (std::uint64_t key = 0; key < 700; ++key) {
    const auto rows = postings.Find(key << 32 | key);
    EXPECT_EQ(std::vector<std::uint32_t>(rows.begin(), rows.end()), expected[key]);
  }
  EXPECT_TRUE(postings.Find(12345).empty());
}

}  // namespace
}  // namespace zendrix::test
