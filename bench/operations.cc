#include "operations.h"

#include "alerts_operations.h"
#include "grid_operations.h"
#include "store_operations.h"

namespace zendrix::bench {

const std::vector<NamedOperation>& Operations() {
  static const std::vector<NamedOperation> all = {
      {"load-home", "full load of the file into the event table, yields included", LoadHome},
      {"tick", "one poll that finds 100 newer lines (or as many as the first argument says)", Tick},
      {"tick-idle", "one poll that finds nothing; the mean of 1000", TickIdle},
      {"alerts", "building the alert list with the lookup of every alert", Alerts},
      {"load-admin", "full load of the file into the Administrator's grid, its widths and yields included",
       LoadAdmin},
      {"tick-admin", "one poll of that grid that finds 100 newer lines (arguments: lines, sorted column)",
       TickAdmin},
      {"filter", "filtering that grid by description (argument: the pattern)", FilterAdmin},
      {"find", "one search in that grid from its first row (argument: the text)", FindAdmin},
      {"timeline", "the counts of the timeline (arguments: slots, unit 1 to 5, D or T)", FillTimeline},
      {"state", "the System State of all monitors at a row of that grid (argument: the row, else the middle)",
       StateAdmin},
      {"sort", "one click on a header of that grid (argument: the column, else 8)", SortAdmin},
  };
  return all;
}

}  // namespace zendrix::bench
