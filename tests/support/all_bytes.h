// Single bytes as texts, for what has to hold for each of the 256.
#pragma once

#include <string>

namespace zendrix::test {

inline std::string ByteText(unsigned byte) {
  return std::string(1, static_cast<char>(byte));
}

inline std::string AllBytes() {
  std::string bytes;
  for (unsigned byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  return bytes;
}

}  // namespace zendrix::test
