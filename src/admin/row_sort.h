// Puts row numbers into the order of a key of 32 bits each, stable: rows of equal keys keep their order.
#pragma once

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace zendrix::admin {

// A row with its key.
struct KeyedRow {
  std::uint32_t key;
  std::uint32_t row;
};

// Sorts ascending; takes as much memory again.
void SortByKey(std::vector<KeyedRow>& rows);

// Brings the first `fresh` rows into the rest, which is in order already; among equals fresh rows stand in
// front. `before` tells whether one row stands before another. Takes memory for the fresh rows only.
void MergeFresh(std::span<std::uint32_t> rows, std::size_t fresh,
                const std::function<bool(std::uint32_t, std::uint32_t)>& before);

}  // namespace zendrix::admin
