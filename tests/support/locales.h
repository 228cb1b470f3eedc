// The regional settings of the four languages of the truth tables, as single-byte texts.
#pragma once

#include "platform/locale.h"

namespace zendrix::test {

inline constexpr int kUsEnglish = 1033;
inline constexpr int kGerman = 1031;
inline constexpr int kUkEnglish = 2057;
inline constexpr int kJapanese = 1041;

// Fails the test for any other id.
platform::LocaleInfo LocaleOf(int lcid);

}  // namespace zendrix::test
