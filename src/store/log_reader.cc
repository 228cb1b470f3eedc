#include "store/log_reader.h"

#include <array>
#include <new>

#include "core/date_rules.h"
#include "core/moments.h"
#include "core/number_rules.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"
#include "store/line_counter.h"
#include "store/line_reader.h"
#include "store/table_errors.h"

namespace zendrix::store {
namespace {

constexpr std::size_t kFullLine = 4;      // fields of the line that defines the columns
constexpr std::size_t kShortestLine = 3;  // fields of any other
constexpr std::size_t kLogText = 50;
constexpr std::size_t kLogDescription = 1024;

constexpr std::array<std::string_view, 5> kFixedLogColumns = {"ID", "Date_Time", "Host", "TID",
                                                              "Description"};
constexpr std::size_t kDescriptionColumn = 4;

std::string CleanTrimmed(std::span<const char> line) {
  return std::string(core::Trim(core::CleanLine({line.data(), line.size()})));
}

}  // namespace

EventLogTable::EventLogTable(std::size_t fields) : column_count_(fields + 1) {}

std::string EventLogTable::ColumnName(std::size_t column) const {
  if (column >= column_count_) core::Raise(kNoSuchColumn);
  if (column < kFixedLogColumns.size()) return std::string(kFixedLogColumns[column]);
  return "Descr" + std::to_string(column);
}

std::string_view EventLogTable::Text(std::size_t row, std::size_t column) const {
  if (column < 1 || column >= column_count_) core::Raise(kNoSuchColumn);
  const std::size_t field = At(row).first + column - 1;
  if (field >= EndOf(row)) return {};
  const std::size_t begin = field == 0 ? 0 : ends_[field - 1];
  return std::string_view(bytes_).substr(begin, ends_[field] - begin);
}

bool EventLogTable::IsNull(std::size_t row, std::size_t column) const {
  const bool is_date = column == 1;
  return Text(row, column).empty() && (is_date || At(row).first + column - 1 >= EndOf(row));
}

void EventLogTable::AddRow(std::int32_t id, std::string_view date_time,
                           const std::vector<std::string_view>& fields) {
  rows_.push_back({id, ends_.size()});
  AddField(date_time, 1);
  for (std::size_t column = 2; column < column_count_ && column <= fields.size(); ++column)
    AddField(fields[column - 1], column);
}

void EventLogTable::AddField(std::string_view text, std::size_t column) {
  bytes_ += text.substr(0, column < kDescriptionColumn ? kLogText : kLogDescription);
  ends_.push_back(bytes_.size());
}

void CLog::InitClass(const std::string& path) {
  table_.reset();
  try {
    table_ = Load(path);
  } catch (const core::RunTimeError&) {  // a log that cannot be read through is shown as none
  } catch (const std::bad_alloc&) {
  }
}

std::shared_ptr<const EventLogTable> CLog::Load(const std::string& path) {
  date_order_ = core::CInt(core::GetLocaleValue(core::kLocaleDateOrder, state_.seams.locale),
                           state_.seams.locale.Current());
  current_year_ = core::LocalTimeOf(core::Now(state_.seams.clock, state_.seams.family)).year;
  if (!state_.seams.files.Exists(path)) return nullptr;
  const auto stream = core::ValueOrRaise(state_.seams.files.Open(path));
  LineReader lines(*stream);
  std::int32_t counter = 1;
  std::string line = CleanTrimmed(lines.ReadLine());
  auto fields = core::Split(line, ",");
  const bool full_at_once = fields.size() >= kFullLine;
  const auto next = [&] {
    CountUp(counter);
    line = CleanTrimmed(lines.ReadLine());
    fields = core::Split(line, ",");
  };
  while (fields.size() < kFullLine && !lines.AtEnd()) next();
  if (!full_at_once && lines.AtEnd()) return nullptr;

  auto table = std::make_shared<EventLogTable>(fields.size());
  table->AddRow(counter, DateTime(std::string(fields[0]), true), fields);
  while (!lines.AtEnd()) {
    next();
    if (fields.size() >= kShortestLine)
      table->AddRow(counter, DateTime(std::string(fields[0]), false), fields);
  }
  return table;
}

// The first line's date must be readable or a number; later ones may be anything.
std::string CLog::DateTime(const std::string& field, bool first) const {
  const platform::LocaleInfo& locale = state_.seams.locale.Current();
  platform::FamilyLibraries& family = state_.seams.family;
  if (const auto date = core::ReadDate(field, locale, current_year_))
    return core::ShortDateLongTime(*date, locale);
  if (!first && !core::IsNumeric(field, locale)) return {};
  return core::DisplayTime(core::CLng(field, locale), date_order_, family, locale);
}

}  // namespace zendrix::store
