#include "alerts/renderer.h"

#include "alerts/current_description.h"
#include "alerts/monitor_description.h"
#include "alerts/summary_table.h"
#include "core/guards.h"

namespace zendrix::alerts {

std::string Renderer::GetCurrDesc(bool short_form, Purpose purpose) {
  std::string page;
  core::OrLog(log_, kCurrentDescriptionPlace,
              [&] { page = CurrentDescription(state_, log_, context_, short_form, purpose).Finish(); });
  return page;
}

std::string Renderer::GetSummaryTable(std::string_view kind, bool short_form, Purpose purpose) {
  std::string page;
  core::OrIgnore([&] { page = SummaryTable(state_, log_, context_, kind, short_form, purpose).Finish(); });
  return page;
}

std::string Renderer::GetMonitorDesc(std::size_t index, Purpose purpose) {
  std::string page;
  core::OrIgnore([&] { page = MonitorDescription(state_, log_, context_, index, purpose).Finish(); });
  return page;
}

}  // namespace zendrix::alerts
