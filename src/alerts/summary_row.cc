#include "alerts/summary_row.h"

#include <algorithm>
#include <array>
#include <string>

#include "alerts/agent_numbers.h"
#include "alerts/links.h"
#include "alerts/templates.h"
#include "core/number_rules.h"
#include "core/text_rules.h"
#include "family/description_reading.h"

namespace zendrix::alerts {
namespace {

constexpr char kUnknownProgram[] = "An unknown program";

class RowBuilder {
 public:
  RowBuilder(const core::AppState& state, core::ErrorLog& log, const AlertContext& context,
             const NotableRecord& record, bool short_form, Purpose purpose)
      : state_(state),
        log_(log),
        context_(context),
        record_(record),
        description_(record.Description),
        short_form_(short_form),
        purpose_(purpose),
        row_(purpose) {}

  MarkedText Build(std::string_view row_template);

 private:
  using Rule = void (RowBuilder::*)();
  struct Monitor {
    std::string_view name;
    std::string_view image;
    Rule fill;
  };
  static const std::array<Monitor, 10> kMonitors;

  void Wrap(std::string_view image, const MarkedText& filled_template);
  MarkedText Observation() const;

  void PlainDescription();
  void LinkedDescription();
  void LoggedOnUsers();
  void ListeningPorts();
  void RunningProcesses();
  void AutorunRegistry();
  void TcpConnections();
  MarkedText FillRate(std::string_view row_template) const;
  std::string Amount(std::string_view field) const;
  bool IsRate() const {
    return record_.Monitor == "Network Transmission Rate" || record_.Monitor == "Memory Utilization";
  }

  MarkedText Value(std::string_view value) const { return MarkedText(purpose_, value, Origin::kEvent); }
  void Put(std::string_view placeholder, std::string_view value) { row_.Replace(placeholder, Value(value)); }
  // Links the value wherever it stands in the row.
  void Link(std::string_view monitor, std::string_view value) { LinkTo(monitor, value, value); }
  void LinkTo(std::string_view monitor, std::string_view target, std::string_view value) {
    const MarkedText link = GetLink(state_, log_, purpose_, monitor, target);
    if (!link.empty()) row_.Surround(value, link, LinkEnd(purpose_));
  }
  void LinkLast(std::string_view monitor, std::string_view value) {
    const MarkedText link = GetLink(state_, log_, purpose_, monitor, value);
    if (!link.empty()) row_.SurroundLast(value, link, LinkEnd(purpose_));
  }

  const core::AppState& state_;
  core::ErrorLog& log_;
  const AlertContext& context_;
  const NotableRecord& record_;
  const std::string_view description_;
  bool short_form_;
  Purpose purpose_;
  MarkedText row_;
};

const std::array<RowBuilder::Monitor, 10> RowBuilder::kMonitors = {{
    {"System", "\\Images\\workplace.png", &RowBuilder::PlainDescription},
    {"Network Transmission Rate", "\\Images\\server_client_exchange.png", nullptr},
    {"Memory Utilization", "\\Images\\data_refresh.png", nullptr},
    {"Logged-On Users", "\\Images\\businessman.png", &RowBuilder::LoggedOnUsers},
    {"System Users", "\\Images\\id_card.png", &RowBuilder::LinkedDescription},
    {"Windows Folder", "\\Images\\folder_closed.png", &RowBuilder::LinkedDescription},
    {"Listening Ports", "\\Images\\server_connection.png", &RowBuilder::ListeningPorts},
    {"Running Processes", "\\Images\\window_gear.png", &RowBuilder::RunningProcesses},
    {"Autorun Registry", "\\Images\\cubes.png", &RowBuilder::AutorunRegistry},
    {"TCP Connections", "\\Images\\server_client.png", &RowBuilder::TcpConnections},
}};

MarkedText RowBuilder::Build(std::string_view row_template) {
  const auto monitor = std::find_if(kMonitors.begin(), kMonitors.end(),
                                    [&](const Monitor& one) { return one.name == record_.Monitor; });
  if (monitor == kMonitors.end()) return MarkedText(purpose_, row_template);
  Wrap(monitor->image, IsRate() ? FillRate(row_template) : MarkedText(purpose_, row_template));
  if (monitor->fill) (this->*monitor->fill)();
  return row_;
}

MarkedText RowBuilder::Observation() const {
  MarkedText text(purpose_);
  if (!record_.TimesObserved || *record_.TimesObserved < 0) return text;
  text.Append("At the time of this alert, this event had been observed ");
  text.Append(std::to_string(*record_.TimesObserved))
      .Append(*record_.TimesObserved == 1 ? " time" : " times");
  return text.Append(" since ").Append(context_.FirstEventDateTime, Origin::kEvent);
}

void RowBuilder::Wrap(std::string_view image, const MarkedText& filled_template) {
  const MarkedText behind_image = MarkedText(purpose_, "' ALT='").Append(Observation());
  row_.Append("<tr ALIGN='left' VALIGN='top'><td width=18>");
  row_.Append(IconTag(state_, purpose_, image, behind_image));
  if (short_form_) {
    row_.Append("</td><td><font size=1 color='#00009D' face='Tahoma'>").Append(filled_template);
    row_.Append("</font></td></tr>");
  } else {
    row_.Append("</td><td>").Append(filled_template).Append("</td><td align='center'>");
    row_.Append(std::to_string(record_.TimesObserved.value_or(0))).Append("</td></tr>");
  }
}

void RowBuilder::PlainDescription() {
  Put("<description>", description_);
}

void RowBuilder::LinkedDescription() {
  MarkedText linked = GetLink(state_, log_, purpose_, record_.Monitor, description_);
  row_.Replace("<description>", linked.Append("<description>").Append(LinkEnd(purpose_)));
  PlainDescription();
}

// Only the short form has the link.
void RowBuilder::LoggedOnUsers() {
  if (short_form_)
    LinkedDescription();
  else
    PlainDescription();
}

void RowBuilder::ListeningPorts() {
  const auto reading = family::ReadListeningPort(description_);
  if (!core::Contains(description_, ":")) {
    row_.Replace("<description, right of :>", kUnknownProgram);
    return;
  }
  const std::string_view program = core::FileNamePart(reading.path);
  Put("<description, right of :>", program);
  Link("Running Processes", program);
  Put("<description, left of :>", reading.port);
  Link(record_.Monitor, reading.port);
}

void RowBuilder::RunningProcesses() {
  const auto reading = family::ReadRunningProcess(description_);
  Put("<description, right of last \\>", reading.program);
  Link(record_.Monitor, reading.program);
  if (!reading.behind_colon)
    row_.Replace("<description, right of :>", "'?'");
  else
    Put("<description, right of :>", *reading.behind_colon);
}

// The link carries the whole.
void RowBuilder::AutorunRegistry() {
  const auto reading = family::ReadAutostartEntry(description_);
  Put("<description right of =>", reading.command);
  LinkTo(record_.Monitor, description_, reading.command);
}

void RowBuilder::TcpConnections() {
  const auto reading = family::ReadConnection(description_);
  Put("<description, right of :>", reading.port);
  LinkLast("Listening Ports", reading.port);
  Put("<description, left of :>", reading.address);
  Link(record_.Monitor, reading.address);
  const std::string_view program = core::FileNamePart(reading.path);
  if (program.empty()) {
    row_.Replace("<description, right of last :>", kUnknownProgram);
  } else {
    Put("<description, right of last :>", program);
    Link("Running Processes", program);
  }
}

// "42.10" from the Agent is 42,10 for a user who writes it so. What is no number is shown as it stands.
std::string RowBuilder::Amount(std::string_view field) const {
  if (!core::IsNumeric(field, AgentNumbers())) return std::string(field);
  return core::FormatPicture(core::CDbl(field, AgentNumbers()), "#0.00", state_.seams.locale.Current());
}

// "12.5", "12.5:word" or "12.5:word:word". The clause between "<:" and ":>" is only for those with more than
// the number. Worked on the template by itself, so that cutting it short leaves the row around it whole.
MarkedText RowBuilder::FillRate(std::string_view row_template) const {
  MarkedText text(purpose_, row_template);
  const auto fields = core::Split(description_, ":");
  if (fields.empty()) return text;
  text.Replace("<description>", Value(Amount(fields[0])));
  if (fields.size() == 1) {
    text.CutAt("<:");
    text.Replace("<%1>", "");
    text.Replace("<%2>", "");
    return text;
  }
  text.Replace("<:", "");
  text.Replace(":>", "");
  text.Replace("<%1>", Value(fields[1]).Append("."));
  if (fields.size() == 3) {
    text.Replace(".<%2>", MarkedText(purpose_, ", ").Append(Value(fields[2])).Append("."));
  } else {
    text.Replace("<%2>", "");
  }
  return text;
}

}  // namespace

MarkedText SummaryRow(const core::AppState& state, core::ErrorLog& log, const AlertContext& context,
                      const NotableRecord& record, std::string_view row_template, bool short_form,
                      Purpose purpose) {
  return RowBuilder(state, log, context, record, short_form, purpose).Build(row_template);
}

}  // namespace zendrix::alerts
