#include "alerts/summary_table.h"

#include <algorithm>
#include <optional>
#include <string>

#include "alerts/summary_row.h"
#include "alerts/templates.h"
#include "core/guards.h"
#include "core/letter_case.h"
#include "core/number_rules.h"
#include "core/text_rules.h"

namespace zendrix::alerts {
namespace {

constexpr char kTextLineEnd[] = "\r\n";

bool Qualifies(const NotableRecord& record, std::string_view kind) {
  const std::string reaction = core::LowerCase(record.Reaction);
  return core::Contains(reaction, kind) || (kind == "failed" && reaction.empty());
}

// The sign of the change selects the sentence.
std::string RowKey(const NotableRecord& record, const platform::LocaleInfo& locale) {
  if (!core::IsNumeric(record.Change, locale)) return record.Monitor + "," + record.Change + ",";
  const double change = core::CDbl(record.Change, locale);
  const char* sign = change < 0 ? ",-1," : change == 0 ? ",0," : change > 0 ? ",1," : ",N,";
  return record.Monitor + sign;
}

// The template of the entry's row, if it has one in a table of this kind.
std::optional<std::string> RowTemplate(const core::AppState& state, const NotableRecord& record,
                                       std::string_view kind) {
  if (!Qualifies(record, kind)) return std::nullopt;
  return FindTemplate(state.Desc[2], RowKey(record, state.seams.locale.Current()));
}

MarkedText Table(const core::AppState& state, core::ErrorLog& log, const AlertContext& context,
                 std::string_view kind, bool short_form, Purpose purpose) {
  if (context.NotableInfo.size() < 2) return MarkedText(purpose);
  if (state.Desc[2].empty()) return WithoutDictionary(context, purpose);

  const std::string wanted = core::LowerCase(kind);
  MarkedText table(purpose, wanted == "success"
                                ? "<br>The following suspicious activity was blocked:<br>"
                                : "<br>The following suspicious activity could not be blocked:<br>");
  table.Append("<table cellspacing=0 cellpadding=5 border='0' width='100%'>");
  bool has_row = false;
  for (std::size_t i = 1; i < context.NotableInfo.size(); ++i) {
    const NotableRecord& record = context.NotableInfo[i];
    const auto row_template = RowTemplate(state, record, wanted);
    if (!row_template) continue;
    has_row = true;
    table.Append(SummaryRow(state, log, context, record, *row_template, short_form, purpose));
  }
  return has_row ? table.Append("</table>") : MarkedText(purpose);
}

}  // namespace

MarkedText WithoutDictionary(const AlertContext& context, Purpose purpose) {
  MarkedText text(purpose, kDescriptionFileError);
  for (const auto& record : context.NotableInfo) {
    text.Append(record.Monitor, Origin::kEvent).Append(" ").Append(record.Description, Origin::kEvent);
    text.Append(kTextLineEnd).Append(kTextLineEnd);
  }
  return text;
}

MarkedText SummaryTable(const core::AppState& state, core::ErrorLog& log, const AlertContext& context,
                        std::string_view kind, bool short_form, Purpose purpose) {
  MarkedText table(purpose);
  core::OrIgnore([&] { table = Table(state, log, context, kind, short_form, purpose); });
  return table;
}

bool HasRow(const core::AppState& state, const NotableRecord& record, std::string_view kind) {
  return state.Desc[2].empty() || RowTemplate(state, record, kind).has_value();
}

bool HasSummaryTable(const core::AppState& state, const AlertContext& context, std::string_view kind) {
  if (context.NotableInfo.size() < 2) return false;
  if (state.Desc[2].empty()) return true;
  return std::any_of(
      context.NotableInfo.begin() + 1, context.NotableInfo.end(),
      [&](const NotableRecord& record) { return RowTemplate(state, record, kind).has_value(); });
}

}  // namespace zendrix::alerts
