// The user's answers to an alert. The list's context menu files the decision and marks the list, and touches
// no item; the page's own command acts on the contributing items, files the decision, and leaves the mark
// alone.
//
// A decision is about the alert that it is given and no other. The alert is looked up directly before
// anything is done, its records are copied before a box opens, and behind a box the event table is fetched
// anew: while a box is open another alert may be looked up and the file replaced.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "alerts/alert_services.h"
#include "alerts/answer.h"
#include "alerts/checked_alerts.h"
#include "alerts/notable_info.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "store/event_table.h"

namespace zendrix::alerts {

// Gives the event table of the moment, or null; the reader replaces it when the file was replaced.
using TableSource = std::function<std::shared_ptr<store::EventTable>()>;

class Decisions {
 public:
  // `context` takes the lookups.
  Decisions(core::AppState& state, core::ErrorLog& log, TableSource table, AlertContext& context,
            CheckedAlerts& checked)
      : state_(state), log_(log), table_(std::move(table)), context_(context), checked_(checked) {}

  // The context menu: asks, and on Yes files and marks. Returns whether the user said Yes. An alert that is
  // not in the table any more is marked, and nothing is filed. An Allow offers back what is in quarantine for
  // the alert.
  bool FromMenu(Answer answer, const ListedAlert& alert);

  // The page's command: "do" (Block) or "undo" (Allow). Calls the quarantine for each event that it fits,
  // shows what came of it, and files the decision; of an alert that is not in the table any more no item is
  // acted on and nothing is filed. An Allow then offers back what is still in quarantine for the alert.
  void FromPage(Answer answer, const ListedAlert& alert);

 private:
  AlertContext LookUp(const ListedAlert& alert);
  std::string ActOn(const NotableRecord& record, const ListedAlert& alert, Answer answer);
  void OfferBack(const ListedAlert& alert, const std::vector<NotableRecord>& events);
  void File(Answer answer, const AlertContext& records);

  core::AppState& state_;
  core::ErrorLog& log_;
  TableSource table_;
  AlertContext& context_;
  CheckedAlerts& checked_;
};

// A command word at the end of an "about:" address of the details page.
enum class PageCommand { kNone, kUndo, kDo, kShowHide };
PageCommand PageCommandOf(std::string_view url);

}  // namespace zendrix::alerts
