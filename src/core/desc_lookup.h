// Texts taken from the description arrays, by key or by position.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "core/app_state.h"

namespace zendrix::core {

// What the consoles show where a description is missing.
inline constexpr char kDescriptionNotAvailable[] = "Description Not Available";

// The text of a description line: the first line that contains `key` (case-sensitive), the text behind the
// key in it. False, and `text` as it was, when the array is empty or nothing matches.
bool DescLookup(const DescArray& lines, std::string_view key, std::string& text);
// By position: the text behind the number n-1 and a comma in element `n` (from 0); empty when the element
// does not hold them. An empty array gives kDescriptionNotAvailable; one that is only too short raises 9.
std::string DescAt(const DescArray& lines, std::size_t n);

}  // namespace zendrix::core
