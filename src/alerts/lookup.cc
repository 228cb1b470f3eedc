#include "alerts/lookup.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <string_view>

#include "core/date_rules.h"
#include "core/guards.h"
#include "core/moments.h"
#include "core/number_rules.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"
#include "core/tokens.h"

namespace zendrix::alerts {
namespace {

constexpr int kScannedRows = 31;
constexpr double kCommunitySeconds = 10;
constexpr double kSecondsPerDay = 86400;

class Lookup {
 public:
  Lookup(core::AppState& state, store::EventTable& table, AlertContext& context)
      : state_(state), cursor_(table.cursor()), context_(context) {}

  void Run(const std::string& id) {
    rows_.MoveFirst();
    context_.FirstEventDateTime = rows_.Text(store::kDateTime);
    context_.FirstEventDateUTC = rows_.Text(store::kDateUTC);
    rows_.Find("ID = '" + id + "' ", 0, store::Direction::kForward);
    if (rows_.Eof()) return;
    FillAlert();
    const auto parts = core::Split(alert().Description, ";");
    if (parts.size() >= 2) {
      FollowPairs();
    } else {
      ScanBackward();
    }
  }

 private:
  NotableRecord& alert() { return context_.NotableInfo.front(); }

  // The columns that every entry takes from the present row.
  void FillColumns(NotableRecord& record) {
    record.ID = core::RoundToInt(rows_.ID());
    record.DateTime = rows_.Text(store::kDateTime);
    record.Original = rows_.Text(store::kOriginal);
    record.Change = rows_.Text(store::kChange);
    record.Monitor = rows_.Text(store::kMonitor);
    record.Description = rows_.Text(store::kDescription);
  }

  void FillAlert() {
    FillColumns(alert());
    alert().DateUTC = rows_.Text(store::kDateUTC);
    alert().Reaction = rows_.Text(store::kReaction);
  }

  // For descriptions that are no list of pairs: each monitor named in the description contributes its nearest
  // event.
  void ScanBackward() {
    const std::string description = alert().Description;
    rows_.MovePrevious();
    for (int looked_at = 0; looked_at < kScannedRows && !rows_.Bof(); ++looked_at, rows_.MovePrevious()) {
      const std::string_view monitor = rows_.Text(store::kMonitor);
      if (description.empty() || !core::Contains(description, monitor) || HasMonitor(monitor)) continue;
      context_.NotableInfo.emplace_back();
      FillColumns(context_.NotableInfo.back());
      CountEarlier(context_.NotableInfo.back());
    }
  }

  bool HasMonitor(std::string_view monitor) const {
    return std::any_of(context_.NotableInfo.begin(), context_.NotableInfo.end(),
                       [&](const NotableRecord& record) { return record.Monitor == monitor; });
  }

  void FollowPairs() {
    const store::Bookmark alert_row = rows_.bookmark();
    const std::string reaction = CommunityReaction();
    rows_.GoTo(alert_row);
    const std::string description = alert().Description;
    for (const std::string_view part : core::Split(description, ";")) {
      const auto equals = part.find('=');
      if (equals == std::string_view::npos) continue;
      if (FindEvent(part.substr(0, equals), part.substr(equals + 1))) {
        context_.NotableInfo.emplace_back();
        NotableRecord& record = context_.NotableInfo.back();
        FillColumns(record);
        record.DateUTC = rows_.Text(store::kDateUTC);
        record.Reaction = core::TokenValue(reaction, record.Monitor);
        CountEarlier(record);
      }
      rows_.GoTo(alert_row);
    }
  }

  // What the Agent reports of its own reaction: the first Community row behind the alert, if it is near
  // enough to be this alert's.
  std::string CommunityReaction() {
    rows_.Find("Monitor = 'Community' ", 1, store::Direction::kForward);
    if (rows_.Eof()) return "";
    const double days = MomentOf(alert().DateTime) - MomentOf(rows_.Text(store::kDateTime));
    if (std::round(std::abs(days) * kSecondsPerDay) > kCommunitySeconds) return "";
    return std::string(rows_.Text(store::kReaction));
  }

  core::Date MomentOf(std::string_view text) {
    const int year = core::LocalTimeOf(core::Now(state_.seams.clock, state_.seams.family)).year;
    const auto moment = core::ReadDate(text, state_.seams.locale.Current(), year);
    if (!moment) core::Raise(core::kTypeMismatch);
    return *moment;
  }

  // Moves to the newest row before the alert with this description and monitor.
  bool FindEvent(std::string_view monitor, std::string_view description) {
    const std::string criterion = "Description = '" + std::string(description) + "' ";
    do {
      rows_.Find(criterion, 1, store::Direction::kBackward);
    } while (!rows_.Bof() && rows_.Text(store::kMonitor) != monitor);
    return !rows_.Bof();
  }

  void CountEarlier(NotableRecord& record) {
    store::EventCursor earlier = rows_.Clone();
    record.TimesObserved = 0;
    earlier.SetFilter("Description = '" + record.Description + "' AND DateUTC < '" +
                      std::string(rows_.Text(store::kDateUTC)) + "' AND Change = '" + record.Change + "' ");
    record.TimesObserved = static_cast<std::int32_t>(earlier.RecordCount());
  }

  core::AppState& state_;
  const std::shared_ptr<store::EventCursor> cursor_;
  store::EventCursor& rows_ = *cursor_;
  AlertContext& context_;
};

}  // namespace

void GetNotableInfo(core::AppState& state, core::ErrorLog& log, store::EventTable* table,
                    const std::string& id, AlertContext& context) {
  context.Reset();
  const auto error = core::ErrorOf([&] {
    if (!table) core::Raise(core::kObjectNotSet);
    Lookup(state, *table, context).Run(id);
  });
  if (error)
    log.WriteLog("EventUtils:GetNotableInfo",
                 "Error retrieving Alert details. '" + context.NotableInfo.back().Description + "' ");
  if (table && table->RowCount() > 0) table->cursor()->MoveFirst();
}

}  // namespace zendrix::alerts
