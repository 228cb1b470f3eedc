// Descriptions of events end up inside criteria, unescaped. An input is a criterion, used as filter and for
// finds on a fixed table, in its own order and sorted: it is malformed, or the rows that it gives are those
// that a scan gives.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/error_log.h"
#include "core/number_rules.h"
#include "core/run_time_error.h"
#include "platform/memory/memory_platform.h"
#include "store/criteria.h"
#include "store/reader.h"

namespace {

using zendrix::store::Bookmark;
using zendrix::store::Comparison;
using zendrix::store::Direction;
using zendrix::store::EventCursor;
using zendrix::store::EventTable;

void Require(bool holds) {
  if (!holds) std::abort();
}

struct Console {
  zendrix::platform::MemoryPlatform platform;
  zendrix::platform::Seams seams = platform.seams();
  zendrix::core::AppState state{seams};
  zendrix::core::ErrorLog log{state};
  zendrix::store::CMkvlf reader{state, log};

  Console() {
    std::string file = "1000,H,1,System|0|1|first|r|c||extra\r\n";
    const char* const monitors[] = {"System", "Aggregation", "Community"};
    for (int i = 0; i < 40; ++i) {
      file += std::to_string(1000 + i / 3) + ",H,1," + monitors[i % 3] + "|" + std::to_string(i % 4) + "|" +
              std::to_string(i % 5) + ".5|d" + std::to_string(i % 7) + "|r|c,1||e" + std::to_string(i % 2) +
              "\r\n";
    }
    platform.files.Put("/k", file);
    reader.InitClass("/k");
  }
};

bool Matches(const EventTable& table, Bookmark row, const Comparison& comparison) {
  if (comparison.never) return false;
  const std::string_view text = table.Text(row, comparison.column);
  if (!comparison.numeric) return Satisfies(comparison.op, text.compare(comparison.text));
  if (!zendrix::core::IsNumeric(text, table.locale())) return false;
  const double number = zendrix::core::CDbl(text, table.locale());
  return Satisfies(comparison.op, number < comparison.number ? -1 : number > comparison.number ? 1 : 0);
}

void CheckFilter(EventCursor& cursor, const std::vector<Bookmark>& expected) {
  std::vector<Bookmark> seen;
  for (cursor.MoveFirst(); !cursor.Eof(); cursor.MoveNext()) seen.push_back(cursor.bookmark());
  Require(seen == expected);
  Require(cursor.RecordCount() == expected.size());
  std::size_t left = expected.size();
  for (cursor.MoveLast(); !cursor.Bof(); cursor.MovePrevious())
    Require(cursor.bookmark() == expected[--left]);
  Require(left == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto console = std::make_unique<Console>();
  const EventTable& table = *console->reader.EventTable;
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  std::vector<Comparison> comparisons;
  try {
    comparisons = zendrix::store::ParseCriteria(text, table);
  } catch (const zendrix::core::RunTimeError& error) {
    Require(error.number == zendrix::core::kBadCriterion);
    return 0;
  }
  std::vector<Bookmark> expected;
  for (Bookmark row = 0; row < table.RowCount(); ++row) {
    bool all = true;
    for (const Comparison& comparison : comparisons) all = all && Matches(table, row, comparison);
    if (all) expected.push_back(row);
  }
  EventCursor cursor = table.Clone();
  cursor.SetFilter(text);
  CheckFilter(cursor, expected);
  const int column = static_cast<int>(size) % table.ColumnCount();
  std::vector<Bookmark> sorted = expected;
  std::ranges::stable_sort(sorted, [&](Bookmark one, Bookmark other) {
    if (column == zendrix::store::kID) return table.ID(one) > table.ID(other);
    return table.Text(one, column) > table.Text(other, column);
  });
  cursor.SetSort(column, zendrix::store::SortOrder::kDescending);
  CheckFilter(cursor, sorted);
  if (comparisons.size() != 1) return 0;
  EventCursor finder = table.Clone();
  for (const Bookmark row : expected) {
    finder.Find(text, row == expected.front() ? 0 : 1, Direction::kForward);
    Require(!finder.Eof() && finder.bookmark() == row);
  }
  finder.Find(text, 1, Direction::kForward);
  Require(finder.Eof());
  return 0;
}
