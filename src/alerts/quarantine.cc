#include "alerts/quarantine.h"

#include <algorithm>
#include <utility>

namespace zendrix::alerts {
namespace {

constexpr std::size_t kRestoreMessageSize = 256;
constexpr char kUnreadable[] = "The quarantine cannot be read.";
constexpr char kNoSuchEntry[] = "There is no such entry in quarantine.";

}  // namespace

QuarantineContents ReadQuarantine(platform::FamilyLibraries& family) {
  auto listed = family.QuarantineList();
  if (!listed) return {{}, listed.error().text.empty() ? kUnreadable : listed.error().text};
  return {std::move(listed).value(), {}};
}

RestoreOutcome RestoreFromQuarantine(platform::FamilyLibraries& family, const std::string& name) {
  const QuarantineContents contents = ReadQuarantine(family);
  if (!contents.failure.empty()) return {false, {}, contents.failure};
  const auto entry = std::find_if(contents.entries.begin(), contents.entries.end(),
                                  [&](const auto& one) { return one.name == name; });
  if (entry == contents.entries.end()) return {false, {}, kNoSuchEntry};
  std::string message(kRestoreMessageSize, ' ');
  const auto restored = family.RestoreExport(name, message);
  if (!restored) return {false, entry->path, restored.error().text};
  // A message that the library did not end is not told at all.
  const std::size_t end = message.find('\0');
  return {restored.value(), entry->path, end == std::string::npos ? std::string() : message.substr(0, end)};
}

}  // namespace zendrix::alerts
