// Patterns of the run-time's Like operator.
#pragma once

#include <string_view>

namespace zendrix::core {

// Like-patterns: "?" one character, "*" any run, "#" a digit, "[a-z]" and "[!a-z]" sets; case-sensitive. A
// pattern with an open "[" matches nothing.
bool Like(std::string_view text, std::string_view pattern);

}  // namespace zendrix::core
