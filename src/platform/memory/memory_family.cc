#include "platform/memory/memory_family.h"

#include <array>
#include <chrono>

#include "family/korvessa_crypto_services.h"

namespace zendrix::platform {
namespace {

Error NoLibrary() {
  return {ErrorKind::kNotFound, "KorvessaIntermediateTypes: no such library"};
}

}  // namespace

// The calendar comes from the standard library, so that it checks the real library's own arithmetic in tests.
LocalTime MemoryFamily::FromUTC(std::int32_t seconds) {
  using namespace std::chrono;
  const sys_seconds local{std::chrono::seconds(std::int64_t{seconds} + offset_seconds)};
  const sys_days day = floor<days>(local);
  const year_month_day date{day};
  const hh_mm_ss time{local - day};
  return {static_cast<std::int32_t>(static_cast<unsigned>(date.day())),
          static_cast<std::int32_t>(static_cast<unsigned>(date.month())),
          static_cast<int>(date.year()),
          static_cast<std::int32_t>(time.hours().count()),
          static_cast<std::int32_t>(time.minutes().count()),
          static_cast<std::int32_t>(time.seconds().count())};
}

std::int32_t MemoryFamily::ToUTC(const LocalTime& local) {
  using namespace std::chrono;
  const sys_days month = year{local.year} / std::chrono::month(static_cast<unsigned>(local.month)) / 1;
  const std::int64_t days = month.time_since_epoch().count() + local.day - 1;
  return static_cast<std::int32_t>(days * 86400 + std::int64_t{local.hour} * 3600 + local.minute * 60 +
                                   local.second - offset_seconds);
}

std::string MemoryFamily::HashBytes(std::string_view bytes) {
  std::array<char, 65> text{};
  family::HashBytes(bytes.data(), bytes.size(), text.data(), static_cast<std::int32_t>(text.size()));
  return text.data();
}

void MemoryFamily::Answer(std::string& message) {
  if (messages_.empty()) return;
  // The library's buffer has 256 characters and ends its text with a NUL; what lies behind it stays.
  const std::string text = messages_.front().substr(0, 255) + '\0';
  messages_.pop_front();
  message.resize(256, ' ');
  message.replace(0, text.size(), text);
}

Status MemoryFamily::Quarantine(bool quarantine, const QuarantineEvent& event, std::string& message) {
  if (library_missing) return NoLibrary();
  quarantine_calls.push_back({quarantine, event.description});
  quarantine_events.push_back(event);
  Answer(message);
  return Done{};
}

Status MemoryFamily::QuarantineExport(const QuarantineEvent& event, std::string& message) {
  return Quarantine(true, event, message);
}

Status MemoryFamily::UnquarantineExport(const QuarantineEvent& event, std::string& message) {
  return Quarantine(false, event, message);
}

Result<std::vector<QuarantineEntry>> MemoryFamily::QuarantineList() {
  if (library_missing) return NoLibrary();
  return quarantine_entries;
}

Result<std::vector<QuarantineEntry>> MemoryFamily::QuarantineListOf(const std::string& alert) {
  if (library_missing) return NoLibrary();
  return EntriesOf(alert, quarantine_entries);
}

Result<bool> MemoryFamily::RestoreExport(const std::string& name, std::string& message) {
  if (library_missing) return NoLibrary();
  restore_calls.push_back(name);
  Answer(message);
  return std::erase_if(quarantine_entries, [&](const auto& entry) { return entry.name == name; }) > 0;
}

Result<std::string> MemoryFamily::GetHostIDExport(const std::string& product) {
  if (library_missing) return NoLibrary();
  host_id_calls.push_back(product);
  return host_id;
}

}  // namespace zendrix::platform
