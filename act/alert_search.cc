#include "act/alert_search.h"

#include <array>
#include <charconv>
#include <optional>

namespace zendrix::act {
namespace {

constexpr std::string_view kJoin = " * ";
constexpr std::string_view kAggregation = "Aggregation";

// What stands in front of the separator, which goes too; all that is left when there is none.
std::string_view Cut(std::string_view& text, std::string_view separator) {
  const std::size_t at = text.find(separator);
  const std::string_view part = text.substr(0, at);
  text.remove_prefix(at == std::string_view::npos ? text.size() : at + separator.size());
  return part;
}

struct Row {
  std::int64_t second = 0;
  std::string_view monitor;
  std::string_view change;
  std::string_view description;
};

std::optional<Row> RowOf(std::string_view text) {
  constexpr std::size_t kFields = 7;
  Row row;
  const std::string_view stamp = Cut(text, ",");
  const auto [end, error] = std::from_chars(stamp.data(), stamp.data() + stamp.size(), row.second);
  if (error != std::errc() || end != stamp.data() + stamp.size()) return std::nullopt;
  Cut(text, ",");
  Cut(text, ",");
  std::array<std::string_view, kFields> fields;
  for (std::string_view& field : fields) {
    if (text.empty()) return std::nullopt;
    field = Cut(text, "|");
  }
  row.monitor = fields[0];
  row.change = fields[2];
  row.description = fields[3];
  return row;
}

bool HoldsDescription(std::string_view joined, std::string_view description) {
  if (joined == description) return true;
  while (!joined.empty()) {
    if (Cut(joined, kJoin) == description) return true;
  }
  return false;
}

bool HoldsPair(std::string_view pairs, const ShownEvent& wanted) {
  while (!pairs.empty()) {
    std::string_view pair = Cut(pairs, ";");
    if (Cut(pair, "=") == wanted.monitor && HoldsDescription(pair, wanted.description)) return true;
  }
  return false;
}

}  // namespace

void AlertSearch::Take(std::string_view bytes) {
  while (!bytes.empty() && !found_) {
    const std::size_t end = bytes.find('\n');
    const std::string_view part = bytes.substr(0, end);
    too_long_ = too_long_ || begun_.size() + part.size() > kLongestRow;
    if (too_long_) {
      begun_.clear();
    } else {
      begun_ += part;
    }
    if (end == std::string_view::npos) return;
    if (begun_.ends_with('\r')) begun_.pop_back();
    if (!too_long_) TakeRow(begun_);
    begun_.clear();
    too_long_ = false;
    bytes.remove_prefix(end + 1);
  }
}

void AlertSearch::TakeRow(std::string_view text) {
  const auto row = RowOf(text);
  if (!row) return;
  if (row->second == wanted_.second && row->monitor == wanted_.monitor)
    has_event_ = has_event_ || HoldsDescription(row->description, wanted_.description);
  const bool is_alert = row->monitor == kAggregation && !row->change.starts_with('-');
  if (has_event_ && is_alert && row->second == wanted_.alert_second)
    found_ = HoldsPair(row->description, wanted_);
}

}  // namespace zendrix::act
