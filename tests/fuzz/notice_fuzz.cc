// Notices of changed files as one hostile text: whatever the bytes, the reader stays within them.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "agent/sources/notice_stream.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  std::size_t names = 0;
  for (const auto& notice : zendrix::agent::ParseNotices(bytes)) names += notice.name.size();
  if (names > size) std::abort();
  return 0;
}
