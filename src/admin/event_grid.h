// The rows of the Administrator console's event grid: every displayed line of the monitoring file as nine
// cells. It is the whole store of that console; find, filter, charts and replay read its cells. Repeated
// texts are kept once, a row is a handful of numbers, and a new row goes on top by a push.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "store/text_pool.h"
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
// The blanks in front of a monitor's name leave room for its picture.
inline constexpr std::string_view kPictureRoom = "     ";
// Rows that the grid can take; one more raises run-time error 7.
inline constexpr std::size_t kGridCapacity = 2'000'000;

// The cells of one new row, as read from the file.
struct GridRow {
  std::int32_t event_id = 0;
  std::string_view time;
  std::string_view host;
  std::string_view monitor;  // without the blanks in front
  std::string_view code;
  std::string_view whole;
  std::int32_t time_key = 0;
  std::string_view fitted;
};

class EventGrid : public widgets::Grid {
 public:
  explicit EventGrid(std::string name, std::size_t capacity = kGridCapacity);

  // Removes all rows. Columns stay.
  void Clear();
  // Inserts at row 1. Raises 7 when the grid is full.
  void InsertTop(const GridRow& row);

  int DataRows() const override { return static_cast<int>(order_.size()); }
  std::string Text(int row, int col) const override;
  int Picture(int row, int col) const override;
  std::string Tip(int row, int col) const override;

  // Number of characters of a cell's text.
  std::size_t TextLength(int row, int col) const;
  // The monitor of a row without the blanks in front.
  std::string_view Monitor(int row) const;
  std::int32_t TimeKey(int row) const { return time_keys_[At(row)]; }
  std::string_view WholeDescription(int row) const { return pool_->Text(wholes_[At(row)]); }

  // Puts the rows in ascending or descending order of a column: texts without regard to case, or the time key
  // by its number. Rows that are equal keep their order.
  void SortByText(int col, bool ascending);
  void SortByTimeKey(bool ascending);

 private:
  using Id = store::TextId;

  std::size_t At(int row) const { return order_[order_.size() - static_cast<std::size_t>(row)]; }
  const std::vector<Id>& TextsOf(int col) const;
  void SortBy(const std::function<bool(std::uint32_t, std::uint32_t)>& before);

  std::size_t capacity_;
  std::unique_ptr<store::TextPool> pool_;
  std::vector<std::int32_t> event_ids_, time_keys_;
  std::vector<Id> times_, hosts_, monitors_, codes_, wholes_, fitteds_;
  // What stands where: the last entry is row 1.
  std::vector<std::uint32_t> order_;
};

}  // namespace zendrix::admin
