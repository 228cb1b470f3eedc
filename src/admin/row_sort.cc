#include "admin/row_sort.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace zendrix::admin {

namespace {
constexpr unsigned kDigitBits = 11;
constexpr std::size_t kDigits = std::size_t{1} << kDigitBits;
}  // namespace

// A radix sort from the lowest digit; digits that all keys share are passed over.
void SortByKey(std::vector<KeyedRow>& rows) {
  if (std::ranges::is_sorted(rows, {}, &KeyedRow::key)) return;
  std::uint32_t differ = 0;
  for (const KeyedRow& row : rows) differ |= row.key ^ rows[0].key;
  std::vector<KeyedRow> sorted(rows.size());
  for (unsigned shift = 0; shift < 32; shift += kDigitBits) {
    if ((differ >> shift & (kDigits - 1)) == 0) continue;
    std::array<std::uint32_t, kDigits> place{};
    for (const KeyedRow& row : rows) ++place[row.key >> shift & (kDigits - 1)];
    std::uint32_t sum = 0;
    for (std::uint32_t& count : place) count = std::exchange(sum, sum + count);
    for (const KeyedRow& row : rows) sorted[place[row.key >> shift & (kDigits - 1)]++] = row;
    rows.swap(sorted);
  }
}

void MergeFresh(std::span<std::uint32_t> rows, std::size_t fresh,
                const std::function<bool(std::uint32_t, std::uint32_t)>& before) {
  std::vector<std::uint32_t> added(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(fresh));
  std::ranges::stable_sort(added, before);
  // From the top down: each fresh row finds the first old one that is not before it; what lies in between
  // moves up over the room that the fresh rows have left.
  std::uint32_t* const all = rows.data();
  std::size_t from = fresh;
  for (std::size_t i = 0; i < fresh; ++i) {
    const auto rest = rows.subspan(from);
    const auto found =
        std::ranges::partition_point(rest, [&](std::uint32_t old) { return before(old, added[i]); });
    const auto passed = static_cast<std::size_t>(found - rest.begin());
    // `fresh - i` free places lie in front of `from`.
    std::memmove(all + from - (fresh - i), all + from, passed * sizeof *all);
    from += passed;
    all[from - (fresh - i)] = added[i];
  }
}

}  // namespace zendrix::admin
