// The rows of the Administrator console: every displayed line of the monitoring file, oldest first. Rows are
// numbered from 0, only ever added, and go all at once. A row is a small record: the line's number, its time
// key, its description, and its source (host, monitor, change code), which most rows share with many others.
// Every distinct text is kept once. Texts that follow from these (the shown time, the fitted description) are
// made on demand. Views of the rows keep row numbers; the rows know none of them.
//
// When memory runs out, std::bad_alloc leaves every call that adds something as if it had not been made, but
// that texts without a row may stay behind. Texts are single-byte and stay valid until Clear.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "admin/monitor_rows.h"
#include "admin/row_texts.h"
#include "store/chunked_vector.h"
#include "store/text_pool.h"
#include "store/ulist.h"

namespace zendrix::admin {

// The blanks in front of a shown monitor leave room for its picture.
inline constexpr std::string_view kPictureRoom = "     ";

struct EventRow {
  std::int32_t event_id;
  std::int32_t time_key;
  std::uint32_t source;
  store::TextId whole;
};

// Where rows come from. `time` is the text of a time that is no number; kNoText: the time is shown by its
// key.
struct RowSource {
  store::TextId host, monitor, code, time;
};

// One more row beyond either raises run-time error 7. Bytes are those of records and texts, and of the lists
// of the window that hold the texts of sources too; one line may go beyond them.
struct RowCapacity {
  std::size_t rows = 50'000'000;
  std::size_t bytes = std::size_t{3} << 30;
};

class EventRows {
 public:
  // `family` outlives the rows.
  EventRows(platform::FamilyLibraries& family, TextMetrics metrics, RowCapacity capacity = {});

  void Clear();
  // How the rows to come are shown.
  void BeginLoad(const LoadSettings& settings) { texts_.BeginLoad(settings); }
  // The number of a source; monitors that begin with the picture's room lose it.
  std::uint32_t AddSource(std::string_view host, std::string_view monitor, std::string_view code);
  // The same source with a time that is no number.
  std::uint32_t AddSourceWithTime(std::uint32_t source, std::string_view time);
  // The number of a description, also of a line that gives no row. What is prepared a while before is found
  // faster.
  store::TextPool::Hashed PrepareDescription(std::string_view text) const { return pool_.Prepare(text); }
  store::TextId AddDescription(const store::TextPool::Hashed& text);
  store::TextId AddDescription(std::string_view text) { return AddDescription(PrepareDescription(text)); }
  // Adds a row, whose number is size() of before. Raises 7 beyond the capacity.
  void Append(const EventRow& row);
  // For a line that gives no row: its texts were added. Raises 7 beyond the capacity in bytes.
  void CheckBytes() const;

  std::uint32_t size() const { return static_cast<std::uint32_t>(rows_.size()); }
  const EventRow& row(std::uint32_t row) const { return rows_[row]; }
  std::uint32_t source_count() const { return sources_.size() - 1; }
  RowSource source(std::uint32_t source) const;
  const store::TextPool& pool() const { return pool_; }
  // The distinct descriptions of all lines, in the order of their first line.
  std::uint32_t description_count() const { return description_count_; }
  std::vector<store::TextId> DistinctDescriptions() const;
  // The same as the list by key, ignoring case.
  store::CUList Descriptions() const;
  // Bytes of records and texts, and what the window keeps of each source beside them.
  std::size_t bytes() const {
    return rows_.size() * sizeof(EventRow) + pool_.bytes() + sources_.bytes() + listed_bytes_;
  }

  std::string_view Host(std::uint32_t row) const { return pool_.Text(SourceOf(row).host); }
  // Without the picture's room.
  std::string_view Monitor(std::uint32_t row) const { return pool_.Text(SourceOf(row).monitor); }
  std::string_view Code(std::uint32_t row) const { return pool_.Text(SourceOf(row).code); }
  std::string_view Whole(std::uint32_t row) const { return pool_.Text(rows_[row].whole); }
  // The shown time.
  std::string Time(std::uint32_t row) const;
  // The description as it was fitted into its column.
  std::string Fitted(std::uint32_t row) const;
  const RowTexts& texts() const { return texts_; }

  // The rows of a monitor, whatever its case, in ascending order. Valid until the next row is added.
  std::span<const std::uint32_t> RowsOfMonitor(std::string_view monitor) const;

  // The rank of each row's text of one kind, without regard to case, for sorting. What it takes is kept until
  // a new text or source comes.
  enum class Key { kHost, kMonitor, kCode, kWhole };
  class Ranks {
   public:
    std::uint32_t Of(const EventRow& row) const { return (*of_)[by_source_ ? row.source : row.whole]; }

   private:
    friend class EventRows;
    Ranks(const std::vector<std::uint32_t>& of, bool by_source) : of_(&of), by_source_(by_source) {}
    const std::vector<std::uint32_t>* of_;
    bool by_source_;
  };
  Ranks RanksOf(Key key) const;
  std::string_view TextOf(Key key, std::uint32_t row) const;

 private:
  RowSource SourceOf(std::uint32_t row) const { return source(rows_[row].source); }
  std::uint32_t KeepSource(const RowSource& source);
  store::TextId TextOf(Key key, const RowSource& source) const;

  struct LateDescription {
    store::TextId before;  // texts of this number and on came behind it
    store::TextId text;
  };
  struct KeptRanks {
    std::uint32_t count = 0;  // of the texts or sources that they were made of
    std::vector<std::uint32_t> of;
  };

  RowCapacity capacity_;
  store::TextPool pool_;
  // A source's four numbers are a text of sixteen bytes here, so that equal ones are kept once; text number
  // n + 1 is source n.
  store::TextPool sources_;
  std::size_t listed_bytes_ = 0;
  store::ChunkedVector<EventRow, 13> rows_;
  std::vector<bool> is_description_;  // by text number
  // Descriptions whose text was there as another one before; all others come in the order of their numbers.
  std::vector<LateDescription> late_descriptions_;
  std::uint32_t description_count_ = 0;
  RowTexts texts_;
  mutable MonitorRows monitors_;
  mutable KeptRanks ranks_[4];
};

}  // namespace zendrix::admin
