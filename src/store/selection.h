// The rows of a table that satisfy some comparisons, in both directions. It takes the shortest way to
// them: a range of rows where the order of IDs or dates allows it, an index where a text is compared for
// equality, and only what is left is tested row by row.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "store/criteria.h"
#include "store/event_storage.h"
#include "store/event_table.h"

namespace zendrix::store {

class Selection {
 public:
  Selection(const EventTable& table, std::vector<Comparison> comparisons);

  // Includes the rows that have arrived since the last call. Called before every use below.
  void Refresh();

  // The nearest selected row at or behind (before) this one; -1 when there is none.
  std::int64_t AtOrAfter(std::int64_t row) const;
  std::int64_t AtOrBefore(std::int64_t row) const;
  bool Holds(Bookmark row) const;
  std::uint32_t Count() const;

 private:
  struct Test {
    const Comparison* comparison;
    TextId id;  // of a quoted value that is compared for equality; kNoText when the table does not hold it
  };

  void Plan();
  bool NarrowByOrder(const Comparison& comparison);
  void Narrow(Op op, Bookmark lower, Bookmark upper);
  void ChooseIndex();
  bool Passes(Bookmark row) const;
  bool PassesTest(const Test& test, Bookmark row) const;
  bool PassesNumber(const Comparison& comparison, Bookmark row) const;

  const EventTable& table_;
  const EventStorage& storage_;
  std::vector<Comparison> comparisons_;
  std::uint32_t planned_rows_ = 0;
  bool planned_ = false;
  // Rows [begin_, end_), only those of the index if there is one, and of these the ones that pass the tests.
  Bookmark begin_ = 0;
  Bookmark end_ = 0;
  std::optional<Postings::Rows> indexed_;
  std::vector<Test> tests_;
};

}  // namespace zendrix::store
