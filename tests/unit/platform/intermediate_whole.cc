// A KorvessaIntermediateTypes with every function, which says in its message what it was given.
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <string>

#include "family/intermediate/korvessa_intermediate_types.h"

namespace zendrix::family {
extern "C" {

std::int32_t QuarantineEventExport(const QuarantineArguments* event, char* message, std::int32_t size) {
  std::snprintf(message, static_cast<std::size_t>(size), "quarantined %s (%d) of %s at %s for %s%s",
                event->description, static_cast<int>(size), event->monitor, event->event_utc, event->alert,
                event->shown != 0 ? "" : ", not shown");
  return std::strncmp(event->description, "/others", 7) == 0 ? kForWantOfRights : kRefused;
}

std::int32_t UnquarantineEventExport(const QuarantineArguments* event, char* message, std::int32_t size) {
  std::snprintf(message, static_cast<std::size_t>(size), "released %s (%d)", event->description,
                static_cast<int>(size));
  return std::strncmp(event->description, "/others", 7) == 0 ? kRefused : 0;
}

// Longer than the first buffer that anybody would offer; lines that are no entries stand between the two.
std::int32_t QuarantineListExport(char* text, std::int32_t size) {
  const std::string list = std::string(32, 'a') + "\t7\t" + std::string(64, 'c') +
                           "\t1795225500\t1000\t42\t/a%20b%0a%a\n" + "no entry\n\n" + std::string(32, 'b') +
                           "\tx\t\t1\t1\t\t/n\n" + std::string(32, 'b') + "\t0\t" + std::string(64, 'd') +
                           "\t-1\t0\t\t/" + std::string(300, 'p') + "\n";
  if (list.size() < static_cast<std::size_t>(size)) list.copy(text, list.size());
  return static_cast<std::int32_t>(list.size());
}

std::int32_t RestoreExport(const char* name, char* message, std::int32_t size) {
  std::snprintf(message, static_cast<std::size_t>(size), "asked for %s", name);
  return *name == 'a' ? 0 : 1;
}

std::int32_t GetHostIDExport(const char* product, char* buffer, std::int32_t size) {
  // The buffer arrives full of blanks and is told by its last character.
  const char last = buffer[size - 1];
  std::snprintf(buffer, static_cast<std::size_t>(size), "%s-%d-%s", product, static_cast<int>(size),
                last == ' ' ? "blank" : "other");
  return 0;
}

}  // extern "C"
}  // namespace zendrix::family
