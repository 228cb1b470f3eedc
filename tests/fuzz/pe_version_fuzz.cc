// An update file can be anything. Whatever it is, its version is four numbers that stand in its fixed part,
// or nothing; little of it is read, and what stands behind it changes nothing.
#include "platform/pe_version.h"

#include <cstdint>
#include <cstdlib>
#include <sstream>
#include <string>

#include "platform/memory/memory_files.h"

using namespace zendrix;

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string Words(unsigned high, unsigned low) {
  const char bytes[] = {static_cast<char>(low & 0xFF), static_cast<char>(low >> 8),
                        static_cast<char>(high & 0xFF), static_cast<char>(high >> 8)};
  return {bytes, sizeof bytes};
}

void RequireStandsIn(const std::string& bytes, const std::string& version) {
  std::istringstream text(version);
  unsigned numbers[4] = {};
  char dots[3] = {};
  text >> numbers[0] >> dots[0] >> numbers[1] >> dots[1] >> numbers[2] >> dots[2] >> numbers[3];
  Require(!text.fail() && text.eof());
  for (const char dot : dots) Require(dot == '.');
  for (const unsigned number : numbers) Require(number <= 0xFFFF);
  const std::string words = Words(numbers[0], numbers[1]) + Words(numbers[2], numbers[3]);
  const std::string signature = Words(0xFEEF, 0x04BD);
  for (std::size_t at = bytes.find(signature); at != std::string::npos; at = bytes.find(signature, at + 1))
    if (at + 16 <= bytes.size() && bytes.substr(at + 8, 8) == words) return;
  std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  platform::MemoryFiles files;
  int reads = 0;
  files.before = [&](platform::FileOp operation, const std::string&) {
    reads += operation == platform::FileOp::kRead;
  };
  files.Put("/update", bytes);
  const std::string version = platform::PeFileVersion(files, "/update");
  Require(reads <= 20);
  if (version.empty()) return 0;
  RequireStandsIn(bytes, version);
  files.PutMore("/update", bytes);
  Require(platform::PeFileVersion(files, "/update") == version);
  return 0;
}
