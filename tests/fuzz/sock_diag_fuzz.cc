// What the kernel answers about its sockets as one hostile text: whatever the bytes, the reader stays within
// them and no address can part a line.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "agent/host/parse_sock_diag.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  std::vector<zendrix::agent::Socket> sockets;
  zendrix::agent::ReadDumpPart(bytes, sockets);
  for (const auto& socket : sockets) {
    if ((socket.local.address + socket.remote.address).find_first_of(":,|;=\r\n") != std::string::npos)
      std::abort();
  }
  std::size_t values = 0;
  for (const auto& attribute : zendrix::agent::SplitAttributes(bytes)) values += attribute.value.size();
  if (values > size) std::abort();
  return 0;
}
