// Whether a test runs under the address sanitizer, and how much it tries there.
#pragma once

#if defined(__SANITIZE_ADDRESS__)
#define ZENDRIX_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define ZENDRIX_ADDRESS_SANITIZER 1
#endif
#endif

namespace zendrix::test {

#ifdef ZENDRIX_ADDRESS_SANITIZER
inline constexpr bool kSanitized = true;
#else
inline constexpr bool kSanitized = false;
#endif

// How often a test of tests/hostile, which runs with the sanitizers and without, goes round. They look for
// memory errors, on paths that repeat from input to input, and take ten times as long: a fifth serves them.
constexpr int Rounds(int all) {
  return kSanitized ? all / 5 : all;
}

}  // namespace zendrix::test
