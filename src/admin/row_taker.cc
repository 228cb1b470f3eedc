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

RowTaker::Prepared RowTaker::Prepare(std::span<char> line) const {
  Prepared prepared{SplitGridLine(CleanGridLine(line))};
  if (prepared.fields) prepared.description = targets_.rows.PrepareDescription(prepared.fields->description);
  return prepared;
}

void RowTaker::Fetch(std::span<const Prepared> lines) const {
  const store::TextPool& pool = targets_.rows.pool();
  for (const Prepared& line : lines) pool.FetchEntry(line.description);
  for (const Prepared& line : lines) pool.FetchText(line.description);
}

void RowTaker::Take(const Prepared& line, std::int32_t number) {
  if (!line.fields) return;
  EventRows& rows = targets_.rows;
  const Source& source = SourceOf(*line.fields);
  EventRow row{number, 0, source.number, rows.AddDescription(line.description)};
  if (!source.displayed) return rows.CheckBytes();
  if (!ReadTime(line.fields->time)) row.source = rows.AddSourceWithTime(source.number, line.fields->time);
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
