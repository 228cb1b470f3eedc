// alerts, alert, decide, act, checked, link, portal.
#include <charconv>

#include "alerts/activations.h"
#include "alerts/console_alerts.h"
#include "alerts/links.h"
#include "control/portal.h"
#include "core/text_rules.h"
#include "home/frm_new_ui.h"
#include "inspect/commands.h"
#include "inspect/console.h"
#include "store/descriptions.h"
#include "store/reader.h"

namespace zendrix::inspect {
namespace {

// The Home console up to its open window, step for step as the executable starts it.
class HomeConsole {
 public:
  explicit HomeConsole(Console& console)
      : console_(console),
        reg_ini_(console.state(), console.log()),
        agent_(console.state(), screen_),
        reader_(console.state(), console.log()),
        alerts_(console.state(), console.log(), [this] { return reader_.EventTable.get(); }) {
    auto& state = console.state();
    reg_ini_.ReadRegInfo();
    store::LoadDescArrays(state, console.log());
    reader_.InitClass(platform::JoinPath(state.ProgramFolder, "KorvessaMonitoring.kvl"));
    for (const auto& monitor : reader_.MonitorList.ColList())
      reg_ini_.SaveSetwChk("Monitors", monitor.item, "1");
    reg_ini_.ReadRegInfo();
  }

  alerts::ConsoleAlerts& alerts() { return alerts_; }
  store::EventTable* table() { return reader_.EventTable.get(); }

  home::frmNewUI& Open() {
    form_ = std::make_unique<home::frmNewUI>(home::HomeParts{
        console_.state(), console_.log(), reader_, reg_ini_, agent_, screen_, alerts_, home::HomeServices{}});
    form_->Form_Load();
    return *form_;
  }

  // Looks up the row with this ID as an alert; there must be such a row.
  store::Bookmark LookUp(const std::string& id) {
    std::int32_t number = 0;
    const auto [end, error] = std::from_chars(id.data(), id.data() + id.size(), number);
    const bool whole = error == std::errc() && end == id.data() + id.size();
    for (store::Bookmark row = 0; whole && table() && row < table()->RowCount(); ++row) {
      if (table()->ID(row) != number) continue;
      alerts_.GetNotableInfo(id);
      return row;
    }
    throw NoSuchThing("Row " + id + " not found.");
  }

 private:
  Console& console_;
  settings::RegIni reg_ini_;
  widgets::Screen screen_;
  control::AgentControl agent_;
  store::CMkvlf reader_;
  alerts::ConsoleAlerts alerts_;
  std::unique_ptr<home::frmNewUI> form_;
};

Json ItemOf(const widgets::ListRow& row) {
  const auto sub_item = [&](std::size_t i) {
    return i < row.sub_items.size() ? row.sub_items[i] : widgets::SubItem{};
  };
  return {{"Key", Text(row.key)},
          {"Tag", Text(row.tag)},
          {"Time", Text(row.text)},
          {"EventType", Text(sub_item(0).text)},
          {"Status", Text(sub_item(1).text)},
          {"Details", sub_item(2).picture != 0},
          {"images", {row.picture, sub_item(0).picture, sub_item(1).picture, sub_item(2).picture}}};
}

Json RecordOf(const alerts::NotableRecord& record) {
  return {{"ID", record.ID},
          {"DateUTC", Text(record.DateUTC)},
          {"DateTime", Text(record.DateTime)},
          {"Original", Text(record.Original)},
          {"Change", Text(record.Change)},
          {"Monitor", Text(record.Monitor)},
          {"Description", Text(record.Description)},
          {"Reaction", Text(record.Reaction)},
          {"TimesObserved", record.TimesObserved ? Json(*record.TimesObserved) : Json(nullptr)}};
}

Json ActivationsOf(Console& console) {
  auto& files = console.state().seams.files;
  const auto text =
      files.ReadAll(platform::JoinPath(console.state().ProgramFolder, alerts::kActivationsFile));
  Json lines = Json::array();
  if (!text) return lines;
  for (const std::string_view line : core::Lines(text.value())) lines.push_back(Text(line));
  return lines;
}

}  // namespace

void Alerts(Console& console, const Words& words) {
  RequireWords(words, 0, 0, "alerts");
  HomeConsole home(console);
  const home::frmNewUI& form = home.Open();
  Json items = Json::array();
  for (std::size_t i = 0; i < form.lvAlerts.size(); ++i) items.push_back(ItemOf(form.lvAlerts.at(i)));
  const auto& locale = console.state().seams.locale.Current();
  const bool seen = form.LastIntrusionTime != 0;
  console.Print({{"items", std::move(items)},
                 {"AlertLevel", form.AlertLevel},
                 {"AttentionPending", form.AttentionPending},
                 {"LastIntrusionTime",
                  seen ? Text(core::ShortDateLongTime(form.LastIntrusionTime, locale)) : Json("")}});
}

void Alert(Console& console, const Words& words) {
  RequireWords(words, 1, 1, "alert ID");
  HomeConsole home(console);
  home.LookUp(words[0]);
  const auto& context = home.alerts().context();
  auto& renderer = home.alerts().renderer();
  constexpr auto kExact = alerts::Purpose::kExact;
  Json records = Json::array();
  for (const auto& record : context.NotableInfo) records.push_back(RecordOf(record));
  Json page = {{"short", Text(renderer.GetCurrDesc(true, kExact))},
               {"long", Text(renderer.GetCurrDesc(false, kExact))}};
  const auto table = [&](const char* kind) -> Json {
    return {{"short", Text(renderer.GetSummaryTable(kind, true, kExact))},
            {"long", Text(renderer.GetSummaryTable(kind, false, kExact))}};
  };
  Json explanations = Json::array();
  for (std::size_t i = 0; i < context.NotableInfo.size(); ++i)
    explanations.push_back(Text(renderer.GetMonitorDesc(i, kExact)));
  console.Print({{"NotableInfo", std::move(records)},
                 {"FirstEventDateTime", Text(context.FirstEventDateTime)},
                 {"FirstEventDateUTC", Text(context.FirstEventDateUTC)},
                 {"GetCurrDesc", std::move(page)},
                 {"GetSummaryTable", {{"success", table("success")}, {"failed", table("failed")}}},
                 {"GetMonitorDesc", std::move(explanations)}});
}

void Decide(Console& console, const Words& words) {
  RequireWords(words, 2, 2, "decide ID block|allow");
  if (words[1] != "block" && words[1] != "allow") throw WrongUsage("decide: say block or allow");
  HomeConsole home(console);
  home.alerts().LoadChkAlrColl();
  const auto row = home.LookUp(words[0]);
  const std::string tag(home.table()->Text(row, store::kDateUTC));
  home.alerts().DecideFromMenu(words[1] == "block" ? alerts::Answer::kBlock : alerts::Answer::kAllow,
                               std::string(home.table()->Text(row, store::kDateTime)), tag);
  const auto decision = home.alerts().Decision(tag);
  console.Print(
      {{"activations", ActivationsOf(console)}, {"decision", decision ? Text(*decision) : Json(nullptr)}});
}

void Act(Console& console, const Words& words) {
  RequireWords(words, 2, 2, "act ID do|undo");
  if (words[1] != "do" && words[1] != "undo") throw WrongUsage("act: say do or undo");
  HomeConsole home(console);
  home.LookUp(words[0]);
  home.alerts().DecideFromPage(words[1] == "do" ? alerts::Answer::kBlock : alerts::Answer::kAllow);
  console.Print({{"activations", ActivationsOf(console)}});
}

void Checked(Console& console, const Words& words) {
  RequireWords(words, 0, 0, "checked");
  alerts::CheckedAlerts checked;
  alerts::LoadChkAlrColl(console.state(), console.log(), checked);
  Json entries = Json::array();
  for (const auto& entry : checked.entries())
    entries.push_back({{"key", Text(entry.key)}, {"value", Text(entry.value)}});
  console.Print({{"checked", std::move(entries)}});
}

void Link(Console& console, const Words& words) {
  RequireWords(words, 2, 2, "link MONITOR DESCRIPTION");
  store::LoadDescArrays(console.state(), console.log());
  const auto anchor = alerts::GetLink(console.state(), alerts::Purpose::kExact,
                                      platform::BytesFromUtf8(words[0]), platform::BytesFromUtf8(words[1]));
  console.Print({{"anchor", Text(anchor.flat())}});
}

void Portal(Console& console, const Words& words) {
  RequireWords(words, 1, 1, "portal feedback|support|newver|survey|tour");
  using control::PortalRequest;
  const std::vector<std::pair<std::string, PortalRequest>> requests = {{"feedback", PortalRequest::kFeedback},
                                                                       {"support", PortalRequest::kSupport},
                                                                       {"newver", PortalRequest::kNewVersion},
                                                                       {"survey", PortalRequest::kSurvey},
                                                                       {"tour", PortalRequest::kTour}};
  for (const auto& [name, request] : requests) {
    if (name != words[0]) continue;
    store::LoadDescArrays(console.state(), console.log());
    std::string url;
    control::GuardedPortalUrl(console.state(), console.log(), request, url);
    return console.Print({{"url", url.empty() ? Json(nullptr) : Text(url)}});
  }
  throw WrongUsage("portal: say feedback, support, newver, survey or tour");
}

}  // namespace zendrix::inspect
