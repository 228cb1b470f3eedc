// grid filter, find, replay, state, slots: the units of the Administrator's window, by their own controls.
#include <algorithm>
#include <charconv>

#include "admin/displayed_monitors.h"
#include "core/letter_case.h"
#include "inspect/admin_console.h"
#include "inspect/grid_commands.h"
#include "platform/windows_1252.h"

namespace zendrix::inspect {
namespace {

// The value of an option that is a number in these bounds.
int NumberOf(const GridWords& words, const std::string& option, int otherwise, int least, int most) {
  const auto text = words.Value(option);
  if (!text) return otherwise;
  int number = 0;
  const auto [end, error] = std::from_chars(text->data(), text->data() + text->size(), number);
  if (error != std::errc() || end != text->data() + text->size() || number < least || number > most)
    throw WrongUsage("grid: " + option + " is a number from " + std::to_string(least) + " to " +
                     std::to_string(most));
  return number;
}

// An entry that the list does not have is chosen as if it had it.
void ChooseIn(widgets::ComboBox& list, const std::string& text) {
  list.Open();
  std::vector<widgets::ComboBox::Entry> entries = list.entries();
  auto wanted = std::find_if(entries.begin(), entries.end(),
                             [&](const auto& entry) { return core::EqualNoCase(entry.text, text); });
  const int index = static_cast<int>(wanted - entries.begin());
  if (wanted == entries.end()) {
    entries.push_back({text});
    list.Fill(std::move(entries));
  }
  list.Choose(index);
}

void ChooseDate(admin::frmFilters& dialog, widgets::DateTimeBox& box, const std::string& text) {
  const auto moment = dialog.Query().ReadMoment(text);
  if (!moment) throw WrongUsage("grid filter: " + text + " is no date and time");
  box.Pick(*moment);
}

Json CursorOf(const admin::frmMain& form) {
  Json related = Json::object();
  const auto& monitors = form.app.settings.MonitorStates;
  for (std::size_t i = 0; i < std::min(monitors.size(), form.replay.RelatedRow.size()); ++i)
    if (form.replay.RelatedRow[i] != 0)
      related[platform::Utf8FromBytes(monitors[i].first)] = form.replay.RelatedRow[i];
  return {{"CurrentRow", form.replay.CurrentRow}, {"RelatedRow", std::move(related)}};
}

// As somebody who points at the row.
void ClickRow(admin::frmMain& form, int row) {
  form.EventList.Row = row;
  form.EventList.row_clicked.Raise(row);
}

Json SlotsOf(const std::vector<std::string>& monitors, const admin::SlotTable& table) {
  Json all = Json::array();
  for (std::size_t i = 0; i < std::min(monitors.size(), table.size()); ++i) {
    Json slots = Json::array();
    for (const auto& value : table[i]) slots.push_back(value ? Json(*value) : Json(nullptr));
    all.push_back({{"monitor", Text(monitors[i])}, {"slots", std::move(slots)}});
  }
  return all;
}

Json TableOf(const widgets::ChartTable& chart) {
  Json rows = Json::array();
  for (std::size_t i = 0; i < chart.labels.size(); ++i) {
    Json row = Json::array({Text(chart.labels[i])});
    for (const widgets::ChartSeries& series : chart.series)
      row.push_back(i < series.values.size() && series.values[i] ? Json(*series.values[i]) : Json(nullptr));
    rows.push_back(std::move(row));
  }
  return rows;
}

}  // namespace

void GridFilterRows(Console& console, const GridWords& words) {
  RequireWords(words.plain(), 0, 0,
               "grid filter [--host H] [--monitor M] [--change C] [--desc D] [--from T] [--to T]");
  AdminConsole administrator(console, words.file());
  admin::frmMain& form = administrator.form();
  form.filter.MnTQuery.clicked.Raise();
  admin::frmFilters& dialog = *form.filter.OpenDialog();
  const auto bytes = [&](const char* option) { return platform::BytesFromUtf8(*words.Value(option)); };
  if (words.Has("--host")) ChooseIn(dialog.HostCombo, bytes("--host"));
  if (words.Has("--monitor")) ChooseIn(dialog.MonitorCombo, bytes("--monitor"));
  if (words.Has("--change")) ChooseIn(dialog.ChangeCombo, bytes("--change"));
  if (words.Has("--desc")) dialog.Desc.Edit(bytes("--desc"));
  if (words.Has("--from")) ChooseDate(dialog, dialog.FromDate, bytes("--from"));
  if (words.Has("--to")) ChooseDate(dialog, dialog.ToDate, bytes("--to"));
  dialog.Apply.clicked.Raise();
  console.Print({{"order", OrderOf(form.filter.FEvnList)}, {"RecCnt", Text(form.RecCnt.text.Get())}});
}

void GridFindText(Console& console, const GridWords& words) {
  RequireWords(words.plain(), 1, 1, "grid find TEXT [--match-case] [--times N]");
  const int times = NumberOf(words, "--times", 1, 1, 1'000'000);
  AdminConsole administrator(console, words.file());
  admin::frmMain& form = administrator.form();
  // Opened and closed at once; it stays loaded, and the search goes on without it.
  form.find.MnEFind.clicked.Raise();
  admin::frmFind& dialog = *form.find.Dialog();
  dialog.txtFind.Edit(platform::BytesFromUtf8(words.plain()[0]));
  dialog.MatchC.checked = words.Has("--match-case");
  Json hits = Json::array();
  for (int i = 0; i < times; ++i) {
    form.find.MnEFindN.clicked.Raise();
    // A search that misses begins anew at the first character.
    hits.push_back(dialog.FindPos > 1 ? Json::array({dialog.FindRow, dialog.FindCol}) : Json(nullptr));
  }
  console.Print({{"hits", std::move(hits)}});
}

void GridReplay(Console& console, const GridWords& words) {
  AdminConsole administrator(console, words.file());
  admin::frmMain& form = administrator.form();
  const std::string click = "row:";
  Json steps = Json::array({CursorOf(form)});
  for (const std::string& step : words.plain()) {
    if (step.starts_with(click)) {
      ClickRow(form, administrator.Row(step.substr(click.size())));
    } else {
      auto& replay = form.replay;
      widgets::MenuItem* const keys[] = {&replay.TbarPrev, &replay.TbarBack, &replay.TbarStep,
                                         &replay.TbarNxt, &replay.TbarNotable};
      const auto key = std::find_if(std::begin(keys), std::end(keys),
                                    [&](const widgets::MenuItem* item) { return item->name() == step; });
      if (key == std::end(keys))
        throw WrongUsage("grid replay: a step is Prev, Back, Step, Nxt, Notable or row:N");
      (*key)->clicked.Raise();
    }
    steps.push_back(CursorOf(form));
  }
  console.Print({{"steps", std::move(steps)}});
}

void GridState(Console& console, const GridWords& words) {
  RequireWords(words.plain(), 1, 1, "grid state ROW");
  AdminConsole administrator(console, words.file());
  admin::frmMain& form = administrator.form();
  ClickRow(form, administrator.Row(words.plain()[0]));
  const widgets::Tree& tree = form.replay.tvVCR;
  Json monitors = Json::array();
  for (const widgets::Tree::Branch& branch : tree.branches()) {
    Json items = Json::array();
    for (std::size_t i = 0; i < branch.items.count; ++i) items.push_back(Text(branch.items.text(i)));
    monitors.push_back({{"name", Text(branch.text)}, {"items", std::move(items)}});
  }
  console.Print({{"root", Text(tree.root())}, {"monitors", std::move(monitors)}});
}

void GridSlots(Console& console, const GridWords& words) {
  RequireWords(words.plain(), 0, 0, "grid slots [--nslots N] [--tslots T] [--tchart D|T]");
  const int nslots = NumberOf(words, "--nslots", 0, 1, 50);
  const int tslots = NumberOf(words, "--tslots", 0, 0, 255);
  const auto tchart = words.Value("--tchart");
  if (tchart && *tchart != "D" && *tchart != "T") throw WrongUsage("grid slots: --tchart is D or T");
  AdminConsole administrator(console, words.file());
  admin::frmMain& form = administrator.form();
  settings::RegIni& reg_ini = form.reg_ini;
  if (words.Has("--nslots")) reg_ini.SaveSettingHashed("Tline", "Nslots", std::to_string(nslots));
  if (words.Has("--tslots")) reg_ini.SaveSettingHashed("Tline", "TSlots", std::to_string(tslots));
  if (tchart) reg_ini.SaveSettingHashed("Tline", "TCHart", *tchart);
  form.timeline.FillMiniChart();
  form.timeline.DrawMiniChart();
  const admin::TimeSlots& slots = form.timeline.time_slots();
  const std::vector<std::string> monitors = admin::DisplayedMonitors(form.app.settings);
  Json labels = Json::array();
  for (const std::string& label : slots.SlotLabels) labels.push_back(Text(label));
  console.Print({{"SlotCounts", SlotsOf(monitors, slots.SlotCounts)},
                 {"SlotTotals", SlotsOf(monitors, slots.SlotTotals)},
                 {"SlotLabels", std::move(labels)},
                 {"chart", TableOf(form.timeline.Chrt.table)}});
}

}  // namespace zendrix::inspect
