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

// Brings the first `fresh` rows into the rest, which is in the order of `compare` already; among equals fresh
// rows stand in front. `compare` tells how one row stands to another: negative, zero or positive. Takes
// memory for the fresh rows only.
void MergeFresh(std::span<std::uint32_t> rows, std::size_t fresh,
                const std::function<int(std::uint32_t, std::uint32_t)>& compare);

}  // namespace zendrix::admin
