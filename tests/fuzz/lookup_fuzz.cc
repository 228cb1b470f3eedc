// Every row of any history can be looked up: what is found are rows before the alert, as the table holds
// them, and the table's own cursor is back on the first row. An input is a monitoring file.
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "support/fuzzed_alerts.h"

using namespace zendrix;
using test::Require;

namespace {

constexpr std::size_t kMostLookups = 40;
constexpr std::size_t kMostScanned = 31;

std::optional<store::Bookmark> RowOf(const store::EventTable& table, int id) {
  for (store::Bookmark row = 0; row < table.RowCount(); ++row)
    if (table.ID(row) == id) return row;
  return std::nullopt;
}

void RequireRow(const store::EventTable& table, store::Bookmark row, const alerts::NotableRecord& record) {
  Require(record.DateTime == table.Text(row, store::kDateTime), "the row's DateTime");
  Require(record.Monitor == table.Text(row, store::kMonitor), "the row's Monitor");
  Require(record.Description == table.Text(row, store::kDescription), "the row's Description");
  Require(record.Change == table.Text(row, store::kChange), "the row's Change");
}

// An entry that a failure left half filled can only be the last one.
void RequireEvents(const store::EventTable& table, store::Bookmark alert_row,
                   const std::vector<alerts::NotableRecord>& records) {
  const bool pairs = records[0].Description.find(';') != std::string::npos;
  Require(pairs || records.size() <= 1 + kMostScanned, "a scan of so many rows");
  for (std::size_t i = 1; i < records.size(); ++i) {
    const auto row = RowOf(table, records[i].ID);
    if (!row && i + 1 == records.size()) return;
    Require(row && *row < alert_row, "an event before the alert");
    RequireRow(table, *row, records[i]);
    Require(records[i].TimesObserved && *records[i].TimesObserved >= 0, "a count of earlier rows");
    Require(pairs == !records[i].DateUTC.empty() || table.Text(*row, store::kDateUTC).empty(),
            "DateUTC of pairs only");
    if (pairs) continue;
    for (std::size_t other = 0; other < i; ++other)
      Require(records[other].Monitor != records[i].Monitor, "one event for each monitor");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  test::FuzzedAlerts console;
  console.Put("KorvessaMonitoring.kvl", {reinterpret_cast<const char*>(data), size});
  if (!console.Load()) return 0;
  store::EventTable& table = console.table();
  for (const std::string& id : console.Ids(kMostLookups)) {
    console.alerts().GetNotableInfo(id);
    const alerts::AlertContext& context = console.alerts().context();
    Require(!context.NotableInfo.empty(), "an entry for the alert");
    Require(context.FirstEventDateUTC == table.Text(0, store::kDateUTC), "the first row's date");
    Require(table.cursor()->bookmark() == 0, "the cursor on the first row");
    const auto row = RowOf(table, std::stoi(id));
    if (std::stoi(id) > INT16_MAX) continue;
    Require(context.NotableInfo[0].ID == std::stoi(id), "the alert's ID");
    RequireRow(table, *row, context.NotableInfo[0]);
    RequireEvents(table, *row, context.NotableInfo);
  }
  console.alerts().GetNotableInfo("no number");
  console.alerts().GetNotableInfo("' OR ID = '1");
  return 0;
}
