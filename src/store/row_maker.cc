#include "store/row_maker.h"

#include <algorithm>
#include <limits>

#include "core/date_rules.h"
#include "core/moment_formatter.h"
#include "core/number_rules.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"
#include "core/utils.h"

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

// Seconds written as plain digits that fit 32 bits; -1 for any other text.
std::int64_t PlainSeconds(std::string_view text) {
  if (text.empty() || text.size() > 10) return -1;
  std::int64_t value = 0;
  for (const char c : text) {
    if (c < '0' || c > '9') return -1;
    value = value * 10 + (c - '0');
  }
  return value <= std::numeric_limits<std::int32_t>::max() ? value : -1;
}

void CountUp(std::int32_t& counter) {
  if (counter == std::numeric_limits<std::int32_t>::max()) core::Raise(core::kOverflow);
  ++counter;
}

// Takes what stands before the next separator (or all) from the front; false when the text was used up
// before.
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
  // Prefixes repeat, so the result can be far longer than the text: it is not built further than it is
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

RowMaker::RowMaker(core::AppState& state, core::ErrorLog& log, EventTable& table, Traces traces,
                   int date_order)
    : state_(state),
      log_(log),
      locale_(table.locale()),
      storage_(table.storage()),
      extra_columns_(table.ColumnCount() - kFirstDescr),
      traces_(traces),
      numbers_(table.locale(), table.storage().texts()) {
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
  const Stamp stamp = ReadStamp(line[0]);
  const std::string_view description = line[3];
  if (!description.empty()) {
    StoredRow row = CommonRow(line, stamp);
    const bool several = description.find(kPartSeparator) != std::string_view::npos;
    const bool aggregation =
        stamp.source >= 0 && known_sources_[static_cast<std::size_t>(stamp.source)].aggregation;
    if (!several || aggregation) {
      row.id = counter;
      FillStamp(row, line, stamp, true);
      row.description = storage_.texts().Intern(
          several ? std::string_view(Cut(ExpandDesField(description, kLongText), kLongText))
                  : Cut(description, kLongText));
      storage_.AddRow(row);
    } else {
      Pieces parts(description, kPartSeparator);
      for (std::string_view part; parts.Next(part);) {
        row.id = counter;
        FillStamp(row, line, stamp, true);
        row.description = storage_.texts().Intern(Cut(part, kLongText));
        storage_.AddRow(row);
        CountUp(counter);
      }
    }
  }
  Offer(line, stamp);
}

RowMaker::Stamp RowMaker::ReadStamp(std::string_view field) {
  const std::size_t comma = field.find(',');
  if (comma == std::string_view::npos) return {field, field.empty(), -1};
  return {field.substr(0, comma), false, SourceOf(field.substr(comma + 1))};
}

// The known source of "HOST,42,Running Processes"; -1 when that is not three items.
int RowMaker::SourceOf(std::string_view behind_date) {
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
  row.moment = MomentOf(stamp.date, cut_display);
}

std::uint32_t RowMaker::MomentOf(std::string_view date, bool cut_display) {
  if (date == last_date_ && last_date_.data() != nullptr) return last_moment_;
  const std::int64_t plain = PlainSeconds(date);
  if (plain >= 0) return NumericMoment(date, static_cast<std::int32_t>(plain));
  if (core::IsNumeric(date, locale_)) return NumericMoment(date, core::CLng(date, locale_));
  const std::string now =
      core::DateToUTC(core::Now(state_.seams.clock, state_.seams.family), state_.seams.family);
  last_date_ = {};
  traces_.last_date_utc = Cut(now, kShortText);
  return storage_.AddMoment(traces_.last_date_utc, cut_display ? Cut(date, kShortText) : date);
}

std::uint32_t RowMaker::NumericMoment(std::string_view date, std::int32_t seconds) {
  last_moment_ = storage_.AddMoment(Cut(date, kShortText), seconds);
  const std::string_view stored = storage_.moment(last_moment_).utc;
  last_date_ = stored.size() == date.size() ? stored : std::string_view();
  traces_.last_date_utc = stored;
  return last_moment_;
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
