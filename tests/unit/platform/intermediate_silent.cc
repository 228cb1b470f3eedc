// A KorvessaIntermediateTypes that leaves every buffer as it is.
#include <cstdint>

extern "C" {

std::int32_t QuarantineEventExport(const void*, char*, std::int32_t) {
  return 0;
}
std::int32_t UnquarantineEventExport(const void*, char*, std::int32_t) {
  return 0;
}
std::int32_t QuarantineListExport(char*, std::int32_t) {
  return 0;
}
std::int32_t RestoreExport(const char*, char*, std::int32_t) {
  return 0;
}
std::int32_t GetHostIDExport(const char*, char*, std::int32_t) {
  return 0;
}

}  // extern "C"
