// The system's own closed libraries, each a flat set of exported functions. The first two are part of the
// program; KorvessaIntermediateTypes is a shared library that is loaded when first needed and may be missing
// (every call then returns kNotFound).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "platform/result.h"

namespace zendrix::platform {

// A local date and time, calendar values as written: month 1 to 12, day 1 to 31.
struct LocalTime {
  std::int32_t day = 0, month = 0, year = 0, hour = 0, minute = 0, second = 0;
};

// An event whose file is to be put in quarantine or taken out of it.
struct QuarantineEvent {
  std::string monitor;
  std::string description;
  // Moment of the event: UTC seconds as the store holds them; empty when it is not known.
  std::string event_utc;
  // The alert that the event belongs to, by its DateUTC, under which decisions are kept too.
  std::string alert;
  // Whether the alert's page has a row for the event. What it does not show is not acted on.
  bool shown = true;
};

// A file in quarantine.
struct QuarantineEntry {
  std::string name;  // 32 hexadecimal digits
  std::string path;  // where it was; the bytes of the file system
  std::uint64_t size = 0;
  std::string sha256;
  std::int64_t when = 0;    // of the move, UTC seconds
  std::uint32_t owner = 0;  // user id of the file where it was
  std::string alert;        // as in QuarantineEvent; empty on entries that an older library made
  friend bool operator==(const QuarantineEntry&, const QuarantineEntry&) = default;
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
  virtual Status QuarantineExport(const QuarantineEvent& event, std::string& message) = 0;
  virtual Status UnquarantineExport(const QuarantineEvent& event, std::string& message) = 0;
  // What is in quarantine, newest first; with an alert only what was put away for it. An error text is the
  // library's own sentence where the list cannot be had.
  virtual Result<std::vector<QuarantineEntry>> QuarantineList() = 0;
  virtual Result<std::vector<QuarantineEntry>> QuarantineListOf(const std::string& alert) = 0;
  // Puts an entry back in its place. True when it is there again; the message says why or why not.
  virtual Result<bool> RestoreExport(const std::string& name, std::string& message) = 0;
  // A stable identifier of this host, at most 5119 characters; never the machine's own id.
  virtual Result<std::string> GetHostIDExport(const std::string& product) = 0;
};

// Those of the entries that were put away for the alert.
inline std::vector<QuarantineEntry> EntriesOf(const std::string& alert,
                                              std::vector<QuarantineEntry> entries) {
  std::erase_if(entries, [&](const QuarantineEntry& entry) { return entry.alert != alert; });
  return entries;
}

}  // namespace zendrix::platform
