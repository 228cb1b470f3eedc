// KorvessaCryptoServices: the hash of data files, as flat functions that any language can call. The hash is
// SHA-256 as 64 lower-case hexadecimal digits, so that side files can be made and checked with sha256sum.
// Nothing here throws.
#pragma once

#include <cstdint>

namespace zendrix::family {

extern "C" {

// Writes the hash of the file's bytes and a NUL into `buffer` of `size` characters. The buffer stays exactly
// as it was when there is no such plain file, when it cannot be read to its end, or when `size` is below 65.
void HashFile(const char* path, char* buffer, std::int32_t size);

// The same for `length` bytes in memory. Leaves the buffer as it was when `size` is below 65.
void HashBytes(const void* bytes, std::uint64_t length, char* buffer, std::int32_t size);

}  // extern "C"

}  // namespace zendrix::family
