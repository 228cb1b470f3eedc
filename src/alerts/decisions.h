// The user's answers to an alert. The list's context menu files the decision and marks the list, and touches
// no item; the page's own command acts on the contributing items, files the decision, and leaves the mark
// alone.
#pragma once

#include <functional>
#include <string>

#include "alerts/answer.h"
#include "alerts/checked_alerts.h"
#include "alerts/notable_info.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "store/event_table.h"

namespace zendrix::alerts {

class Decisions {
 public:
  Decisions(core::AppState& state, core::ErrorLog& log, AlertContext& context, CheckedAlerts& checked)
      : state_(state), log_(log), context_(context), checked_(checked) {}

  // The context menu, for the item with this text and tag (the alert's DateUTC), whose alert was looked up
  // last: asks, and on Yes files and marks it. Returns whether the user said Yes.
  bool FromMenu(Answer answer, store::EventTable* table, const std::string& item_text,
                const std::string& tag);

  // The page's command: "do" (Block) or "undo" (Allow). Calls the quarantine for each event that it fits,
  // shows what came of it, and files the decision.
  void FromPage(Answer answer, store::EventTable* table);

 private:
  std::string ActOn(const NotableRecord& record, Answer answer);

  core::AppState& state_;
  core::ErrorLog& log_;
  AlertContext& context_;
  CheckedAlerts& checked_;
};

// A command word at the end of an "about:" address of the details page.
enum class PageCommand { kNone, kUndo, kDo, kShowHide };
PageCommand PageCommandOf(std::string_view url);

}  // namespace zendrix::alerts
