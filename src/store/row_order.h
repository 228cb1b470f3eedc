// The rows of a table in the order of one column: ID as a number, every other column as text, byte by byte.
// So "10.0" stands before "9.0", and DateTime follows the text that is shown, not the time: for the order of
// time take ID or DateUTC. Rows that are equal keep their order of arrival, descending too. Costs eight bytes
// a row; the storage must outlive it.
#pragma once

#include <cstdint>
#include <vector>

#include "store/event_storage.h"
#include "store/event_table.h"

namespace zendrix::store {

class RowOrder {
 public:
  RowOrder(const EventStorage& storage, int column, SortOrder order)
      : storage_(storage), column_(column), order_(order) {}

  // Gives the rows that have arrived since the last call their places. Called before every use below.
  void Refresh();

  // The row at a place, and the place of a row; both counted from 0.
  Bookmark RowAt(std::uint32_t place) const { return rows_[place]; }
  std::uint32_t PlaceOf(Bookmark row) const { return places_[row]; }

 private:
  bool Before(Bookmark one, Bookmark other) const;

  const EventStorage& storage_;
  int column_;
  SortOrder order_;
  std::vector<Bookmark> rows_;
  std::vector<std::uint32_t> places_;
};

}  // namespace zendrix::store
