#include "family/intermediate/korvessa_intermediate_types.h"

#include <algorithm>
#include <cstring>
#include <string>
#include <string_view>

#include "family/intermediate/host_id.h"
#include "family/intermediate/quarantine.h"

#define ZENDRIX_EXPORT __attribute__((visibility("default")))

namespace zendrix::family {
namespace {

// The library's one setting, as its flat functions require.
Quarantine& TheQuarantine() {
  static Quarantine quarantine;
  return quarantine;
}

void Fill(std::string_view text, char* buffer, std::int32_t size) {
  if (!buffer || size <= 0) return;
  const std::size_t length = std::min(text.size(), static_cast<std::size_t>(size - 1));
  std::memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
}

// Runs one operation; its sentence, or that of its refusal, goes to the message.
template <class Operation>
std::int32_t Tell(char* message, std::int32_t size, Operation&& operation) noexcept {
  try {
    Fill(operation(), message, size);
    return 0;
  } catch (const Refused& refused) {
    Fill(refused.sentence, message, size);
  } catch (...) {
    // No room for a std::string here: want of memory is what leads to this place. What was begun is brought
    // to an end by the next operation.
    Fill("The computer is short of memory. Try again in a moment.", message, size);
  }
  return 1;
}

}  // namespace

extern "C" {

ZENDRIX_EXPORT void ConfigureExport(const char* program_folder, std::int32_t pretend) {
  try {
    TheQuarantine().Configure(program_folder ? program_folder : "", pretend != 0);
  } catch (...) {
    // Short of memory for a path: the next operation will say so.
  }
}

ZENDRIX_EXPORT std::int32_t QuarantineExport(const char* description, char* message, std::int32_t size) {
  return Tell(message, size, [&] { return TheQuarantine().PutAway(description ? description : ""); });
}

ZENDRIX_EXPORT std::int32_t UnquarantineExport(const char* description, char* message, std::int32_t size) {
  return Tell(message, size, [&] { return TheQuarantine().PutBack(description ? description : ""); });
}

ZENDRIX_EXPORT std::int32_t QuarantineEventExport(const QuarantineArguments* event, char* message,
                                                  std::int32_t size) {
  return QuarantineExport(event ? event->description : nullptr, message, size);
}

ZENDRIX_EXPORT std::int32_t UnquarantineEventExport(const QuarantineArguments* event, char* message,
                                                    std::int32_t size) {
  return UnquarantineExport(event ? event->description : nullptr, message, size);
}

ZENDRIX_EXPORT std::int32_t GetHostIDExport(const char* product, char* buffer, std::int32_t size) {
  std::string id;
  try {
    id = HostId(product ? product : "");
  } catch (...) {
    // As on a machine without an id.
  }
  Fill(id, buffer, size);
  return id.empty() ? 1 : 0;
}

}  // extern "C"

}  // namespace zendrix::family
