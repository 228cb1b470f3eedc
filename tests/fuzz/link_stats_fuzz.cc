// What the kernel answers about its interfaces as one hostile text: whatever the bytes, the reader stays
// within them, and a part that is cut gives no more than the whole.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "agent/host/parse_link_stats.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using zendrix::agent::DumpPart;
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  std::optional<std::uint64_t> total;
  const DumpPart part = zendrix::agent::ReadLinkStatsPart(bytes, total);
  std::optional<std::uint64_t> of_less;
  const DumpPart part_of_less = zendrix::agent::ReadLinkStatsPart(bytes.substr(0, size / 2), of_less);
  if (of_less && !total) std::abort();
  if (part_of_less != DumpPart::kMore && part_of_less != part) std::abort();
  return 0;
}
