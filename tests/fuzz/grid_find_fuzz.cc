// What is looked for is what a user types, and cells hold what whoever the console is meant to catch writes.
// An input is a byte that says how to search, the text, a byte 1F and rows with a byte 1E between, each the
// pieces of a line. All hits, one behind the other, are those of a search of every cell.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "admin/row_search.h"
#include "core/text_rules.h"
#include "platform/memory/memory_family.h"
#include "support/grid_rows.h"
#include "support/naive_search.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace zendrix;
  std::string_view input(reinterpret_cast<const char*>(data), size);
  if (input.empty()) return 0;
  const unsigned how = static_cast<unsigned char>(input[0]);
  input.remove_prefix(1);
  const std::size_t end = input.find('\x1F');
  if (end == 0 || end == std::string_view::npos) return 0;
  const std::string wanted(input.substr(0, end));
  const auto width = [](std::string_view text) { return static_cast<int>(text.size()); };
  platform::MemoryFamily family;
  admin::EventRows rows(family, {width, width, 1});
  admin::EventGrid grid("EventList", rows);
  grid.SetFormatString("0|1|2|3|4|5|6|7|8");
  grid.HideInnerColumns();
  for (int col = 0; col < 5; ++col)
    if ((how >> col & 1) != 0) grid.SetColWidth(col + 1, col == 4 ? 500 : 0);
  rows.BeginLoad({});
  int id = 0;
  for (const std::string_view line : core::Split(input.substr(end + 1), "\x1E")) {
    std::vector<std::string_view> pieces = core::Split(line, ",");
    pieces.resize(5);
    ++id;
    testing::InsertTop(rows, grid, {id, pieces[0], pieces[1], pieces[2], pieces[3], pieces[4], id * 4711});
    if (line.size() % 16 == 15) grid.SetRowHeight(1, 0);
  }
  const bool match_case = (how >> 5 & 1) != 0;
  admin::RowSearch search(grid, admin::TextSearch(wanted, match_case));
  admin::CellPlace from;
  for (int hits = 0; hits < 100; ++hits) {
    const auto hit = search.Find(from);
    if (hit != testing::NaiveFind(grid, wanted, match_case, from)) std::abort();
    if (!hit) break;
    from = {hit->row, hit->col, hit->position + wanted.size()};
  }
  return 0;
}
