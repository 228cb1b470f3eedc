#include "home/logs_pane.h"

#include <utility>

#include "alerts/monitor_catalogue.h"
#include "core/desc_lookup.h"
#include "core/guards.h"
#include "core/moments.h"
#include "core/number_rules.h"
#include "store/log_reader.h"
#include "widgets/wait_pointer.h"

namespace zendrix::home {
namespace {

// Columns of the log's table.
constexpr std::size_t kDateTime = 1, kHost = 2, kDescription = 4;
// Place of the description among a row's further columns.
constexpr std::size_t kDescriptionItem = 1;

}  // namespace

// In what the two logs differ.
struct LogsPane::Log {
  const char* procedure;
  const char* file;
  std::string core::Settings::*mark;  // tag of the newest row that was cleared
  bool& show_all;
  int picture;
};

LogsPane::LogsPane(LogsNeeds needs) : needs_(std::move(needs)) {
  aClearAll.tip = "Mark as deleted";
  aShowAll.tip = "Show also deleted items";
  aAgStatus.checked = true;
  for (widgets::OptionButton* button : {&aAgStatus, &aUIError}) {
    button->checked.changed.ConnectForever([this, button] {
      if (button->checked) ShowSelectedLog();
    });
  }
  aClearAll.clicked.ConnectForever([this] { aClearAll_Click(); });
  aShowAll.clicked.ConnectForever([this] { aShowAll_Click(); });
  alvAgErrLog.item_clicked.ConnectForever(
      [this](widgets::ListView::Slot item) { alvAgErrLog_ItemClick(item); });
}

LogsPane::Log LogsPane::AgentLog() {
  return {"frmNewUI:LoadlvAgErrLog", "KorvessaEventLog.kvl", &core::Settings::ldErlog, ShowAllAgentLog,
          alerts::kPictureAgentLogRow};
}

LogsPane::Log LogsPane::OwnLog() {
  return {"frmNewUI:LoadlvUIErrLog", "KorvessaAdministratorEventLog.kvl", &core::Settings::ldUIErlog,
          ShowAllUILog, alerts::kPictureUiLogRow};
}

LogsPane::Log LogsPane::SelectedLog() {
  return aAgStatus.checked ? AgentLog() : OwnLog();
}

void LogsPane::CreateHeaderlvAgErrLog() {
  alvAgErrLog.columns =
      std::vector<widgets::ListColumn>{{"Time", 0, 2268}, {"Host", 0, 700}, {"Description", 0, 5670}};
}

std::string LogsPane::GeneralText() const {
  return core::DescAt(needs_.state.Desc[0], 3);
}

void LogsPane::FillAgentFra() {
  core::OrLog(needs_.log, "frmNewUI:FillAgentFra", [&] { aDesc.caption = GeneralText(); });
  LoadSelectedLog();
}

void LogsPane::ShowSelectedLog() {
  ClearLogList();
  LoadSelectedLog();
}

void LogsPane::LoadSelectedLog() {
  if (aAgStatus.checked)
    LoadlvAgErrLog();
  else
    LoadlvUIErrLog();
}

void LogsPane::LoadlvAgErrLog() {
  Load(AgentLog());
}

void LogsPane::LoadlvUIErrLog() {
  Load(OwnLog());
}

void LogsPane::Load(const Log& log) {
  needs_.screen.MousePointer = widgets::kPointerHourglass;
  core::OrLog(needs_.log, log.procedure, [&] {
    const widgets::ListBatch batch(alvAgErrLog);
    store::CLog file(needs_.state);
    file.InitClass(platform::JoinPath(needs_.state.ProgramFolder, log.file));
    const auto table = file.table();
    if (!table) return;
    const std::string& mark = needs_.state.settings.*log.mark;
    // The oldest first, so that the newest ends on top. The selected row stays selected.
    for (std::size_t row = table->RowCount(); row-- > 0;) {
      std::string key = "K" + std::to_string(table->ID(row));
      if (alvAgErrLog.Find(key)) continue;
      std::string date_time(table->Text(row, kDateTime));
      std::string utc = UtcOf(date_time);
      const bool is_new = mark.empty() || utc > mark;
      if (!is_new && !log.show_all) continue;
      const auto slot =
          alvAgErrLog.InsertTop(std::move(key), std::move(date_time), log.picture, std::move(utc));
      alvAgErrLog.AddSubItem(*slot, std::string(table->Text(row, kHost)));
      alvAgErrLog.AddSubItem(*slot, std::string(table->Text(row, kDescription)));
      if (!is_new) alvAgErrLog.Ghost(*slot);
    }
  });
  needs_.screen.MousePointer = widgets::kPointerDefault;
}

// A row without a readable date has none: it is older than any mark, and moves none.
std::string LogsPane::UtcOf(const std::string& date_time) const {
  platform::Seams& seams = needs_.state.seams;
  const int year = core::LocalTimeOf(core::Now(seams.clock, seams.family)).year;
  const auto date = core::ReadDate(date_time, seams.locale.Current(), year);
  return date ? core::DateToUTC(*date, seams.family) : std::string();
}

void LogsPane::ClearLogList() {
  alvAgErrLog.Clear();
  core::OrLog(needs_.log, "frmNewUI:ClearLogList", [&] { aDesc.caption = GeneralText(); });
}

void LogsPane::aClearAll_Click() {
  core::OrLog(needs_.log, "frmNewUI:aClearAll_Click", [&] {
    const Log log = SelectedLog();
    log.show_all = false;
    for (std::size_t row = 0; row < alvAgErrLog.size(); ++row) {
      const std::string tag = alvAgErrLog.at(row).tag;
      if (tag.empty()) continue;
      needs_.misc.Set(log.mark, tag);
      break;
    }
  });
  ClearLogList();
  needs_.CheckRiskLevel();
}

void LogsPane::aShowAll_Click() {
  const widgets::WaitPointer wait(needs_.screen);
  SelectedLog().show_all = true;
  LoadSelectedLog();
  needs_.screen.MousePointer = widgets::kPointerHourglass;
  needs_.CheckRiskLevel();
}

void LogsPane::alvAgErrLog_ItemClick(widgets::ListView::Slot item) {
  core::OrLog(needs_.log, "alvAgErrLog_ItemClick", [&] {
    const widgets::ListRow& row = alvAgErrLog.in_slot(item);
    std::string text = GeneralText();
    if (core::Val(row.key.substr(1)) > 0) text += "\r\n\r\n" + row.sub_items.at(kDescriptionItem).text;
    aDesc.caption = text;
  });
}

}  // namespace zendrix::home
