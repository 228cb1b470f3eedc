#include "store/event_storage.h"

#include <charconv>

#include "core/number_rules.h"
#include "core/run_time_error.h"

namespace zendrix::store {
namespace {

// Defined size of the columns DateUTC, DateTime, Hostname, ThreadID, Monitor, Original and Change.
constexpr std::size_t kShortColumn = 50;

// "Item cannot be found": a column that the table does not have.
constexpr int kNoSuchColumn = 3265;

}  // namespace

EventStorage::EventStorage() {
  extras_.push_back(0);
}

void EventStorage::AddRow(const StoredRow& row) {
  if (!rows_.empty() && rows_.back().id >= row.id) ids_ascend_ = false;
  rows_.push_back(row);
}

std::uint32_t EventStorage::AddMoment(std::string_view utc, std::int32_t seconds) {
  if (!moments_.empty() && moments_.back().utc > utc) moments_ascend_ = false;
  moments_.push_back({texts_.Keep(utc), {}, seconds});
  return static_cast<std::uint32_t>(moments_.size() - 1);
}

std::uint32_t EventStorage::AddMoment(std::string_view utc, std::string_view display) {
  const std::uint32_t moment = AddMoment(utc, 0);
  moments_[moment].display = texts_.Keep(display);
  return moment;
}

std::uint32_t EventStorage::AddSource(const Source& source) {
  sources_.push_back(source);
  return static_cast<std::uint32_t>(sources_.size() - 1);
}

std::uint32_t EventStorage::BeginExtras() {
  open_extras_ = extras_.size();
  extras_.push_back(0);
  return static_cast<std::uint32_t>(open_extras_);
}

void EventStorage::AddExtra(TextId id) {
  extras_.push_back(id);
  ++extras_[open_extras_];
}

TextId EventStorage::Id(Bookmark number, int column) const {
  const StoredRow& row = rows_[number];
  switch (column) {
    case kHostname:
      return sources_[row.source].hostname;
    case kThreadID:
      return sources_[row.source].thread_id;
    case kMonitor:
      return sources_[row.source].monitor;
    case kOriginal:
      return row.original;
    case kChange:
      return row.change;
    case kDescription:
      return row.description;
    case kReaction:
      return row.reaction;
    case kCode:
      return row.code;
    default:
      break;
  }
  const auto extra = static_cast<std::uint32_t>(column - kFirstDescr);
  return extra < extras_[row.extras] ? extras_[row.extras + 1 + extra] : kEmptyText;
}

std::string_view EventStorage::Text(Bookmark number, int column) const {
  switch (column) {
    case kID: {
      char digits[12];
      const auto end = std::to_chars(digits, digits + sizeof digits, rows_[number].id).ptr;
      return texts_.Text(texts_.Intern({digits, static_cast<std::size_t>(end - digits)}));
    }
    case kDateUTC:
      return moments_[rows_[number].moment].utc;
    case kDateTime:
      return DisplayOf(rows_[number].moment);
    default:
      break;
  }
  if (column < 0) core::Raise(kNoSuchColumn);
  return texts_.Text(Id(number, column));
}

std::string_view EventStorage::DisplayOf(std::uint32_t number) const {
  Moment& moment = moments_[number];
  if (moment.display.data() == nullptr) {
    moment.display = texts_.Keep(display_(moment.seconds).substr(0, kShortColumn));
  }
  return moment.display;
}

Postings& EventStorage::Index(int column) const {
  Postings& index = indexes_[column];
  for (std::uint32_t row = index.indexed(); row < row_count(); ++row) index.Add(Id(row, column));
  return index;
}

Postings::Rows EventStorage::RowsWith(int column, TextId id) const {
  return Index(column).Find(id);
}

Postings::Rows EventStorage::RowsWithBoth(TextId description, TextId change) const {
  const auto key = [](TextId one, TextId other) { return static_cast<std::uint64_t>(one) << 32 | other; };
  for (std::uint32_t row = description_and_change_.indexed(); row < row_count(); ++row) {
    description_and_change_.Add(key(rows_[row].description, rows_[row].change));
  }
  return description_and_change_.Find(key(description, change));
}

std::optional<double> EventStorage::NumberOf(TextId id, const platform::LocaleInfo& locale) const {
  const auto known = numbers_.find(id);
  if (known != numbers_.end()) return known->second;
  std::optional<double> number;
  const std::string_view text = texts_.Text(id);
  if (core::IsNumeric(text, locale)) number = core::CDbl(text, locale);
  numbers_.emplace(id, number);
  return number;
}

}  // namespace zendrix::store
