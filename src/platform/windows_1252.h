// The one single-byte code page of the system's texts, against UTF-8. The five bytes without a character
// stand for the control character of the same number. No best fit is made on the way in: a look-alike of a
// quote, a slash or a separator must not turn into the real one behind the user's back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zendrix::platform {

std::string Utf8FromBytes(std::string_view bytes);
// A character without a byte becomes "?"; so does each byte of a broken sequence.
std::string BytesFromUtf8(std::string_view utf8);
// Nothing when the text is no UTF-8 or has a character that the code page lacks.
std::optional<std::string> BytesFromUtf8Exactly(std::string_view utf8);

}  // namespace zendrix::platform
