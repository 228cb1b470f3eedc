#include "store/row_order.h"

#include <algorithm>
#include <numeric>

namespace zendrix::store {

void RowOrder::Refresh() {
  const auto known = static_cast<std::ptrdiff_t>(rows_.size());
  if (rows_.size() == storage_.row_count()) return;
  rows_.resize(storage_.row_count());
  const auto arrived = rows_.begin() + known;
  std::iota(arrived, rows_.end(), static_cast<Bookmark>(known));
  const auto before = [this](Bookmark one, Bookmark other) { return Before(one, other); };
  std::stable_sort(arrived, rows_.end(), before);
  std::inplace_merge(rows_.begin(), arrived, rows_.end(), before);
  places_.resize(rows_.size());
  for (std::uint32_t place = 0; place < rows_.size(); ++place) places_[rows_[place]] = place;
}

bool RowOrder::Before(Bookmark one, Bookmark other) const {
  if (order_ == SortOrder::kDescending) std::swap(one, other);
  if (column_ == kID) return storage_.row(one).id < storage_.row(other).id;
  return storage_.Text(one, column_) < storage_.Text(other, column_);
}

}  // namespace zendrix::store
