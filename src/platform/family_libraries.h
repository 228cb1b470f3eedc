// The system's own closed libraries, each a flat set of exported functions. The first two are part of the
// program; KorvessaIntermediateTypes is a shared library that is loaded when first needed and may be missing
// (every call then returns kNotFound).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace zendrix::platform {

// A local date and time, calendar values as written: month 1 to 12, day 1 to 31.
struct LocalTime {
  std::int32_t day = 0, month = 0, year = 0, hour = 0, minute = 0, second = 0;
};

class FamilyLibraries {
 public:
  virtual ~FamilyLibraries() = default;

  // KorvessaFundamentalTypes. Seconds since 1970-01-01 UTC to the local time of the process's time zone, and
  // back. In the one repeated hour of the year ToUTC takes the first reading.
  virtual LocalTime FromUTC(std::int32_t seconds) = 0;
  virtual std::int32_t ToUTC(const LocalTime& local) = 0;

  // KorvessaCryptoServices. SHA-256 of the bytes as 64 lower-case hexadecimal digits.
  virtual std::string HashBytes(std::string_view bytes) = 0;

  // KorvessaIntermediateTypes. `message` is the 256-byte buffer that the library may fill, ended by a NUL.
  virtual Status QuarantineExport(const std::string& description, std::string& message) = 0;
  virtual Status UnquarantineExport(const std::string& description, std::string& message) = 0;
  // A stable identifier of this host, at most 5119 characters; never the machine's own id.
  virtual Result<std::string> GetHostIDExport(const std::string& product) = 0;
};

}  // namespace zendrix::platform
