#include "admin/grid_sort.h"

namespace zendrix::admin {

int GridSort::KeyOfHeader(int column) {
  switch (column) {
    case kColDateTime:
      return kColTimeKey;
    case kColDescription:
      return kColWhole;
    case kColChange:
      return kColCode;
    default:
      return column;
  }
}

bool GridSort::Sort(EventGrid& grid, int key_column) {
  const bool ascending = SortDirectionFlag;
  SortBy(grid, key_column, ascending);
  SortDirectionFlag = !ascending;
  return ascending;
}

// Equal rows keep their order in both of two sorts, so that the first leaves no trace.
bool GridSort::SortAgain(EventGrid& grid) {
  SortBy(grid, SortColumn, !SortDirectionFlag);
  return !SortDirectionFlag;
}

void GridSort::SortBy(EventGrid& grid, int key_column, bool ascending) {
  switch (key_column) {
    case kColTimeKey:
      SortColumn = SortColumnCopy = key_column;
      TimeSorted = true;
      TimeDescending = !ascending;
      grid.SortByTimeKey(ascending);
      break;
    case kColDateTime:
    case kColHostname:
    case kColMonitor:
    case kColCode:
    case kColWhole:
    case kColDescription:
      SortColumn = SortColumnCopy = key_column;
      TimeSorted = TimeDescending = false;
      grid.SortByText(key_column, ascending);
      break;
    default:
      SortColumn = SortColumnCopy = 0;
  }
}

}  // namespace zendrix::admin
