#include "store/row_maker.h"

#include <algorithm>

#include "core/characters.h"
#include "core/date_rules.h"
#include "core/moment_formatter.h"
#include "core/moments.h"
#include "core/number_rules.h"
#include "core/run_time_error.h"
#include "store/line_counter.h"

namespace zendrix::store {
namespace {

// Defined sizes of the columns.
constexpr std::size_t kShortText = 50;
constexpr std::size_t kCodeText = 100;
constexpr std::size_t kLongText = 1536;

constexpr std::string_view kPartSeparator = " * ";
constexpr int kFirstExtraField = 7;

std::string_view Cut(std::string_view text, std::size_t size) {
  return text.substr(0, size);
}

// The first " * " at or behind `from`. The asterisk is its rare character.
std::size_t FindSeparator(std::string_view text, std::size_t from = 0) {
  for (std::size_t star = text.find('*', from + 1); star != std::string_view::npos;
       star = text.find('*', star + 1)) {
    if (text[star - 1] == ' ' && star + 1 < text.size() && text[star + 1] == ' ') return star - 1;
  }
  return std::string_view::npos;
}

// Takes the part before the next separator (or the rest) from the front; false when nothing is left.
class Pieces {
 public:
  Pieces(std::string_view text, std::string_view separator)
      : rest_(text), separator_(separator), more_(!text.empty()) {}

  bool Next(std::string_view& piece) {
    if (!more_) return false;
    const std::size_t end = rest_.find(separator_);
    more_ = end != std::string_view::npos;
    piece = rest_.substr(0, end);
    if (more_) rest_.remove_prefix(end + separator_.size());
    return true;
  }

 private:
  std::string_view rest_;
  std::string_view separator_;
  bool more_;
};

}  // namespace

std::string ExpandDesField(std::string_view text, std::size_t wanted) {
  std::string expanded;
  Pieces items(text, ";");
  // Prefixes repeat, so the result can be far longer than the text: it is built only as far as it is
  // wanted.
  for (std::string_view item; expanded.size() <= wanted && items.Next(item);) {
    const std::size_t equals = item.find('=');
    if (equals == std::string_view::npos || item.find(kPartSeparator) == std::string_view::npos) {
      expanded.append(item) += ';';
      continue;
    }
    const std::string_view prefix = Cut(item.substr(0, equals + 1), wanted);
    Pieces values(item, kPartSeparator);
    for (std::string_view value; expanded.size() <= wanted && values.Next(value);) {
      if (value.find('=') == std::string_view::npos) expanded += prefix;
      expanded.append(value) += ';';
    }
  }
  if (!expanded.empty()) expanded.pop_back();
  return expanded;
}

RowMaker::RowMaker(core::AppState& state, core::ErrorLog& log, std::shared_ptr<EventTable> table,
                   Traces traces, int date_order)
    : state_(state),
      log_(log),
      table_(std::move(table)),
      locale_(table_->locale()),
      storage_(table_->storage()),
      extra_columns_(table_->ColumnCount() - kFirstDescr),
      traces_(traces),
      numbers_(locale_, storage_.texts()) {
  const auto formatter = std::make_shared<core::MomentFormatter>(locale_, date_order, state.seams.family);
  storage_.SetDisplay([formatter](std::int32_t seconds) { return formatter->Format(seconds); });
}

void RowMaker::AddFirstLine(const LineFields& line, std::int32_t counter) {
  const Stamp stamp = ReadStamp(line[0]);
  StoredRow row = CommonRow(line, stamp);
  row.id = counter;
  FillStamp(row, line, stamp, false);
  row.description = storage_.texts().Intern(Cut(line[3], kLongText));
  storage_.AddRow(row);
  Offer(line, stamp);
}

void RowMaker::AddLine(const LineFields& line, std::int32_t& counter) {
  TextPool& texts = storage_.texts();
  const std::string_view description = line[3];
  const TextPool::Hashed whole = texts.Prepare(Cut(description, kLongText));
  const Stamp stamp = ReadStamp(line[0]);
  if (!description.empty()) {
    StoredRow row = CommonRow(line, stamp);
    const bool several = FindSeparator(description) != std::string_view::npos;
    if (several && !IsAggregation(stamp)) {
      AddParts(row, line, stamp, counter);
    } else {
      row.id = counter;
      FillStamp(row, line, stamp, true);
      row.description = several ? texts.Intern(Cut(ExpandDesField(description, kLongText), kLongText))
                                : texts.Intern(whole);
      storage_.AddRow(row);
    }
  }
  Offer(line, stamp);
}

void RowMaker::AddParts(StoredRow row, const LineFields& line, const Stamp& stamp, std::int32_t& counter) {
  Pieces parts(line[3], kPartSeparator);
  for (std::string_view part; parts.Next(part);) {
    row.id = counter;
    FillStamp(row, line, stamp, true);
    row.description = storage_.texts().Intern(Cut(part, kLongText));
    storage_.AddRow(row);
    CountUp(counter);
  }
}

bool RowMaker::IsAggregation(const Stamp& stamp) const {
  return stamp.source >= 0 && known_sources_[static_cast<std::size_t>(stamp.source)].aggregation;
}

RowMaker::Stamp RowMaker::ReadStamp(std::string_view field) {
  // A plain date has at most ten digits, the first of them not 0 unless it stands alone.
  constexpr std::size_t kMostDigits = 10;
  std::size_t digits = 0;
  std::int64_t seconds = 0;
  for (; digits < field.size() && digits < kMostDigits && core::IsDigit(field[digits]); ++digits) {
    seconds = seconds * 10 + (field[digits] - '0');
  }
  const std::size_t comma = field.find(',', digits);
  const std::string_view date = field.substr(0, comma);
  const bool plain = digits > 0 && digits == date.size() && (date[0] != '0' || digits == 1) &&
                     seconds <= std::numeric_limits<std::int32_t>::max();
  const int source = comma == std::string_view::npos ? -1 : SourceOf(field.substr(comma + 1));
  return {date, plain ? seconds : -1, field.empty(), source};
}

// The known source of "HOST,42,Running Processes"; -1 when that is not three items.
int RowMaker::SourceOf(std::string_view behind_date) {
  if (behind_date.size() < 8) return FindSource(behind_date);
  // Sources differ mostly in the end of the monitor's name.
  const std::uint64_t end = Load8(behind_date.data() + behind_date.size() - 8) + behind_date.size();
  RecentSource& recent = recent_sources_[end * 0x9E3779B97F4A7C15 >> 58];
  if (recent.text.size() == behind_date.size() &&
      SameBytes(recent.text.data(), behind_date.data(), behind_date.size())) {
    return recent.source;
  }
  const int source = FindSource(behind_date);
  if (source >= 0) recent = {source_texts_.Text(static_cast<TextId>(source) + 1), source};
  return source;
}

int RowMaker::FindSource(std::string_view behind_date) {
  const TextId known = source_texts_.Lookup(behind_date);
  if (known != kNoText && known != kEmptyText) return static_cast<int>(known) - 1;
  if (std::ranges::count(behind_date, ',') != 2) return -1;
  TextPool& texts = storage_.texts();
  Pieces items(behind_date, ",");
  std::string_view host, thread, monitor;
  items.Next(host);
  items.Next(thread);
  items.Next(monitor);
  const std::string_view stored_monitor = Cut(monitor, kShortText);
  const Source source{texts.Intern(Cut(host, kShortText)), texts.Intern(Cut(thread, kShortText)),
                      texts.Intern(stored_monitor)};
  known_sources_.push_back({storage_.AddSource(source), stored_monitor == "Aggregation", false});
  return static_cast<int>(source_texts_.Intern(behind_date)) - 1;
}

std::uint32_t RowMaker::UnknownSource() {
  if (!has_unknown_source_) {
    TextPool& texts = storage_.texts();
    unknown_source_ = storage_.AddSource(
        {texts.Intern("Hostname N/A"), texts.Intern("ThreadID N/A"), texts.Intern("Monitor N/A")});
    has_unknown_source_ = true;
  }
  return unknown_source_;
}

// What all rows of a line have in common: everything but ID, date and description.
StoredRow RowMaker::CommonRow(const LineFields& line, const Stamp& stamp) {
  StoredRow row{};
  row.source =
      stamp.source >= 0 ? known_sources_[static_cast<std::size_t>(stamp.source)].source : UnknownSource();
  row.original = numbers_.Form(line[1]);
  row.change = numbers_.Form(line[2]);
  row.reaction = storage_.texts().Intern(Cut(line[4], kLongText));
  row.code = storage_.texts().Intern(Cut(line[5], kCodeText));
  row.extras = Extras(line);
  return row;
}

std::uint32_t RowMaker::Extras(const LineFields& line) {
  const int count = std::min(extra_columns_, line.last() - kFirstExtraField + 1);
  if (count <= 0) return 0;
  const std::uint32_t extras = storage_.BeginExtras();
  for (int i = 0; i < count; ++i) {
    storage_.AddExtra(storage_.texts().Intern(Cut(line[kFirstExtraField + i], kLongText)));
  }
  return extras;
}

void RowMaker::FillStamp(StoredRow& row, const LineFields& line, const Stamp& stamp, bool cut_display) {
  if (stamp.source < 0) {
    log_.WriteLog(load_ == Load::kFull ? "CMkvlf_InitClass" : "CMkvlf_LoadNewEvents",
                  "Error in line: " + std::string(line.line()));
    if (stamp.empty) core::Raise(core::kSubscriptOutOfRange);
  }
  row.moment = MomentOf(stamp, cut_display);
}

std::uint32_t RowMaker::MomentOf(const Stamp& stamp, bool cut_display) {
  if (stamp.plain >= 0) {
    if (stamp.plain != last_plain_) {
      last_plain_ = stamp.plain;
      last_moment_ = storage_.AddPlainMoment(stamp.date, static_cast<std::int32_t>(stamp.plain));
      traces_.last_date_utc = stamp.date;
    }
    return last_moment_;
  }
  last_plain_ = -1;
  if (core::IsNumeric(stamp.date, locale_)) {
    const std::int32_t seconds = core::CLng(stamp.date, locale_);
    traces_.last_date_utc = Cut(stamp.date, kShortText);
    return storage_.AddMoment(traces_.last_date_utc, seconds);
  }
  platform::FamilyLibraries& family = state_.seams.family;
  traces_.last_date_utc = Cut(core::DateToUTC(core::Now(state_.seams.clock, family), family), kShortText);
  return storage_.AddMoment(traces_.last_date_utc, cut_display ? Cut(stamp.date, kShortText) : stamp.date);
}

void RowMaker::Offer(const LineFields& line, const Stamp& stamp) {
  if (stamp.source < 0) return;
  KnownSource& known = known_sources_[static_cast<std::size_t>(stamp.source)];
  if (!known.offered) {
    Pieces items(line[0], ",");
    std::string_view date, host, thread, monitor;
    items.Next(date);
    items.Next(host);
    items.Next(thread);
    items.Next(monitor);
    traces_.hosts.SetItemData(host, host);
    traces_.monitors.SetItemData(monitor, load_ == Load::kFull ? monitor : thread);
    known.offered = true;
  }
  const std::string_view original = line[1];
  if (has_original_ && last_original_ == original) return;
  traces_.originals.SetItemData(original, original);
  last_original_ = original;
  has_original_ = true;
}

}  // namespace zendrix::store
