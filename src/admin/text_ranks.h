// The alphabetical places of many texts of a pool, without regard to case: the smallest has rank 0, texts
// that differ in case only share a rank. Comparing two rows is then comparing two numbers.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include "store/text_pool.h"

namespace zendrix::admin {

// One rank for each number, in the order of the numbers.
std::vector<std::uint32_t> RanksNoCase(const store::TextPool& pool, std::span<const store::TextId> texts);

// Negative, zero or positive: how one text stands to the other in that order.
int CompareNoCase(std::string_view one, std::string_view other);

}  // namespace zendrix::admin
