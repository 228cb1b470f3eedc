// A log file holds texts of anybody's making. An input is the file.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "core/app_state.h"
#include "platform/memory/memory_platform.h"
#include "store/log_reader.h"

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  zendrix::platform::MemoryPlatform platform;
  zendrix::platform::Seams seams = platform.seams();
  zendrix::core::AppState state(seams);
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  platform.files.Put("/log", bytes);
  zendrix::store::CLog log(state);
  log.InitClass("/log");
  const auto* const table = log.table();
  if (table == nullptr) return 0;
  Require(!table->rows.empty() && table->columns.size() >= 5);
  std::int32_t last = table->rows.front().ID + 1;
  for (const auto& row : table->rows) {
    Require(row.ID < last && row.ID >= 1);
    last = row.ID;
    Require(row.texts.size() == table->columns.size() - 1);
    for (std::size_t i = 0; i < row.texts.size(); ++i) {
      Require(row.texts[i].size() <= (i < 3 ? 50 : 1024));
      for (const char c : row.texts[i]) Require(static_cast<unsigned char>(c) >= 32 && c != ',');
    }
  }
  return 0;
}
