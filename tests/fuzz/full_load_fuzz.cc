// A monitoring file is written by whoever the console is meant to catch. An input is the file; what the
// reader makes of it must be what the plain rules make of it, up to the error that ends the process.
#include <cstddef>
#include <cstdint>
#include <string>

#include "support/fuzzed_console.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zendrix::test::FuzzedConsole console;
  console.SetFile(std::string(reinterpret_cast<const char*>(data), size));
  console.Load();
  return 0;
}
