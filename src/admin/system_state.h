// The state of the host at a moment, made from what the monitoring file records of changes: for each monitor
// the items (processes, ports, users...) that were there. A moment is a shown time. It selects the first row
// of a view that shows it; from there the rules look down for the monitor's last baseline and up again, by
// the places of the rows, whatever their order. A view in which the newest row is on top is quick: all
// monitors of a million rows take a few milliseconds; any other order costs a pass over the whole view first.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "admin/event_grid.h"
#include "store/text_pool.h"

namespace zendrix::admin {

// What the rows in front of a monitor's list of items, and the row behind it, say.
inline constexpr std::string_view kStartBaseline = "** Start baseline **";
inline constexpr std::string_view kEndBaseline = "** End baseline **";
// The one entry of a list that has none.
inline constexpr std::string_view kEmptyArray = "**Empty Array**";

// The first row of a view, from 1, whose Date/Time is this text, whatever its case; 0 when there is none.
int FirstRowShowing(const EventGrid& view, std::string_view date_text);

// The states of all monitors at one moment. It refers to the view, whose rows stay as they are meanwhile.
class SystemState {
 public:
  SystemState(const EventGrid& view, std::string_view date_text)
      : SystemState(view, Selected{FirstRowShowing(view, date_text)}) {}
  // The moment that a data row of the view shows.
  SystemState(const EventGrid& view, int row) : SystemState(view, Selected{FirstRowLike(view, row)}) {}

  // The row that the moment selects, 0 for none.
  int selected() const { return selected_; }
  // The items of a monitor, whatever its case, oldest first, as text numbers of the rows' pool. The list is
  // empty for kEmptyArray, also where that is the text of its one item.
  std::vector<store::TextId> StateofMonitor(std::string_view monitor) const;

  // Rows by their height over the last one, which follows from the place and is the row's number while the
  // newest is on top.
  using Heights = std::span<const std::uint32_t>;
  // The rows of a monitor that make up its state. Settled: at a later moment they are the same and those that
  // have come, up to the next baseline.
  struct Stretch {
    Heights::iterator begin, end;
    bool settled;
  };
  // Valid until the next call and until rows are added.
  Stretch RowsOfState(std::string_view monitor) const { return StretchOf(HeightsOf(monitor)); }

 private:
  enum class Change : std::uint8_t { kOther, kCame, kWent };

  struct Selected {
    int row;
  };

  SystemState(const EventGrid& view, Selected selected);
  static int FirstRowLike(const EventGrid& view, int row);
  void ReadSources();
  void ReadOrder();
  Heights HeightsOf(std::string_view monitor) const;
  Stretch StretchOf(Heights rows) const;
  std::vector<store::TextId> Replayed(Stretch rows) const;
  const EventRow& RowAt(std::uint32_t height) const;

  const EventGrid& view_;
  const EventRows& rows_;
  std::uint32_t count_;  // of data rows
  int selected_;
  store::TextId start_text_, end_text_;
  std::vector<Change> changes_;  // by source
  // Where the newest row is not on top: numbers and sources of rows by their heights.
  std::vector<std::uint32_t> numbers_, sources_;
  mutable std::vector<std::uint32_t> listed_;
  // How often each text is among the items, by its number; all 0 between two calls.
  mutable std::vector<std::uint32_t> times_;
};

// The state of one monitor at a moment.
std::vector<store::TextId> StateofMonitor(const EventGrid& view, std::string_view monitor,
                                          std::string_view date_text);

}  // namespace zendrix::admin
