#include "alerts/renderer.h"

#include "alerts/current_description.h"
#include "alerts/monitor_description.h"
#include "alerts/summary_table.h"
#include "core/guards.h"

namespace zendrix::alerts {
namespace {

// A part of a page that cannot be built is left out without a word: the rest of the page still tells the
// alert.
template <class Render>
std::string OrEmpty(Render&& render) {
  try {
    return render().Finish();
  } catch (const core::RunTimeError&) {
    return "";
  }
}

}  // namespace

std::string Renderer::GetCurrDesc(bool short_form, Purpose purpose) {
  MarkedText text(purpose);
  core::OrLog(log_, "EventUtils:GetCurrDesc",
              [&] { text = CurrentDescription(state_, context_, short_form, purpose); });
  return text.Finish();
}

std::string Renderer::GetSummaryTable(std::string_view kind, bool short_form, Purpose purpose) {
  return OrEmpty([&] { return SummaryTable(state_, context_, kind, short_form, purpose); });
}

std::string Renderer::GetMonitorDesc(std::size_t index, Purpose purpose) {
  return OrEmpty([&] { return MonitorDescription(state_, context_, index, purpose); });
}

}  // namespace zendrix::alerts
