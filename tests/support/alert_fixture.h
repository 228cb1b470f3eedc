// A history in memory with the alert logic on top: verbs for tests of the lookup, the renderers and the
// decisions.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "alerts/console_alerts.h"
#include "store/reader.h"
#include "support/console_world.h"

namespace zendrix::test {

class AlertFixture : public ::testing::Test {
 protected:
  static constexpr int kStart = 1795225500;  // 2026-11-21 01:45:00 UTC

  AlertFixture() {
    state_.settings.NormalTop = 90.909088F;
    state_.settings.SuspiciousTop = 95.454544F;
  }

  // One event at `second` seconds behind the start. IDs count from 1 in the order of the calls.
  void Event(int second, const std::string& monitor, const std::string& description,
             const std::string& change = "1", const std::string& reaction = "",
             const std::string& code = "C,1") {
    lines_ += std::to_string(kStart + second) + ",HOST,7," + monitor + "|" + change + "|" + change + "|" +
              description + "|" + reaction + "|" + code + "|0\r\n";
  }
  void Alert(int second, const std::string& description, const std::string& change = "0.99",
             const std::string& code = "AG,5,1") {
    Event(second, "Aggregation", description, change, "", code);
  }
  void Community(int second, const std::string& reaction) {
    Event(second, "Community", "observed", "0", reaction);
  }

  void Load() {
    world_.platform.files.Put(world_.InFolder("KorvessaMonitoring.kvl"), lines_);
    reader_.InitClass(world_.InFolder("KorvessaMonitoring.kvl"));
  }

  // Looks the alert up; the records found, entry 0 first.
  const std::vector<alerts::NotableRecord>& LookUp(int id) {
    alerts_.GetNotableInfo(std::to_string(id));
    return alerts_.context().NotableInfo;
  }
  // The row with this ID, as the list hands it to a decision.
  alerts::ListedAlert Listed(int id) {
    const auto& table = *reader_.EventTable;
    for (store::Bookmark row = 0; row < table.RowCount(); ++row)
      if (table.ID(row) == id)
        return {std::to_string(id), std::string(table.Text(row, store::kDateUTC)),
                std::string(table.Text(row, store::kDateTime))};
    ADD_FAILURE() << "no row " << id;
    return {};
  }
  alerts::NotableRecord& Found(std::size_t index) { return alerts_.context().NotableInfo.at(index); }
  // Contributing events as "Monitor=Description".
  std::vector<std::string> Events() {
    std::vector<std::string> events;
    const auto& all = alerts_.context().NotableInfo;
    for (std::size_t i = 1; i < all.size(); ++i) events.push_back(all[i].Monitor + "=" + all[i].Description);
    return events;
  }

  // Records by hand, for the renderers: the alert, then its events.
  void Have(const alerts::NotableRecord& alert) { alerts_.context().NotableInfo = {alert}; }
  void HaveEvent(const std::string& monitor, const std::string& description, const std::string& reaction,
                 const std::string& change = "1.0000000000000000", int times_observed = 0) {
    alerts::NotableRecord record;
    record.Monitor = monitor;
    record.Description = description;
    record.Reaction = reaction;
    record.Change = change;
    record.TimesObserved = times_observed;
    alerts_.context().NotableInfo.push_back(record);
  }
  static alerts::NotableRecord AnAlert(const std::string& change = "0.9900000000000000") {
    alerts::NotableRecord alert;
    alert.ID = 9;
    alert.DateTime = "11/21/2026 01:45:30 AM";
    alert.Monitor = "Aggregation";
    alert.Change = change;
    return alert;
  }

  std::string Table(const std::string& kind, bool short_form = true,
                    alerts::Purpose purpose = alerts::Purpose::kExact) {
    return alerts_.renderer().GetSummaryTable(kind, short_form, purpose);
  }
  std::string Page(bool short_form = true, alerts::Purpose purpose = alerts::Purpose::kExact) {
    return alerts_.renderer().GetCurrDesc(short_form, purpose);
  }
  std::string MonitorText(std::size_t index, alerts::Purpose purpose = alerts::Purpose::kExact) {
    return alerts_.renderer().GetMonitorDesc(index, purpose);
  }

  zendrix::testing::ConsoleWorld world_;
  core::AppState& state_ = world_.state;
  store::CMkvlf reader_{world_.state, world_.log};
  alerts::ConsoleAlerts alerts_{world_.state, world_.log, [this] { return reader_.EventTable; }};
  std::string lines_;
};

}  // namespace zendrix::test
