// A view of the Administrator console's rows: an order over them, with the nine cells of each. Several views
// share the rows. A view shows the rows that were inserted into it and no others; it follows neither what is
// added to the rows nor their Clear, so whoever clears the rows clears the views first.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "admin/event_rows.h"
#include "admin/grid_order.h"
#include "admin/row_sort.h"
#include "widgets/grid.h"

namespace zendrix::admin {

// Columns of the grid.
enum GridCol : int {
  kColEventID = 0,
  kColDateTime = 1,
  kColHostname = 2,
  kColMonitor = 3,
  kColChange = 4,
  kColCode = 5,
  kColWhole = 6,
  kColTimeKey = 7,
  kColDescription = 8,
};
inline constexpr int kGridColumns = 9;

// Columns that are never seen, whatever their widths would be.
constexpr bool IsInner(int column) {
  return column == kColCode || column == kColWhole || column == kColTimeKey;
}

class EventGrid : public widgets::Grid {
 public:
  // `rows` outlives the view.
  EventGrid(std::string name, const EventRows& rows);

  // Undoes what a user dragged open.
  void HideInnerColumns();
  // The view is empty. Columns stay.
  void Clear();
  // Makes room for one more, so that the next Insert cannot fail.
  void MakeRoom() { order_.MakeRoom(); }
  void InsertTop(std::uint32_t row_number) { Insert(1, row_number); }
  void InsertBottom(std::uint32_t row_number) { Insert(Rows(), row_number); }
  // The row at `place`, from 1 to Rows(), and all below it move down.
  void Insert(int place, std::uint32_t row_number);

  // The number of a row among the rows.
  std::uint32_t RowNumber(int row) const { return order_.At(static_cast<std::size_t>(row)); }
  // Whether the view shows all rows, the newest on top: row p is row number DataRows() - p.
  bool NewestFirst() const { return order_.newest_first(); }
  const EventRows& rows() const { return rows_; }

  int DataRows() const override { return static_cast<int>(order_.size()); }
  std::string Text(int row, int col) const override;
  int Picture(int row, int col) const override;
  std::string Tip(int row, int col) const override;

  // Number of characters of a cell's text, and of the longest one of a column, without its heading.
  std::size_t TextLength(int row, int col) const { return Text(row, col).size(); }
  std::size_t LongestText(int col) const;
  // The monitor of a row without the blanks in front.
  std::string_view Monitor(int row) const { return rows_.Monitor(RowNumber(row)); }
  std::string_view Code(int row) const { return rows_.Code(RowNumber(row)); }
  std::string_view WholeDescription(int row) const { return rows_.Whole(RowNumber(row)); }
  std::int32_t TimeKey(int row) const { return rows_.row(RowNumber(row)).time_key; }

  // Puts the rows in ascending or descending order of a column: texts without regard to case, the time key by
  // its number. Rows that are equal keep their order. Where the rows are in this order already but for those
  // that were inserted on top since, only these are brought in.
  void Sort(int col, bool ascending);
  void SortByText(int col, bool ascending) { Sort(col, ascending); }
  void SortByTimeKey(bool ascending) { Sort(kColTimeKey, ascending); }

 protected:
  std::uint32_t RowKey(int row) const override { return RowNumber(row); }

 private:
  void SortAll(int col, bool ascending);
  bool CanMerge(int col, bool ascending) const;
  bool Before(int col, std::uint32_t one, std::uint32_t other) const;
  // Fills in the keys of rows whose cells are made on demand.
  void KeyByMadeText(int col, std::vector<KeyedRow>& keyed) const;

  const EventRows& rows_;
  GridOrder order_;
  // The order that the rows below the first `fresh_` are in; no column: none.
  int sorted_col_ = -1;
  bool sorted_ascending_ = false;
  std::size_t fresh_ = 0;
};

}  // namespace zendrix::admin
