// alerts, status, alert, decide, act, checked, link, portal.
#include "alerts/activations.h"
#include "alerts/console_alerts.h"
#include "alerts/links.h"
#include "control/portal.h"
#include "core/text_rules.h"
#include "inspect/commands.h"
#include "inspect/console.h"
#include "inspect/home_console.h"
#include "store/descriptions.h"
#include "store/reader.h"

namespace zendrix::inspect {
namespace {

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

// What the renderers make of the alert looked up last.
Json TextsOf(alerts::ConsoleAlerts& alerts, alerts::Purpose purpose) {
  auto& renderer = alerts.renderer();
  Json page = {{"short", Text(renderer.GetCurrDesc(true, purpose))},
               {"long", Text(renderer.GetCurrDesc(false, purpose))}};
  const auto table = [&](const char* kind) -> Json {
    return {{"short", Text(renderer.GetSummaryTable(kind, true, purpose))},
            {"long", Text(renderer.GetSummaryTable(kind, false, purpose))}};
  };
  Json explanations = Json::array();
  for (std::size_t i = 0; i < alerts.context().NotableInfo.size(); ++i)
    explanations.push_back(Text(renderer.GetMonitorDesc(i, purpose)));
  return {{"GetCurrDesc", std::move(page)},
          {"GetSummaryTable", {{"success", table("success")}, {"failed", table("failed")}}},
          {"GetMonitorDesc", std::move(explanations)}};
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
  const home::frmNewUI& form = home.form();
  Json items = Json::array();
  for (std::size_t i = 0; i < form.alerts.lvAlerts.size(); ++i)
    items.push_back(ItemOf(form.alerts.lvAlerts.at(i)));
  const auto& locale = console.state().seams.locale.Current();
  const bool seen = form.alerts.LastIntrusionTime != 0;
  console.Print({{"items", std::move(items)},
                 {"AlertLevel", form.AlertLevel},
                 {"AttentionPending", form.AttentionPending},
                 {"LastIntrusionTime",
                  seen ? Text(core::ShortDateLongTime(form.alerts.LastIntrusionTime, locale)) : Json("")}});
}

void Status(Console& console, const Words& words) {
  RequireWords(words, 0, 0, "status");
  HomeConsole home(console);
  const home::frmNewUI& form = home.form();
  const home::SummaryPane& pane = form.summary;
  console.Print({{"AlertLevel", form.AlertLevel},
                 {"AgentLevel", form.AgentLevel},
                 {"EmailStatus", pane.shown.email},
                 {"OverallLevel", pane.OverallLevel},
                 {"OSRiskLevel", Text(pane.OSRiskLevel.caption.Get())},
                 {"icStatus", Text(pane.icStatus.caption.Get())},
                 {"icMore", pane.icMore.visible ? Text(pane.icMore.caption.Get()) : Json(nullptr)},
                 {"StatusAction", pane.StatusAction},
                 {"icEventCount", Text(pane.icEventCount.caption.Get())},
                 {"icAlertCount", Text(pane.icAlertCount.caption.Get())},
                 {"icDate", Text(pane.icDate.caption.Get())}});
}

void Alert(Console& console, const Words& words) {
  RequireWords(words, 1, 1, "alert ID");
  HomeConsole home(console);
  home.Row(words[0]);
  // A look at one row by itself: the list that the start has built leaves nothing in it.
  alerts::ConsoleAlerts alone(console.state(), console.log(), [&home] { return home.gKvlF().EventTable; });
  alone.GetNotableInfo(words[0]);
  const auto& context = alone.context();
  Json records = Json::array();
  for (const auto& record : context.NotableInfo) records.push_back(RecordOf(record));
  Json document = {{"NotableInfo", std::move(records)},
                   {"FirstEventDateTime", Text(context.FirstEventDateTime)},
                   {"FirstEventDateUTC", Text(context.FirstEventDateUTC)}};
  document.update(TextsOf(alone, alerts::Purpose::kExact));
  document["shown"] = TextsOf(alone, alerts::Purpose::kShown);
  console.Print(std::move(document));
}

void Decide(Console& console, const Words& words) {
  RequireWords(words, 2, 2, "decide ID block|allow");
  if (words[1] != "block" && words[1] != "allow") throw WrongUsage("decide: say block or allow");
  HomeConsole home(console);
  const std::string tag = home.Click(words[0]);
  (words[1] == "block" ? home.form().alerts.mPopRAbnormal : home.form().alerts.mPopRNormal).clicked.Raise();
  const auto decision = home.alerts().Decision(tag);
  console.Print(
      {{"activations", ActivationsOf(console)}, {"decision", decision ? Text(*decision) : Json(nullptr)}});
}

void Act(Console& console, const Words& words) {
  RequireWords(words, 2, 2, "act ID do|undo");
  if (words[1] != "do" && words[1] != "undo") throw WrongUsage("act: say do or undo");
  HomeConsole home(console);
  home.Click(words[0]);
  const auto& page = home.form().alerts.sDesc;
  page.BeforeNavigate("about:" + words[1], page.subject());
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
  const auto anchor = alerts::GetLink(console.state(), console.log(), alerts::Purpose::kExact,
                                      platform::BytesFromUtf8(words[0]), platform::BytesFromUtf8(words[1]));
  console.Print({{"anchor", Text(anchor.Finish())}});
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
    widgets::Screen screen;
    control::GuardedPortalUrl(console.state(), console.log(), screen, request, url);
    return console.Print({{"url", url.empty() ? Json(nullptr) : Text(url)}});
  }
  throw WrongUsage("portal: say feedback, support, newver, survey or tour");
}

}  // namespace zendrix::inspect
