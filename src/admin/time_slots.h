// How the events of a grid spread over time, per displayed monitor: slots of one length, counted back from
// the event in row 1, slot 0 the newest. What is counted is the rows from row 1 on until one lies in the last
// slot or behind it; rows below that are not looked at.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "admin/event_grid.h"
#include "admin/slot_unit.h"
#include "core/settings_values.h"
#include "platform/family_libraries.h"
#include "platform/locale.h"

namespace zendrix::admin {

// A row for each displayed monitor, by its index, and one more; in it a value for each slot. Nothing: empty.
using SlotTable = std::vector<std::vector<std::optional<std::int32_t>>>;

// How many items each of the monitors has at the moment that a row of the grid shows.
using ItemsAlive =
    std::function<std::vector<std::int32_t>(const std::vector<std::string>& monitors, int row)>;

struct FillNeeds {
  const core::Settings& settings;
  const SlotUnit& unit;
  const platform::LocaleInfo& locale;
  int date_order;  // in which UTCToText writes a date
  platform::FamilyLibraries& family;
  ItemsAlive items_alive;
};

class TimeSlots {
 public:
  // Makes the three tables anew. Where rows run out before the slots do, where a row is newer than row 1, and
  // where there is no row behind the one that ended the count, a run-time error ends it with what has been
  // done so far: that is how a file without the history for the whole span keeps its counts and has no
  // totals.
  void Fill(const EventGrid& grid, const FillNeeds& needs);

  SlotTable SlotCounts;  // events in each slot; the last slot stays empty
  SlotTable SlotTotals;  // items alive at each slot
  std::vector<std::string> SlotLabels;
};

}  // namespace zendrix::admin
