#include "family/intermediate/korvessa_intermediate_types.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <optional>
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
  const std::size_t length = std::min(text.size(), static_cast<std::size_t>(size) - 1);
  std::memcpy(buffer, text.data(), length);
  buffer[length] = '\0';
}

void FillSentence(const std::string& sentence, char* buffer, std::int32_t size) {
  if (size > 0) Fill(Fitting(sentence, static_cast<std::size_t>(size) - 1), buffer, size);
}

std::string TextOrNothing(const char* text) {
  return text ? text : "";
}

Event EventOf(const QuarantineArguments* arguments) {
  // A caller of an earlier or a foreign make hands over something else.
  if (!arguments || arguments->size < static_cast<std::int32_t>(sizeof(QuarantineArguments))) return {};
  Event event{TextOrNothing(arguments->monitor), TextOrNothing(arguments->description), std::nullopt,
              TextOrNothing(arguments->alert), arguments->shown != 0};
  const std::string moment = TextOrNothing(arguments->event_utc);
  std::int64_t seconds = 0;
  const auto [end, error] = std::from_chars(moment.data(), moment.data() + moment.size(), seconds);
  if (error == std::errc() && end == moment.data() + moment.size()) event.moment = seconds;
  return event;
}

Event EventNamed(const char* description) {
  return {"", TextOrNothing(description), std::nullopt, "", true};
}

// Runs one operation; its sentence, or that of its refusal, goes to the message.
template <class Operation>
std::int32_t Tell(char* message, std::int32_t size, Operation&& operation) noexcept {
  try {
    FillSentence(operation(), message, size);
    return 0;
  } catch (const Refused& refused) {
    FillSentence(refused.sentence, message, size);
    return refused.for_want_of_rights ? kForWantOfRights : kRefused;
  } catch (...) {
    // No room for a std::string here: want of memory is what leads to this place. What was begun is brought
    // to an end by the next operation.
    Fill("The computer is short of memory. Try again in a moment.", message, size);
  }
  return kRefused;
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
  return Tell(message, size, [&] { return TheQuarantine().PutAway(EventNamed(description)); });
}

ZENDRIX_EXPORT std::int32_t UnquarantineExport(const char* description, char* message, std::int32_t size) {
  return Tell(message, size, [&] { return TheQuarantine().PutBack(EventNamed(description)); });
}

ZENDRIX_EXPORT std::int32_t QuarantineEventExport(const QuarantineArguments* event, char* message,
                                                  std::int32_t size) {
  return Tell(message, size, [&] { return TheQuarantine().PutAway(EventOf(event)); });
}

ZENDRIX_EXPORT std::int32_t UnquarantineEventExport(const QuarantineArguments* event, char* message,
                                                    std::int32_t size) {
  return Tell(message, size, [&] { return TheQuarantine().PutBack(EventOf(event)); });
}

ZENDRIX_EXPORT std::int32_t QuarantineListExport(char* text, std::int32_t size) {
  std::string list;
  const std::int32_t refused = Tell(text, size, [&] {
    list = LinesOf(TheQuarantine().List());
    return std::string();
  });
  if (refused != 0 || list.size() > static_cast<std::size_t>(INT32_MAX)) return -1;
  if (size > 0 && list.size() < static_cast<std::size_t>(size)) Fill(list, text, size);
  return static_cast<std::int32_t>(list.size());
}

ZENDRIX_EXPORT std::int32_t RestoreExport(const char* name, char* message, std::int32_t size) {
  return Tell(message, size, [&] { return TheQuarantine().PutBackEntry(TextOrNothing(name)); });
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
