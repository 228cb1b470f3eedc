// The helper's record of blocks lies on the disk, where it may be damaged, and the monitoring file that it
// believes holds names that others choose. An input is the record's text, one under a good sum, the path of a
// program that is noted, and a monitoring file.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "act/alert_search.h"
#include "act/block_record.h"
#include "family/intermediate/sha256.h"

namespace {

using zendrix::act::ParseBlocks;
using zendrix::act::TextOfBlocks;

void Require(bool holds) {
  if (!holds) std::abort();
}

// There is one way to write a record.
void CheckText(const std::string& text) {
  const auto blocks = ParseBlocks(text);
  if (!blocks) return;
  Require(blocks->size() <= zendrix::act::BlockRecord::kMost && TextOfBlocks(*blocks) == text);
  for (const auto& block : *blocks)
    Require(block.path.starts_with('/') && block.path.find('\0') == std::string::npos &&
            zendrix::act::IsSha256(block.sha256));
}

void CheckRoundTrip(std::string_view bytes) {
  const std::string path = "/" + std::string(bytes.substr(0, bytes.find('\0')));
  const auto number = static_cast<std::uint32_t>(bytes.size());
  const std::string sum = zendrix::family::Sha256Of(bytes);
  const auto blocks = ParseBlocks(TextOfBlocks({{path, sum, -std::int64_t{number}, number}}));
  Require(blocks && blocks->size() == 1 && blocks->front().path == path && blocks->front().sha256 == sum &&
          blocks->front().user == number && blocks->front().when == -std::int64_t{number});
}

// What is found does not depend on how the file was cut.
void CheckSearch(std::string_view bytes) {
  const zendrix::act::ShownEvent wanted{"Running Processes", "/t:1", 1, 2};
  zendrix::act::AlertSearch whole(wanted), pieces(wanted);
  whole.Take(bytes);
  for (const char& byte : bytes) pieces.Take({&byte, 1});
  Require(whole.Found() == pieces.Found());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  CheckText(bytes);
  CheckText(bytes + "sum\t" + zendrix::family::Sha256Of(bytes) + "\n");
  CheckRoundTrip(bytes);
  CheckSearch(bytes);
  return 0;
}
