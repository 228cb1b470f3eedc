// A KorvessaIntermediateTypes with every function, which says in its message what it was given.
#include <cstdint>
#include <cstdio>
#include <cstring>

extern "C" {

std::int32_t QuarantineExport(const char* description, char* message, std::int32_t size) {
  std::snprintf(message, static_cast<std::size_t>(size), "quarantined %s (%d)", description,
                static_cast<int>(size));
  return 1;
}

std::int32_t UnquarantineExport(const char* description, char* message, std::int32_t size) {
  std::snprintf(message, static_cast<std::size_t>(size), "released %s (%d)", description,
                static_cast<int>(size));
  return 0;
}

std::int32_t GetHostIDExport(const char* product, char* buffer, std::int32_t size) {
  // The buffer arrives full of blanks and is told by its last character.
  const char last = buffer[size - 1];
  std::snprintf(buffer, static_cast<std::size_t>(size), "%s-%d-%s", product, static_cast<int>(size),
                last == ' ' ? "blank" : "other");
  return 0;
}

}  // extern "C"
