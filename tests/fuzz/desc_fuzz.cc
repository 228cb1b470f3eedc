// Description files are only used when their hash is right, but the hash says nothing of what they hold. An
// input is a key, a byte 1F and the file.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/desc_lookup.h"
#include "core/error_log.h"
#include "core/hash_utils.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"
#include "platform/memory/memory_platform.h"
#include "store/descriptions.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  namespace core = zendrix::core;
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const auto end = input.find('\x1F');
  const std::string_view key = input.substr(0, end);
  const std::string_view file = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);

  zendrix::platform::MemoryPlatform platform;
  zendrix::platform::Seams seams = platform.seams();
  core::AppState state(seams);
  state.ProgramFolder = "/app";
  core::ErrorLog log(state);
  const std::string path = zendrix::store::DescPath(state, 1);
  platform.files.Put(path, file);
  core::HashUtils(platform.files, platform.family).StoreFileHash(path);
  zendrix::store::LoadDescArrays(state, log);

  const core::DescArray& lines = state.Desc[1];
  std::string joined;
  for (const std::string& line : lines) joined += (&line == &lines.front() ? "" : "\r\n") + line;
  Require(joined == file);
  for (const std::string& line : lines) Require(line.find("\r\n") == std::string::npos);
  std::string text = "as before";
  const bool found = core::DescLookup(lines, key, text);
  bool held = false;
  for (const std::string& line : lines) held = held || line.find(key) != std::string::npos;
  Require(found == held);
  if (found) Require(file.find(std::string(key) + text) != std::string_view::npos);
  if (lines.empty()) {
    Require(core::DescAt(lines, 7) == "Description Not Available");
    return 0;
  }
  for (std::size_t n = 0; n < 9; ++n) {
    try {
      const std::string at = core::DescAt(lines, n);
      Require(n < lines.size() && at.size() <= lines[n].size());
    } catch (const core::RunTimeError& error) {
      Require(error.number == core::kSubscriptOutOfRange && n >= lines.size());
    }
  }
  return 0;
}
