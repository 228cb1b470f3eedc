#include "store/selection.h"

#include <algorithm>

#include "core/number_rules.h"

namespace zendrix::store {
namespace {

bool IsInterned(int column) {
  return column >= kHostname;
}

int Order(double one, double other) {
  return one < other ? -1 : one > other ? 1 : 0;
}

// The first row for which `stands_before` is false; it must be true for all rows before that and false
// behind.
template <class Before>
Bookmark FirstRow(std::uint32_t rows, Before stands_before) {
  Bookmark first = 0;
  while (rows > 0) {
    const std::uint32_t half = rows / 2;
    if (stands_before(first + half)) {
      first += half + 1;
      rows -= half + 1;
    } else {
      rows = half;
    }
  }
  return first;
}

}  // namespace

Selection::Selection(const EventTable& table, std::vector<Comparison> comparisons)
    : table_(table), storage_(table.storage()), comparisons_(std::move(comparisons)) {}

void Selection::Refresh() {
  if (planned_ && planned_rows_ == storage_.row_count()) return;
  Plan();
  planned_ = true;
  planned_rows_ = storage_.row_count();
}

void Selection::Plan() {
  begin_ = 0;
  end_ = storage_.row_count();
  indexed_.reset();
  tests_.clear();
  for (const Comparison& comparison : comparisons_) {
    if (comparison.never) {
      end_ = 0;
    } else if (!NarrowByOrder(comparison)) {
      const bool by_id = !comparison.numeric && IsInterned(comparison.column) &&
                         (comparison.op == Op::kEqual || comparison.op == Op::kNotEqual);
      tests_.push_back({&comparison, by_id ? storage_.texts().Lookup(comparison.text) : kNoText});
    }
  }
  if (begin_ > end_) begin_ = end_;
  ChooseIndex();
}

// Dates and IDs rise from row to row in an undamaged file: a comparison of one is then a range of rows.
bool Selection::NarrowByOrder(const Comparison& comparison) {
  const auto rows = storage_.row_count();
  if (comparison.op == Op::kNotEqual) return false;
  if (comparison.column == kID && storage_.ids_ascend()) {
    const double id = comparison.number;
    Narrow(comparison.op, FirstRow(rows, [&](Bookmark row) { return storage_.row(row).id < id; }),
           FirstRow(rows, [&](Bookmark row) { return storage_.row(row).id <= id; }));
    return true;
  }
  if (comparison.column == kDateUTC && !comparison.numeric && storage_.moments_ascend()) {
    Narrow(comparison.op,
           FirstRow(rows, [&](Bookmark row) { return storage_.CompareUtc(row, comparison.text) < 0; }),
           FirstRow(rows, [&](Bookmark row) { return storage_.CompareUtc(row, comparison.text) <= 0; }));
    return true;
  }
  return false;
}

// [lower, upper) are the rows that equal the value.
void Selection::Narrow(Op op, Bookmark lower, Bookmark upper) {
  if (op == Op::kEqual || op == Op::kGreaterOrEqual) begin_ = std::max(begin_, lower);
  if (op == Op::kGreater) begin_ = std::max(begin_, upper);
  if (op == Op::kEqual || op == Op::kLessOrEqual) end_ = std::min(end_, upper);
  if (op == Op::kLess) end_ = std::min(end_, lower);
}

void Selection::ChooseIndex() {
  const auto by_equality = [](const Test& test) {
    return !test.comparison->numeric && test.comparison->op == Op::kEqual &&
           IsInterned(test.comparison->column);
  };
  const auto on = [&](int column) {
    return std::ranges::find_if(
        tests_, [&](const Test& test) { return by_equality(test) && test.comparison->column == column; });
  };
  if (std::ranges::any_of(tests_,
                          [&](const Test& test) { return by_equality(test) && test.id == kNoText; })) {
    end_ = begin_;  // no row has a text that the table does not hold
    return;
  }
  const auto description = on(kDescription);
  const auto change = on(kChange);
  if (description != tests_.end() && change != tests_.end()) {
    indexed_ = storage_.RowsWithBoth(description->id, change->id);
    const Comparison* const used[] = {description->comparison, change->comparison};
    std::erase_if(
        tests_, [&](const Test& test) { return std::ranges::find(used, test.comparison) != std::end(used); });
  } else {
    const auto test = description != tests_.end() ? description : std::ranges::find_if(tests_, by_equality);
    if (test == tests_.end()) return;
    indexed_ = storage_.RowsWith(test->comparison->column, test->id);
    tests_.erase(test);
  }
  const auto first = std::ranges::lower_bound(*indexed_, begin_);
  const auto last = std::ranges::lower_bound(*indexed_, end_);
  indexed_ = Postings::Rows(first, std::max(first, last));
}

std::int64_t Selection::AtOrAfter(std::int64_t row) const {
  if (indexed_) {
    const auto from =
        std::ranges::lower_bound(*indexed_, row, {}, [](Bookmark b) { return std::int64_t{b}; });
    const auto found = std::find_if(from, indexed_->end(), [&](Bookmark b) { return Passes(b); });
    return found == indexed_->end() ? -1 : std::int64_t{*found};
  }
  for (std::int64_t i = std::max(row, std::int64_t{begin_}); i < end_; ++i) {
    if (Passes(static_cast<Bookmark>(i))) return i;
  }
  return -1;
}

std::int64_t Selection::AtOrBefore(std::int64_t row) const {
  if (indexed_) {
    auto at = std::ranges::upper_bound(*indexed_, row, {}, [](Bookmark b) { return std::int64_t{b}; });
    while (at != indexed_->begin()) {
      if (Passes(*--at)) return *at;
    }
    return -1;
  }
  for (std::int64_t i = std::min(row, std::int64_t{end_} - 1); i >= std::int64_t{begin_}; --i) {
    if (Passes(static_cast<Bookmark>(i))) return i;
  }
  return -1;
}

bool Selection::Holds(Bookmark row) const {
  if (row < begin_ || row >= end_) return false;
  return (!indexed_ || std::ranges::binary_search(*indexed_, row)) && Passes(row);
}

std::uint32_t Selection::Count() const {
  if (indexed_) {
    if (tests_.empty()) return static_cast<std::uint32_t>(indexed_->size());
    return static_cast<std::uint32_t>(
        std::ranges::count_if(*indexed_, [&](Bookmark b) { return Passes(b); }));
  }
  if (tests_.empty()) return end_ - begin_;
  std::uint32_t count = 0;
  for (Bookmark row = begin_; row < end_; ++row) count += Passes(row) ? 1 : 0;
  return count;
}

bool Selection::Passes(Bookmark row) const {
  return std::ranges::all_of(tests_, [&](const Test& test) { return PassesTest(test, row); });
}

bool Selection::PassesTest(const Test& test, Bookmark row) const {
  const Comparison& comparison = *test.comparison;
  if (comparison.numeric) return PassesNumber(comparison, row);
  if (IsInterned(comparison.column)) {
    const TextId id = storage_.Id(row, comparison.column);
    if (comparison.op == Op::kEqual) return id == test.id;
    if (comparison.op == Op::kNotEqual) return id != test.id;
    return Satisfies(comparison.op, storage_.texts().Text(id).compare(comparison.text));
  }
  if (comparison.column == kDateUTC)
    return Satisfies(comparison.op, storage_.CompareUtc(row, comparison.text));
  return Satisfies(comparison.op, storage_.Text(row, comparison.column).compare(comparison.text));
}

bool Selection::PassesNumber(const Comparison& comparison, Bookmark row) const {
  if (comparison.column == kID)
    return Satisfies(comparison.op, Order(storage_.row(row).id, comparison.number));
  if (IsInterned(comparison.column)) {
    const auto number = storage_.NumberOf(storage_.Id(row, comparison.column), table_.locale());
    return number && Satisfies(comparison.op, Order(*number, comparison.number));
  }
  const std::string_view text = storage_.Text(row, comparison.column);
  return core::IsNumeric(text, table_.locale()) &&
         Satisfies(comparison.op, Order(core::CDbl(text, table_.locale()), comparison.number));
}

}  // namespace zendrix::store
