#include "admin/row_taker.h"

#include <limits>
#include <utility>

#include "core/letter_case.h"
#include "core/number_rules.h"

namespace zendrix::admin {

namespace {

// The number of a field of plain digits that fits 32 bits, which nearly every time is.
std::optional<std::int32_t> PlainNumber(std::string_view field) {
  constexpr std::size_t kMostDigits = 10;
  if (field.empty() || field.size() > kMostDigits) return std::nullopt;
  std::int64_t number = 0;
  for (const char c : field) {
    if (c < '0' || c > '9') return std::nullopt;
    number = number * 10 + (c - '0');
  }
  if (number > std::numeric_limits<std::int32_t>::max()) return std::nullopt;
  return static_cast<std::int32_t>(number);
}

}  // namespace

RowTaker::RowTaker(LoadTargets targets, const LoadSettings& settings, MonitorQuestion is_displayed,
                   std::vector<std::string>& unknown_monitors)
    : targets_(targets),
      locale_(settings.locale),
      is_displayed_(std::move(is_displayed)),
      unknown_monitors_(unknown_monitors) {
  targets_.rows.BeginLoad(settings);
}

void RowTaker::Take(std::span<char> line, std::int32_t number) {
  const auto fields = SplitGridLine(CleanGridLine(line));
  if (!fields) return;
  EventRows& rows = targets_.rows;
  const store::TextPool::Hashed description = rows.PrepareDescription(fields->description);
  const Source& source = SourceOf(*fields);
  EventRow row{number, 0, source.number, rows.AddDescription(description)};
  if (!source.displayed) return;
  if (!ReadTime(fields->time)) row.source = rows.AddSourceWithTime(source.number, fields->time);
  row.time_key = time_key_;
  targets_.grid.MakeRoom();
  rows.Append(row);
  targets_.grid.InsertTop(rows.size() - 1);
}

const RowTaker::Source& RowTaker::SourceOf(const GridRowFields& fields) {
  const store::TextId known = known_.Lookup(fields.source);
  if (known != store::kNoText) return sources_[known - 1];
  const std::string monitor = core::ProperCase(fields.monitor);
  targets_.monitors.SetItemData(fields.monitor, monitor);
  targets_.hosts.SetItemData(fields.host, fields.host);
  targets_.changes.SetItemData(fields.code, fields.code);
  const Source source{targets_.rows.AddSource(fields.host, monitor, fields.code), IsDisplayed(monitor)};
  // Memory that runs out between these two ends the load, and this object with it.
  known_.Intern(fields.source);
  sources_.push_back(source);
  return sources_.back();
}

bool RowTaker::IsDisplayed(const std::string& monitor) {
  const auto [known, is_new] = displayed_.try_emplace(monitor, true);
  if (!is_new) return known->second;
  const std::optional<bool> displayed = is_displayed_(monitor);
  if (!displayed) unknown_monitors_.push_back(monitor);
  return known->second = displayed.value_or(true);
}

// Whether the field is a number in the range of times; it becomes the key of this row and of those behind it
// that have none. A number outside that range is shown unchanged, like a text that is no number.
bool RowTaker::ReadTime(std::string_view field) {
  if (const auto plain = PlainNumber(field)) {
    time_key_ = *plain;
    return true;
  }
  if (!core::IsNumeric(field, locale_)) return false;
  const double value = core::CDbl(field, locale_);
  const bool fits = value >= std::numeric_limits<std::int32_t>::min() - 0.5 &&
                    value < std::numeric_limits<std::int32_t>::max() + 0.5;
  if (fits) time_key_ = core::RoundToLong(value);
  return fits;
}

}  // namespace zendrix::admin
