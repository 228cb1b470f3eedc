// A file that grows, shrinks and is replaced under the reader's eyes. Pieces of an input end at a byte 1F:
// the first is the file as the start finds it; each further one is added to the file, or takes its place if
// it begins with a byte 1E, and is followed by a poll.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "support/fuzzed_console.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  zendrix::test::FuzzedConsole console;
  const auto take = [&input] {
    const auto end = input.find('\x1F');
    const std::string piece(input.substr(0, end));
    input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
    return piece;
  };
  console.SetFile(take());
  if (!console.Load()) return 0;
  while (!input.empty()) {
    const std::string piece = take();
    console.SetFile(piece.starts_with('\x1E') ? piece.substr(1) : console.file() + piece);
    if (!console.Follow()) return 0;
  }
  return 0;
}
