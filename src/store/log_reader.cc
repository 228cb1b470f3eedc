#include "store/log_reader.h"

#include <algorithm>
#include <new>
#include <string_view>

#include "core/date_rules.h"
#include "core/moments.h"
#include "core/number_rules.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"
#include "store/line_reader.h"

namespace zendrix::store {
namespace {

constexpr int kDateOrderValue = 33;
constexpr std::size_t kFullLine = 4;      // fields of the line that founds the table
constexpr std::size_t kShortestLine = 3;  // fields of any other
constexpr std::size_t kShortText = 50;
constexpr std::size_t kLongText = 1024;

std::string CleanTrimmed(std::span<const char> line) {
  return std::string(core::Trim(core::CleanLine({line.data(), line.size()})));
}

}  // namespace

void CLog::InitClass(const std::string& path) {
  table_.reset();
  try {
    Load(path);
  } catch (const core::RunTimeError&) {  // a log that cannot be read through is shown as none
    table_.reset();
  } catch (const std::bad_alloc&) {
    table_.reset();
  }
}

void CLog::Load(const std::string& path) {
  date_order_ =
      core::CInt(core::GetLocaleValue(kDateOrderValue, state_.seams.locale), state_.seams.locale.Current());
  current_year_ = core::LocalTimeOf(core::Now(state_.seams.clock, state_.seams.family)).year;
  if (!state_.seams.files.Exists(path)) return;
  const auto stream = core::ValueOrRaise(state_.seams.files.Open(path));
  LineReader lines(*stream);
  std::int32_t counter = 1;
  std::string line = CleanTrimmed(lines.ReadLine());
  auto fields = core::Split(line, ",");
  const bool full_at_once = fields.size() >= kFullLine;
  const auto next = [&] {
    ++counter;
    line = CleanTrimmed(lines.ReadLine());
    fields = core::Split(line, ",");
  };
  while (fields.size() < kFullLine && !lines.AtEnd()) next();
  if (!full_at_once && lines.AtEnd()) return;

  CreateEventLogTable(fields.size());
  AddRow(counter, fields, true);
  while (!lines.AtEnd()) {
    next();
    if (fields.size() >= kShortestLine) AddRow(counter, fields, false);
  }
  std::ranges::reverse(table_->rows);
}

void CLog::CreateEventLogTable(std::size_t fields) {
  table_ = std::make_unique<EventLogTable>();
  table_->columns = {"ID", "Date_Time", "Host", "TID", "Description"};
  for (std::size_t i = table_->columns.size(); i <= fields; ++i)
    table_->columns.push_back("Descr" + std::to_string(i));
}

void CLog::AddRow(std::int32_t id, const std::vector<std::string_view>& fields, bool first) {
  LogRow row{id, std::vector<std::string>(table_->columns.size() - 1)};
  row.texts[0] = DateTime(std::string(fields[0]), first).substr(0, kShortText);
  for (std::size_t i = 1; i < std::min(row.texts.size(), fields.size()); ++i) {
    row.texts[i] = fields[i].substr(0, i < 3 ? kShortText : kLongText);
  }
  table_->rows.push_back(std::move(row));
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
