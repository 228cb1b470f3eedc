// What the event grid was last sorted by, and the next sort. The direction alternates from sort to sort, so
// sorting twice by the same column brings new rows into place without turning the order round.
#pragma once

#include "admin/event_grid.h"

namespace zendrix::admin {

class GridSort {
 public:
  // The column whose cells decide when this header is clicked.
  static int KeyOfHeader(int column);

  // Sorts by a key column. Columns 0 and 4 cannot be sorted by and end any standing order. Returns the
  // direction that the arrow shows (true: up), then turns it for the next time.
  bool Sort(EventGrid& grid, int key_column);
  // What sorting twice by the column of the standing order comes to, in one step that is quick when only a
  // few rows have come: the direction stays. Returns the direction that the arrow shows.
  bool SortAgain(EventGrid& grid);

  int SortColumn = 0;  // 0: none
  int SortColumnCopy = 0;
  bool TimeSorted = false;
  bool TimeDescending = false;
  bool SortDirectionFlag = false;

 private:
  void SortBy(EventGrid& grid, int key_column, bool ascending);
};

}  // namespace zendrix::admin
