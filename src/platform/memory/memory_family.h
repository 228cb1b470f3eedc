// The family libraries for tests: local time at a fixed distance from UTC, real hashes, and a quarantine that
// writes down what it is asked.
#pragma once

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

#include "platform/family_libraries.h"

namespace zendrix::platform {

class MemoryFamily : public FamilyLibraries {
 public:
  struct QuarantineCall {
    bool quarantine = true;  // false for UnquarantineExport
    std::string description;
    friend bool operator==(const QuarantineCall&, const QuarantineCall&) = default;
  };

  // Local time minus UTC.
  std::int32_t offset_seconds = 0;
  // KorvessaIntermediateTypes cannot be found: its calls are refused and not written down.
  bool library_missing = false;
  std::string host_id = "TEST-HOST-ID";
  std::vector<QuarantineCall> quarantine_calls;
  // The same calls with all that came with them.
  std::vector<QuarantineEvent> quarantine_events;
  // What is in quarantine: QuarantineList tells it as it stands here, RestoreExport takes an entry out.
  std::vector<QuarantineEntry> quarantine_entries;
  std::vector<std::string> restore_calls;
  // Products that a host identifier was asked for.
  std::vector<std::string> host_id_calls;
  // What the library writes into the message buffer at the next call; several wait in order. Without one it
  // leaves the buffer as it is.
  void ScriptMessage(std::string message) { messages_.push_back(std::move(message)); }

  LocalTime FromUTC(std::int32_t seconds) override;
  std::int32_t ToUTC(const LocalTime& local) override;
  std::string HashBytes(std::string_view bytes) override;
  Status QuarantineExport(const QuarantineEvent& event, std::string& message) override;
  Status UnquarantineExport(const QuarantineEvent& event, std::string& message) override;
  Result<std::vector<QuarantineEntry>> QuarantineList() override;
  Result<std::vector<QuarantineEntry>> QuarantineListOf(const std::string& alert) override;
  Result<bool> RestoreExport(const std::string& name, std::string& message) override;
  Result<std::string> GetHostIDExport(const std::string& product) override;

 private:
  Status Quarantine(bool quarantine, const QuarantineEvent& event, std::string& message);
  void Answer(std::string& message);

  std::deque<std::string> messages_;
};

}  // namespace zendrix::platform
