// The storage behind an EventTable: small fixed records that refer to texts of one pool. Only the reader's
// RowMaker adds to it; cursors read it. The display form of a numeric date is made when it is first asked
// for, because almost no row is ever shown.
#pragma once

#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "store/chunked_vector.h"
#include "store/event_table.h"
#include "store/postings.h"
#include "store/text_pool.h"

namespace zendrix::store {

// Host, thread and monitor of a stamp; a host has few of them.
struct Source {
  TextId hostname;
  TextId thread_id;
  TextId monitor;
};

// DateUTC and DateTime of rows that follow one another. Nearly every date is the plain decimal form of its
// seconds; its texts are made when they are first asked for.
struct Moment {
  std::int32_t seconds;
  std::uint32_t texts;  // place of its texts plus 1; 0: plain, not asked for yet
};

struct StoredRow {
  std::int32_t id;
  std::uint32_t moment;
  std::uint32_t source;
  TextId original;
  TextId change;
  TextId description;
  TextId reaction;
  TextId code;
  std::uint32_t extras;  // place of the count of Descr texts in `extras`, their ids behind it; 0: none
};

class EventStorage {
 public:
  EventStorage();

  using Display = std::function<std::string_view(std::int32_t seconds)>;
  // How a numeric date is shown. The view that it returns is used before the next call.
  void SetDisplay(Display display) { display_ = std::move(display); }

  std::uint32_t row_count() const { return static_cast<std::uint32_t>(rows_.size()); }
  const StoredRow& row(Bookmark row) const { return rows_[row]; }
  const Source& source(std::uint32_t source) const { return sources_[source]; }
  const TextPool& texts() const { return texts_; }
  TextPool& texts() { return texts_; }

  void AddRow(const StoredRow& row) {
    if (row.id <= last_id_) ids_ascend_ = false;
    last_id_ = row.id;
    rows_.push_back(row);
  }
  // A moment for the rows to come: one whose text is the plain decimal form of its seconds, any other numeric
  // one, or one with its own display text.
  std::uint32_t AddPlainMoment(std::string_view utc, std::int32_t seconds);
  std::uint32_t AddMoment(std::string_view utc, std::int32_t seconds);
  std::uint32_t AddMoment(std::string_view utc, std::string_view display);
  std::uint32_t AddSource(const Source& source);
  // Begins a list of Descr texts for the rows to come and appends to it.
  std::uint32_t BeginExtras();
  void AddExtra(TextId id);

  // Whether the row numbers' IDs rise strictly, and the DateUTC texts never fall, from row to row.
  bool ids_ascend() const { return ids_ascend_; }
  bool moments_ascend() const { return moments_ascend_; }

  // How the row's DateUTC stands to this text: negative, zero or positive.
  int CompareUtc(Bookmark row, std::string_view utc) const;

  // The text id of a column whose texts are interned (from Hostname on).
  TextId Id(Bookmark row, int column) const;
  // The text of any column that the table has.
  std::string_view Text(Bookmark row, int column) const;

  // The rows that hold this text in this column, or this description with this change. Ascending.
  Postings::Rows RowsWith(int column, TextId id) const;
  Postings::Rows RowsWithBoth(TextId description, TextId change) const;

  // The value of a text as a number of the table's locale, if it is one; remembered.
  std::optional<double> NumberOf(TextId id, const platform::LocaleInfo& locale) const;

 private:
  struct MomentTexts {
    std::string_view utc;
    std::string_view display;  // data() is null until it has been made
  };

  void NoteOrder(std::string_view utc);
  MomentTexts& TextsOf(std::uint32_t moment) const;
  std::string_view DisplayOf(std::uint32_t moment) const;
  Postings& Index(int column) const;

  // What is made on demand does not change what the table holds.
  mutable TextPool texts_;
  mutable ChunkedVector<Moment, 13> moments_;
  mutable ChunkedVector<MomentTexts, 8> moment_texts_;
  std::string last_utc_;
  ChunkedVector<StoredRow, 13> rows_;
  ChunkedVector<Source, 8> sources_;
  ChunkedVector<TextId, 13> extras_;
  std::size_t open_extras_ = 0;
  Display display_;
  std::int32_t last_id_ = std::numeric_limits<std::int32_t>::min();
  bool ids_ascend_ = true;
  bool moments_ascend_ = true;
  mutable std::unordered_map<int, Postings> indexes_;
  mutable Postings description_and_change_;
  mutable std::unordered_map<TextId, std::optional<double>> numbers_;
};

}  // namespace zendrix::store
