// The one single-byte code page of the system's texts, against UTF-8. Only for what the platform itself reads
// or hands over in UTF-8 (names of the locale, addresses); everything else keeps its bytes.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zendrix::platform {

// Nothing when the text is no UTF-8 or has a character that the code page lacks.
std::optional<std::string> Windows1252FromUtf8(std::string_view text);
// The five bytes without a character become the control characters of the same number.
std::string Utf8FromWindows1252(std::string_view text);

}  // namespace zendrix::platform
