// grid and what stands behind it.
#include <algorithm>
#include <iostream>
#include <utility>

#include "core/run_time_error.h"
#include "inspect/admin_console.h"
#include "inspect/commands.h"
#include "inspect/document.h"
#include "inspect/grid_commands.h"

namespace zendrix::inspect {
namespace {

constexpr int kShownColumns = 8;

Json CellsOf(const admin::EventGrid& grid, int row) {
  Json cells = Json::array();
  for (int col = 0; col < kShownColumns; ++col) cells.push_back(Text(grid.Text(row, col)));
  return cells;
}

Json ItemsOf(const store::CUList& list) {
  Json items = Json::array();
  for (const auto& entry : list.ColList()) items.push_back(Text(entry.item));
  return items;
}

void Rows(Console& console, const GridWords& words) {
  RequireWords(words.plain(), 0, 0, "grid [--file FILE]");
  AdminConsole administrator(console, words.file());
  const admin::frmMain& form = administrator.form();
  const admin::EventGrid& grid = administrator.grid();
  console.PrintWithRows({{"rows", nullptr},  // their place in the document
                         {"GridLineCount", form.GridLineCount},
                         {"GridFileSize", form.GridFileSize},
                         {"RecCnt", Text(form.RecCnt.text.Get())},
                         {"GridMonitorList", ItemsOf(form.GridMonitorList)},
                         {"GridHostList", ItemsOf(form.GridHostList)},
                         {"GridChangeList", ItemsOf(form.GridChangeList)},
                         {"GridDescList", ItemsOf(form.GridDescList())}},
                        static_cast<std::size_t>(grid.DataRows()), [&](std::size_t i) -> Json {
                          const int row = static_cast<int>(i) + 1;
                          return {{"cells", CellsOf(grid, row)},
                                  {"picture3", grid.Picture(row, admin::kColMonitor)},
                                  {"picture4", grid.Picture(row, admin::kColChange)}};
                        });
}

void Sort(Console& console, const GridWords& words) {
  constexpr char kUsage[] = "grid sort COLUMN..., each of them 1, 2, 3, 4 or 8";
  RequireWords(words.plain(), 1, words.plain().size(), kUsage);
  for (const std::string& column : words.plain())
    if (column.size() != 1 || std::string_view("12348").find(column) == std::string_view::npos)
      throw WrongUsage(std::string("usage: ") + kUsage);
  AdminConsole administrator(console, words.file());
  admin::frmMain& form = administrator.form();
  for (const std::string& column : words.plain()) form.EventList.header_clicked.Raise(column[0] - '0');
  console.Print({{"order", OrderOf(form.EventList)},
                 {"SortColumn", form.sort.SortColumn},
                 {"TimeSorted", form.sort.TimeSorted},
                 {"TimeDescending", form.sort.TimeDescending}});
}

void Save(Console& console, const GridWords& words) {
  RequireWords(words.plain(), 3, 3, "grid save FIRST LAST OUT");
  const Words& plain = words.plain();
  AdminConsole administrator(console, words.file());
  // All rows of a grid that has none.
  const bool none = administrator.grid().DataRows() == 0 && plain[0] == "1" && plain[1] == "0";
  const int first = none ? 1 : administrator.Row(plain[0]);
  const int last = none ? 0 : administrator.Row(plain[1]);
  std::int32_t lines = 0;
  try {
    lines = administrator.form().files.SaveRows(first, last, plain[2]);
  } catch (const core::RunTimeError& error) {
    throw NoSuchThing("File " + plain[2] + " cannot be written: " + error.description);
  }
  console.Print({{"lines", lines}});
}

void PrintTick(Console& console, const admin::frmMain& form, int tick, bool flash) {
  const admin::EventGrid& grid = form.EventList;
  console.Print({{"tick", tick},
                 {"rows", grid.DataRows()},
                 {"GridLineCount", form.GridLineCount},
                 {"GridFileSize", form.GridFileSize},
                 {"RecCnt", Text(form.RecCnt.text.Get())},
                 {"top", grid.DataRows() > 0 ? CellsOf(grid, 1) : Json::array()},
                 {"flash", flash}});
}

void FollowGrid(Console& console, const GridWords& words) {
  RequireWords(words.plain(), 0, 0, "grid follow");
  AdminConsole administrator(console, words.file());
  admin::frmMain& form = administrator.form();
  form.visible = false;
  PrintTick(console, form, 0, false);
  int tick = 0;
  for (std::string line; std::getline(std::cin, line);) {
    // Nobody looks at the window and puts an end to an earlier flash.
    form.Timer2->Stop();
    form.BackgroundUpdate = true;
    form.UpgradeGrid();
    form.BackgroundUpdate = false;
    PrintTick(console, form, ++tick, form.Timer2->Running());
  }
}

struct Subcommand {
  const char* name;
  void (*run)(Console&, const GridWords&);
  GridOptions options;
};

const std::vector<Subcommand>& Subcommands() {
  static const std::vector<Subcommand> all = {
      {"sort", Sort, {}},
      {"save", Save, {}},
      {"follow", FollowGrid, {}},
      {"filter", GridFilterRows, {{"--host", "--monitor", "--change", "--desc", "--from", "--to"}, {}}},
      {"find", GridFindText, {{"--times"}, {"--match-case"}}},
      {"replay", GridReplay, {}},
      {"state", GridState, {}},
      {"slots", GridSlots, {{"--nslots", "--tslots", "--tchart"}, {}}}};
  return all;
}

}  // namespace

Json OrderOf(const widgets::Grid& grid) {
  Json order = Json::array();
  for (int row = 1; row <= grid.DataRows(); ++row) order.push_back(Text(grid.Text(row, admin::kColEventID)));
  return order;
}

void Grid(Console& console, const Words& words) {
  const auto& all = Subcommands();
  const auto found = std::find_if(all.begin(), all.end(), [&](const Subcommand& one) {
    return !words.empty() && words.front() == one.name;
  });
  if (found == all.end()) return Rows(console, GridWords(words, {}));
  found->run(console, GridWords(Words(words.begin() + 1, words.end()), found->options));
}

}  // namespace zendrix::inspect
