#include "admin/frm_filters.h"

#include <utility>
#include <vector>

#include "admin/event_grid.h"
#include "alerts/monitor_catalogue.h"
#include "core/date_calendar.h"
#include "core/moments.h"
#include "core/text_rules.h"
#include "core/window_helpers.h"

namespace zendrix::admin {
namespace {

// Trying a pattern takes as long as it is times as long as a description is, and that may be millions.
constexpr std::size_t kLongestPattern = 1000;

using Entries = std::vector<widgets::ComboBox::Entry>;

int ChangePicture(const std::string& change) {
  const int picture = alerts::GridPicture(kColChange, change);
  return picture > 0 ? picture : alerts::kGridPictureCount;
}

Entries HostsOf(const store::CUList& list) {
  Entries entries;
  for (const auto& [key, host] : list.ColList())
    if (!core::Trim(host).empty()) entries.push_back({host});
  return entries;
}

// In a file that was saved from the grid monitors begin with the picture's room, which rows do without.
Entries MonitorsOf(const store::CUList& list) {
  Entries entries;
  for (const auto& [key, item] : list.ColList()) {
    const std::string monitor = item.starts_with(kPictureRoom) ? item.substr(kPictureRoom.size()) : item;
    entries.push_back({monitor, alerts::GetImgNumH3(monitor)});
  }
  return entries;
}

Entries ChangesOf(const store::CUList& list) {
  Entries entries;
  for (const auto& [key, change] : list.ColList()) entries.push_back({change, ChangePicture(change)});
  return entries;
}

}  // namespace

frmFilters::frmFilters(FiltersNeeds needs) : Form(needs.state.forms, "frmFilters"), needs_(std::move(needs)) {
  title = "Filter Events";
  Apply.tip = "Show Only Filtered Events";
  Apply.enabled = false;
  Desc.most = kLongestPattern;
  ConnectControls();
}

void frmFilters::ConnectControls() {
  HostCombo.opened.ConnectForever([this] { HostCombo.Fill(HostsOf(needs_.GridHostList)); });
  MonitorCombo.opened.ConnectForever([this] { MonitorCombo.Fill(MonitorsOf(needs_.GridMonitorList)); });
  ChangeCombo.opened.ConnectForever([this] { ChangeCombo.Fill(ChangesOf(needs_.GridChangeList)); });
  const auto can_apply = [this] { Apply.enabled = true; };
  for (widgets::ComboBox* list : {&HostCombo, &MonitorCombo, &ChangeCombo})
    list->chosen.ConnectForever(can_apply);
  Desc.text.changed.ConnectForever(can_apply);
  const auto count = [this] { ++criteria_number_; };
  for (auto* changed : {&HostCombo.changed, &MonitorCombo.changed, &ChangeCombo.changed, &Desc.text.changed,
                        &FromDate.moment.changed, &ToDate.moment.changed})
    changed->ConnectForever(count);
  for (widgets::DateTimeBox* date : {&FromDate, &ToDate}) {
    date->moment.changed.ConnectForever(can_apply);
    date->proposal = [this] { return Now(); };
  }
  Apply.clicked.ConnectForever([this] { Apply_Click(); });
  ResetCommand.clicked.ConnectForever([this] { ResetCommand_Click(); });
}

void frmFilters::OnLoad() {
  const platform::LocaleInfo& locale = needs_.state.seams.locale.Current();
  for (widgets::DateTimeBox* date : {&FromDate, &ToDate})
    date->picture = locale.short_date + " " + locale.time;
  core::CentreForm(*this);
}

std::int64_t frmFilters::Now() const {
  platform::Seams& seams = needs_.state.seams;
  return core::WallSeconds(core::LocalTimeOf(core::Now(seams.clock, seams.family)));
}

FilterCriteria frmFilters::Criteria() const {
  FilterCriteria criteria;
  if (HostCombo.index() >= 0) criteria.host = HostCombo.text();
  criteria.monitor = MonitorCombo.text();
  criteria.change = ChangeCombo.text();
  criteria.description = Desc.text;
  criteria.from = FromDate.moment;
  criteria.to = ToDate.moment;
  return criteria;
}

FilterQuery frmFilters::Query() {
  FilterCriteria criteria = Criteria();
  criteria.CompleteDates();
  FromDate.moment = criteria.from;
  ToDate.moment = criteria.to;
  return {std::move(criteria), needs_.state.seams.locale.Current(), core::WallTime(Now()).year};
}

bool frmFilters::CheckQuery(const RowValues& row) {
  return Query().CheckQuery(row);
}

void frmFilters::ResetFilters() {
  for (widgets::ComboBox* list : {&HostCombo, &MonitorCombo, &ChangeCombo}) list->Clear();
  Desc.text = "";
  FromDate.Empty();
  ToDate.Empty();
}

void frmFilters::Apply_Click() {
  if (!enabled || !Apply.enabled) return;
  if (!SelQry()) return needs_.screen.beep.Raise();
  state = widgets::WindowState::kMinimised;
  needs_.ApplyFilter();
}

void frmFilters::OnUnload() {
  ResetFilters();
  needs_.ResetFilterItems();
  needs_.RestoreGrids();
}

}  // namespace zendrix::admin
