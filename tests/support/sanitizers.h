// Whether a test runs under the address sanitizer.
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

}  // namespace zendrix::test
