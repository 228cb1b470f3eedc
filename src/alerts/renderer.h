// Renders the alert last looked up to HTML: the whole alert (GetCurrDesc), what the Agent's reaction did
// about each event (GetSummaryTable), and one event for the wizard (GetMonitorDesc). Only texts are built; no
// browser is touched.
//
// Every renderer gives its text for a purpose: exact to the character as callers and tests know it, or
// escaped to be shown on a page (see marked_text.h).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "alerts/marked_text.h"
#include "alerts/notable_info.h"
#include "core/app_state.h"
#include "core/error_log.h"

namespace zendrix::alerts {

class Renderer {
 public:
  Renderer(const core::AppState& state, core::ErrorLog& log, AlertContext& context)
      : state_(state), log_(log), context_(context) {}

  // The explanation of the whole alert: short for the details pane, long for the wizard. Empty when there is
  // no template for it. Leaves the alert's date and time in the context. A failure is logged under
  // "EventUtils:GetCurrDesc" and the result is empty; one of a table in it leaves that table out without a
  // word, one of a link its link, with a line under "EventUtils:GetLink".
  std::string GetCurrDesc(bool short_form, Purpose purpose);

  // Rows of the events that were blocked ("success") or could not be ("failed"); empty when no row qualifies
  // or something fails.
  std::string GetSummaryTable(std::string_view kind, bool short_form, Purpose purpose);

  // The wizard's explanation of one entry; empty when there is no text for its monitor or something fails.
  // When the whole alert in it fails, "Description Not Available" stands there; where the link does, its
  // placeholder stays. Uses the time that the last GetCurrDesc left.
  std::string GetMonitorDesc(std::size_t index, Purpose purpose);

 private:
  const core::AppState& state_;
  core::ErrorLog& log_;
  AlertContext& context_;
};

}  // namespace zendrix::alerts
