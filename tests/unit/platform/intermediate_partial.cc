// A KorvessaIntermediateTypes that lacks all functions but one.
#include <cstdint>
#include <cstdio>

extern "C" std::int32_t QuarantineEventExport(const void*, char* message, std::int32_t size) {
  std::snprintf(message, static_cast<std::size_t>(size), "partial");
  return 0;
}
