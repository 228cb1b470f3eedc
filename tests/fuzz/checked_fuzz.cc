// The file of decided alerts: whatever it holds, each entry is a number once, decided one way or the other.
// An input is the file.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "alerts/checked_alerts.h"
#include "core/number_rules.h"
#include "support/fuzzed_alerts.h"

using namespace zendrix;
using test::Require;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  test::FuzzedAlerts console;
  const std::string file(reinterpret_cast<const char*>(data), size);
  console.Put(alerts::kCheckedAlertsFile, file);
  alerts::CheckedAlerts checked;
  checked.Add("left over", "left over");
  alerts::LoadChkAlrColl(console.state(), console.log(), checked);
  const auto& locale = console.state().seams.locale.Current();
  std::size_t lines = 1;
  for (const char character : file) lines += character == '\n';
  Require(checked.entries().size() <= lines, "an entry for each line at most");
  for (const auto& entry : checked.entries()) {
    Require(core::IsNumeric(entry.key, locale), "a numeric key");
    Require(entry.value == entry.key || entry.value == entry.key + "A", "the key, with the mark or alone");
    Require(checked.Find(entry.key) == entry.value, "every key once");
  }
  alerts::CheckedAlerts again;
  alerts::LoadChkAlrColl(console.state(), console.log(), again);
  Require(again.entries().size() == checked.entries().size(), "the same a second time");
  const auto entries = checked.entries();
  for (const auto& entry : entries) {
    checked.MarkBlocked(entry.key);
    Require(checked.Find(entry.key) == entry.key + "A", "blocked");
    checked.MarkAllowed(entry.key);
    Require(checked.Find(entry.key) == entry.key, "allowed");
  }
  Require(checked.entries().size() == entries.size(), "no entry more or less");
  return 0;
}
