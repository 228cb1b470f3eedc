// Whether a monitoring file of the Home form tells of an alert and of one of its events. Whoever asks the
// helper to act names both; only what the Agent wrote is acted on.
//
// The event is a row of its monitor with its second and its description (alone or joined with others by
// " * "); the alert is an "Aggregation" row behind it with its own second, no negative Change (those are
// stored, but no alerts), and the event among its pairs "Monitor=description". A row is
//   seconds,host,thread,Monitor|Original|Change|Description|Reaction|Code|x
// Everything else is passed over. Of a decision the alert alone is named, by its second and its code, which
// is the code field without its last part.
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

// Whether one of an alert's pairs "Monitor=description;..." is about this file (the file system's bytes).
bool NamesFile(std::string_view pairs, const std::string& path);

// An alert as a decision names it.
struct ShownAlert {
  std::int64_t second = 0;  // UTC, of the alert's row
  std::string code;         // "AG," and its digits
};

// A row of the file; the texts live as long as the row's own.
struct ToldRow {
  std::int64_t second = 0;
  std::string_view monitor;
  std::string_view change;
  std::string_view description;
  std::string_view code;

  bool IsAlert() const;
};

// Cuts what it is given into rows and looks at them one by one until it has found what it looks for.
class RowSearch {
 public:
  // A row is never nearly that long; of a longer one nothing is believed.
  static constexpr std::size_t kLongestRow = std::size_t{1} << 20;

  RowSearch() = default;
  virtual ~RowSearch() = default;
  RowSearch(const RowSearch&) = delete;
  RowSearch& operator=(const RowSearch&) = delete;

  // The next bytes of the file, cut anywhere. A last row without its line end is not complete and not read.
  void Take(std::string_view bytes);
  bool Found() const { return found_; }

 private:
  // Whether this row is the one.
  virtual bool IsIt(const ToldRow& row) = 0;

  std::string begun_;      // a row whose end is still to come
  bool too_long_ = false;  // that row is passed over
  bool found_ = false;
};

class AlertSearch : public RowSearch {
 public:
  explicit AlertSearch(ShownEvent wanted) : wanted_(std::move(wanted)) {}

 private:
  bool IsIt(const ToldRow& row) override;

  const ShownEvent wanted_;
  bool has_event_ = false;
};

class CodeSearch : public RowSearch {
 public:
  explicit CodeSearch(ShownAlert wanted) : wanted_(std::move(wanted)) {}
  // Of the alert that was found.
  const std::string& description() const { return description_; }

 private:
  bool IsIt(const ToldRow& row) override;

  const ShownAlert wanted_;
  std::string description_;
};

}  // namespace zendrix::act
