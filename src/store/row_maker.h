// Turns full lines of the monitoring file into rows of one table, which it keeps alive, and offers their
// names to the reader's lists. The full load and the incremental load both work through it.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/app_state.h"
#include "core/error_log.h"
#include "store/event_storage.h"
#include "store/event_table.h"
#include "store/line_fields.h"
#include "store/number_former.h"
#include "store/ulist.h"

namespace zendrix::store {

// The long form of an aggregation's description: an item "K=a * b" of the list becomes "K=a;K=b". At least
// the first `wanted` characters of the result are exact; what lies behind them may be missing.
std::string ExpandDesField(std::string_view text, std::size_t wanted = std::string::npos);

class RowMaker {
 public:
  // What the lines add to the reader besides rows.
  struct Traces {
    CUList& monitors;
    CUList& hosts;
    CUList& originals;
    std::string& last_date_utc;
  };
  // Which load the lines belong to: it is named in the log, and an incremental load lists a monitor with the
  // thread id.
  enum class Load { kFull, kIncremental };

  // `date_order` is the locale's order of the short date, in which displayed moments are put together.
  RowMaker(core::AppState& state, core::ErrorLog& log, std::shared_ptr<EventTable> table, Traces traces,
           int date_order);

  void BeginLoad(Load load) { load_ = load; }
  // The row of the first full line of a file: its description is taken whole.
  void AddFirstLine(const LineFields& line, std::int32_t counter);
  // The rows of any other full line. The counter goes up by one for each part of a description of several
  // parts.
  void AddLine(const LineFields& line, std::int32_t& counter);

 private:
  struct Stamp {
    std::string_view date;
    std::int64_t plain;  // the date's seconds if it is their plain decimal form, -1 if it is anything else
    bool empty;          // no items at all
    int source;          // place in known_sources_, -1 when there are not exactly four items
  };
  struct KnownSource {
    std::uint32_t source;
    bool aggregation;
    bool offered;  // to the lists of hosts and monitors
  };
  // Cache of sources, by their text in the pool.
  struct RecentSource {
    std::string_view text;
    int source;
  };

  Stamp ReadStamp(std::string_view field);
  int SourceOf(std::string_view behind_date);
  int FindSource(std::string_view behind_date);
  std::uint32_t UnknownSource();
  bool IsAggregation(const Stamp& stamp) const;
  void AddParts(StoredRow row, const LineFields& line, const Stamp& stamp, std::int32_t& counter);
  StoredRow CommonRow(const LineFields& line, const Stamp& stamp);
  std::uint32_t Extras(const LineFields& line);
  void FillStamp(StoredRow& row, const LineFields& line, const Stamp& stamp, bool cut_display);
  std::uint32_t MomentOf(const Stamp& stamp, bool cut_display);
  void Offer(const LineFields& line, const Stamp& stamp);

  core::AppState& state_;
  core::ErrorLog& log_;
  const std::shared_ptr<EventTable> table_;
  const platform::LocaleInfo& locale_;
  EventStorage& storage_;
  int extra_columns_;
  Traces traces_;
  Load load_ = Load::kFull;
  NumberFormer numbers_;
  TextPool source_texts_;  // "HOST,42,Running Processes"; its number less 1 is the place in known_sources_
  std::vector<KnownSource> known_sources_;
  std::uint32_t unknown_source_ = 0;
  bool has_unknown_source_ = false;
  std::string last_original_;
  bool has_original_ = false;
  std::array<RecentSource, 64> recent_sources_{};
  // The newest moment, while it is a plain one.
  std::int64_t last_plain_ = -1;
  std::uint32_t last_moment_ = 0;
};

}  // namespace zendrix::store
