// Whether a monitoring file of the Home form tells of an alert and of one of its events. Whoever asks the
// helper to act names both; only what the Agent wrote is acted on.
//
// The event is a row of its monitor with its second and its description (alone or joined with others by
// " * "); the alert is an "Aggregation" row behind it with its own second, no negative Change (those are
// stored, but no alerts), and the event among its pairs "Monitor=description". A row is
//   seconds,host,thread,Monitor|Original|Change|Description|Reaction|Code|x
// Everything else is passed over.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace zendrix::act {

// An event as the console shows it. Texts are those of the monitoring file (Windows-1252).
struct ShownEvent {
  std::string monitor;
  std::string description;
  std::int64_t second = 0;        // UTC, of the event's row
  std::int64_t alert_second = 0;  // UTC, of the alert's row: what decisions call its DateUTC
};

class AlertSearch {
 public:
  // A row is never nearly that long; of a longer one nothing is believed.
  static constexpr std::size_t kLongestRow = std::size_t{1} << 20;

  explicit AlertSearch(ShownEvent wanted) : wanted_(std::move(wanted)) {}

  // The next bytes of the file, cut anywhere. A last row without its line end is not complete and not read.
  void Take(std::string_view bytes);
  bool Found() const { return found_; }

 private:
  void TakeRow(std::string_view row);

  const ShownEvent wanted_;
  std::string begun_;      // a row whose end is still to come
  bool too_long_ = false;  // that row is passed over
  bool has_event_ = false;
  bool found_ = false;
};

}  // namespace zendrix::act
