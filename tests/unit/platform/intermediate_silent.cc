// A KorvessaIntermediateTypes that leaves every buffer as it is.
#include <cstdint>

extern "C" {

std::int32_t QuarantineExport(const char*, char*, std::int32_t) {
  return 0;
}
std::int32_t UnquarantineExport(const char*, char*, std::int32_t) {
  return 0;
}
std::int32_t GetHostIDExport(const char*, char*, std::int32_t) {
  return 0;
}

}  // extern "C"
