// Token strings: "name=value;name=value".
#pragma once

#include <string>
#include <string_view>

namespace zendrix::core {

// Position (from 1) of name + "=" at the start or behind ";"; 0 when there is none. A name
// that occurs only as the tail of another token's name counts as missing.
int FindToken(std::string_view text, std::string_view name);
// The text behind name + "=" up to the next ";" or the end; empty when the token is missing.
std::string TokenValue(std::string_view text, std::string_view name);

}  // namespace zendrix::core
