#include "store/event_storage.h"

#include <array>
#include <charconv>

#include "core/number_rules.h"

namespace zendrix::store {
namespace {

// Defined size of the columns DateUTC, DateTime, Hostname, ThreadID, Monitor, Original and Change.
constexpr std::size_t kShortColumn = 50;

using Digits = std::array<char, 12>;

std::string_view Decimal(std::int32_t number, Digits& digits) {
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr;
  return {digits.data(), static_cast<std::size_t>(end - digits.data())};
}

}  // namespace

EventStorage::EventStorage() {
  extras_.push_back(0);
}

void EventStorage::NoteOrder(std::string_view utc) {
  if (last_utc_ > utc) moments_ascend_ = false;
  last_utc_ = utc;
}

std::uint32_t EventStorage::AddPlainMoment(std::string_view utc, std::int32_t seconds) {
  NoteOrder(utc);
  moments_.push_back({seconds, 0});
  return static_cast<std::uint32_t>(moments_.size() - 1);
}

std::uint32_t EventStorage::AddMoment(std::string_view utc, std::int32_t seconds) {
  NoteOrder(utc);
  moment_texts_.push_back({texts_.Keep(utc), {}});
  moments_.push_back({seconds, static_cast<std::uint32_t>(moment_texts_.size())});
  return static_cast<std::uint32_t>(moments_.size() - 1);
}

std::uint32_t EventStorage::AddMoment(std::string_view utc, std::string_view display) {
  const std::uint32_t moment = AddMoment(utc, 0);
  moment_texts_.back().display = texts_.Keep(display);
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
      Digits digits;
      return texts_.Text(texts_.Intern(Decimal(rows_[number].id, digits)));
    }
    case kDateUTC:
      return TextsOf(rows_[number].moment).utc;
    case kDateTime:
      return DisplayOf(rows_[number].moment);
    default:
      break;
  }
  return texts_.Text(Id(number, column));
}

int EventStorage::CompareUtc(Bookmark row, std::string_view utc) const {
  const Moment& moment = moments_[rows_[row].moment];
  if (moment.texts != 0) return moment_texts_[moment.texts - 1].utc.compare(utc);
  Digits digits;
  return Decimal(moment.seconds, digits).compare(utc);
}

EventStorage::MomentTexts& EventStorage::TextsOf(std::uint32_t number) const {
  Moment& moment = moments_[number];
  if (moment.texts == 0) {
    Digits digits;
    moment_texts_.push_back({texts_.Keep(Decimal(moment.seconds, digits)), {}});
    moment.texts = static_cast<std::uint32_t>(moment_texts_.size());
  }
  return moment_texts_[moment.texts - 1];
}

std::string_view EventStorage::DisplayOf(std::uint32_t number) const {
  MomentTexts& shown = TextsOf(number);
  if (shown.display.data() == nullptr) {
    shown.display = texts_.Keep(display_(moments_[number].seconds).substr(0, kShortColumn));
  }
  return shown.display;
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
