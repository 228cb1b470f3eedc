// Checks of what the user types.
#pragma once

#include <string_view>

namespace zendrix::core {

// True for the empty text and for name@domain.ext forms.
bool IsValidEmail(std::string_view text);
// True for the empty text and for names with at least two dots, numeric addresses included.
bool IsValidServer(std::string_view text);

}  // namespace zendrix::core
