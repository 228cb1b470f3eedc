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
  const auto table = log.table();
  if (table == nullptr) return 0;
  Require(table->RowCount() > 0 && table->ColumnCount() >= 5);
  std::int32_t last = table->ID(0) + 1;
  for (std::size_t row = 0; row < table->RowCount(); ++row) {
    Require(table->ID(row) < last && table->ID(row) >= 1);
    last = table->ID(row);
    for (std::size_t column = 1; column < table->ColumnCount(); ++column) {
      const std::string_view text = table->Text(row, column);
      Require(text.size() <= (column < 4 ? 50 : 1024));
      for (const char c : text) Require(static_cast<unsigned char>(c) >= 32 && c != ',');
    }
  }
  return 0;
}
