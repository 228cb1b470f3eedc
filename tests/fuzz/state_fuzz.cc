// The state of any monitor at any row of any monitoring file is the one that the rules give, read word for
// word, whatever the rows are sorted by. An input is two characters, the settings of the load and the order
// of the rows, and the lines of the file.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "admin/row_taker.h"
#include "admin/system_state.h"
#include "platform/memory/memory_family.h"
#include "support/fuzzed_alerts.h"
#include "support/naive_state.h"

using namespace zendrix;
using test::Require;

namespace {

constexpr std::size_t kMostLines = 60;
constexpr int kMostMonitors = 4;

// Local time that goes back by an hour.
class AutumnFamily : public platform::MemoryFamily {
 public:
  platform::LocalTime FromUTC(std::int32_t seconds) override {
    offset_seconds = seconds < 1'793'494'800 ? 7200 : 3600;
    return MemoryFamily::FromUTC(seconds);
  }
};

int WidthOf(std::string_view text) {
  return static_cast<int>(text.size());
}

admin::LoadSettings SettingsOf(char choice) {
  admin::LoadSettings settings;
  const char* const times[] = {"hh:mm:ss tt", "HH:mm:ss", "h:mm", "Hms"};
  const char* const dates[] = {"MM/dd/yyyy", "d.M.yy"};
  settings.locale.time = times[choice & 3];
  settings.locale.short_date = dates[choice >> 2 & 1];
  settings.date_order = (choice >> 3 & 3) % 3;
  settings.description_width = 40;
  return settings;
}

struct FuzzedGrid {
  FuzzedGrid(std::string_view text, char settings) {
    std::vector<std::string> unknown;
    admin::RowTaker taker(
        {rows, grid, monitors, hosts, changes}, SettingsOf(settings), [](const std::string&) { return true; },
        unknown);
    std::string copy(text);
    std::size_t begin = 0;
    for (std::size_t i = 0; i < kMostLines && begin < copy.size(); ++i) {
      const std::size_t end = std::min(copy.find('\n', begin), copy.size());
      taker.Take(taker.Prepare({copy.data() + begin, end - begin}), static_cast<std::int32_t>(i + 1));
      begin = end + 1;
    }
  }

  AutumnFamily family;
  admin::EventRows rows{family, {WidthOf, WidthOf, 1}};
  admin::EventGrid grid{"EventList", rows};
  store::CUList monitors, hosts, changes;
};

void RequireStates(const admin::EventGrid& grid, const admin::SystemState& state, const std::string& time,
                   const std::vector<std::string>& monitors) {
  for (const std::string& monitor : monitors) {
    std::vector<std::string> items;
    for (const store::TextId item : state.StateofMonitor(monitor))
      items.emplace_back(grid.rows().pool().Text(item));
    if (items.empty()) items.emplace_back(admin::kEmptyArray);
    Require(items == testing::NaiveState(grid, monitor, time), "the state that the rules give");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  FuzzedGrid file(input.substr(2), input[0]);
  if (const int order = input[1] & 15; order < admin::kGridColumns)
    file.grid.Sort(order, (input[1] & 16) != 0);
  std::vector<std::string> monitors;
  for (int row = 1; row <= std::min(file.grid.DataRows(), kMostMonitors); ++row)
    monitors.emplace_back(file.grid.Monitor(row));
  for (int row = 1; row <= file.grid.DataRows(); ++row) {
    const std::string time = file.grid.Text(row, admin::kColDateTime);
    const admin::SystemState state(file.grid, row);
    Require(state.selected() == admin::FirstRowShowing(file.grid, time), "the first row of the time");
    RequireStates(file.grid, state, time, monitors);
  }
  RequireStates(file.grid, admin::SystemState(file.grid, "never"), "never", monitors);
  return 0;
}
