#include "alerts/monitor_description.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "alerts/current_description.h"
#include "alerts/links.h"
#include "alerts/templates.h"
#include "core/guards.h"
#include "core/run_time_error.h"

namespace zendrix::alerts {
namespace {

enum class Fill {
  kIcon,
  kWarningIcon,
  kWholeAlert,
  kBeforeColon,
  kBehindColon,
  kBehindBackslash,
  kBehindEquals,
  kDescription,
  kTime,
  kLink,
};

struct Placeholder {
  std::string_view text;
  Fill fill;
};

struct Explanation {
  std::string_view monitor;
  std::string_view image;
  std::vector<Placeholder> placeholders;  // in the order in which they are filled
};

const std::vector<Explanation>& Explanations() {
  static const std::vector<Placeholder> whole_alert = {
      {"&lt;Monitor Analysis Agent Icon&gt;", Fill::kIcon},
      {"&lt;full description from right pane&gt;", Fill::kWholeAlert}};
  static const std::vector<Explanation> explanations = {
      {"Monitoring Agent", "\\Images\\security_agent_48.png", whole_alert},
      {"Community", "\\Images\\bug_red_48.png", whole_alert},
      {"Aggregation", "\\Images\\bug_red_48.png", whole_alert},
      {"TCP Connections",
       "\\Images\\server_client_48.png",
       {{"&lt;port&gt;", Fill::kBehindColon},
        {"&lt;ip address&gt;", Fill::kBeforeColon},
        {"&lt;TCP Connections Icon&gt;", Fill::kIcon},
        {"&lt;important icon&gt;", Fill::kWarningIcon},
        {"&lt;time of alert&gt;", Fill::kTime},
        {"&lt;click here&gt;", Fill::kLink}}},
      {"Running Processes",
       "\\Images\\window_gear_48.png",
       {{"&lt;program&gt;", Fill::kBehindBackslash},
        {"&lt;Running Processes Icon&gt;", Fill::kIcon},
        {"&lt;time of alert&gt;", Fill::kTime},
        {"&lt;description&gt;", Fill::kDescription},
        {"&lt;Click here&gt;", Fill::kLink}}},
      {"Network Transmission Rate",
       "\\Images\\server_client_exchange_48.png",
       {{"&lt;description&gt;", Fill::kDescription}, {"&lt;Network Transmission Icon&gt;", Fill::kIcon}}},
      {"Logged-On Users",
       "\\Images\\businessman_48.png",
       {{"&lt;Logged on Users Icon&gt;", Fill::kIcon},
        {"&lt;description&gt;", Fill::kDescription},
        {"&lt;time of alert&gt;", Fill::kTime}}},
      {"Memory Utilization",
       "\\Images\\data_refresh_48.png",
       {{"&lt;Memory Utilization Icon&gt;", Fill::kIcon}, {"&lt;description&gt;", Fill::kDescription}}},
      {"Listening Ports",
       "\\Images\\server_connection_48.png",
       {{"&lt;Listening Port Icon&gt;", Fill::kIcon},
        {"&lt;port&gt;", Fill::kDescription},
        {"&lt;time of alert&gt;", Fill::kTime}}},
      {"Autorun Registry",
       "\\Images\\cubes_48.png",
       {{"&lt;Registry Icon&gt;", Fill::kIcon},
        {"&lt;program&gt;", Fill::kBehindEquals},
        {"&lt;time of alert&gt;", Fill::kTime},
        {"&lt;description&gt;", Fill::kDescription},
        {"&lt;Click here&gt;", Fill::kLink}}},
      {"System Users",
       "\\Images\\id_card_48.png",
       {{"&lt;System Users Icon&gt;", Fill::kIcon},
        {"&lt;description&gt;", Fill::kDescription},
        {"&lt;time of alert&gt;", Fill::kTime}}},
      {"Windows Folder",
       "\\Images\\folder_closed_48.png",
       {{"&lt;Windows Folder Icon&gt;", Fill::kIcon},
        {"&lt;description&gt;", Fill::kDescription},
        {"&lt;Click here&gt;", Fill::kLink}}},
  };
  return explanations;
}

std::string_view Behind(std::string_view text, std::size_t position) {
  return position == std::string_view::npos ? std::string_view() : text.substr(position + 1);
}

class Filler {
 public:
  Filler(const core::AppState& state, core::ErrorLog& log, AlertContext& context, const NotableRecord& record,
         Purpose purpose)
      : state_(state), log_(log), context_(context), record_(record), purpose_(purpose) {}

  // Nothing when the placeholder stays.
  std::optional<MarkedText> ValueOf(const Explanation& explanation, const Placeholder& placeholder) {
    const std::string_view description = record_.Description;
    const auto colon = description.find(':');
    switch (placeholder.fill) {
      case Fill::kIcon:
        return IconTag(state_, purpose_, explanation.image);
      case Fill::kWarningIcon:
        return IconTag(state_, purpose_, "\\Images\\warning_48.png");
      case Fill::kWholeAlert:
        return WholeAlert();
      case Fill::kBeforeColon:
        return Event(colon == std::string_view::npos ? std::string_view() : description.substr(0, colon));
      case Fill::kBehindColon:
        return Event(Behind(description, colon));
      case Fill::kBehindBackslash:
        return Event(Behind(description, description.rfind('\\')));
      case Fill::kBehindEquals:
        return Event(Behind(description, description.find('=')));
      case Fill::kDescription:
        return Event(description);
      case Fill::kTime:
        return Event(context_.AlertTime);
      case Fill::kLink:
        break;
    }
    MarkedText link = GetLink(state_, log_, purpose_, record_.Monitor, description);
    if (link.empty()) return std::nullopt;
    // "click here" or "Click here", as the placeholder spells it.
    constexpr std::size_t kEntity = 4;
    link.Append(placeholder.text.substr(kEntity, placeholder.text.size() - 2 * kEntity));
    return link.Append(LinkEnd(purpose_));
  }

 private:
  MarkedText Event(std::string_view text) const { return MarkedText(purpose_, text, Origin::kEvent); }

  MarkedText WholeAlert() {
    const MarkedText alert = CurrentDescription(state_, log_, context_, false, purpose_);
    MarkedText text(purpose_, "<br>");
    return alert.empty() ? text.Append("Description Not Available") : text.Append(alert);
  }

  const core::AppState& state_;
  core::ErrorLog& log_;
  AlertContext& context_;
  const NotableRecord& record_;
  Purpose purpose_;
};

MarkedText Describe(const core::AppState& state, core::ErrorLog& log, AlertContext& context,
                    std::size_t index, Purpose purpose) {
  if (index >= context.NotableInfo.size()) core::Raise(core::kSubscriptOutOfRange);
  if (state.Desc[5].empty()) return MarkedText(purpose, kDescriptionFileError);
  const NotableRecord& record = context.NotableInfo[index];
  const auto found = FindTemplate(state.Desc[5], record.Monitor + ",");
  if (!found) return MarkedText(purpose);
  MarkedText text(purpose, *found);
  const auto& all = Explanations();
  const auto explanation = std::find_if(
      all.begin(), all.end(), [&](const Explanation& one) { return one.monitor == record.Monitor; });
  if (explanation == all.end()) return text;
  Filler filler(state, log, context, record, purpose);
  for (const auto& placeholder : explanation->placeholders)
    if (const auto value = filler.ValueOf(*explanation, placeholder)) text.Replace(placeholder.text, *value);
  return text;
}

}  // namespace

MarkedText MonitorDescription(const core::AppState& state, core::ErrorLog& log, AlertContext& context,
                              std::size_t index, Purpose purpose) {
  MarkedText text(purpose);
  core::OrIgnore([&] { text = Describe(state, log, context, index, purpose); });
  return text;
}

}  // namespace zendrix::alerts
