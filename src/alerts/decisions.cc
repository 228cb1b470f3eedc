#include "alerts/decisions.h"

#include "alerts/activations.h"
#include "alerts/summary_table.h"
#include "core/letter_case.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"

namespace zendrix::alerts {
namespace {

std::string Question(Answer answer, const std::string& item_text) {
  if (answer == Answer::kBlock)
    return "Item " + item_text +
           "\r\nwill be set as a blocked Alert. This event occurred in the "
           "\r\npast and can only be blocked from re-occurrence in the future."
           "\r\nAre you sure?";
  return "Item " + item_text +
         "\r\nwill be set as an Allowed Alert.  This event occurred "
         "\r\nin the past and can only be allowed to occur in the future."
         "\r\nAre you sure?";
}

}  // namespace

bool Decisions::FromMenu(Answer answer, store::EventTable* table, const std::string& item_text,
                         const std::string& tag) {
  const auto said = state_.seams.message_boxes.Show(
      {"", Question(answer, item_text), platform::BoxIcon::kQuestion, platform::BoxButtons::kYesNo});
  if (said != platform::BoxAnswer::kYes) return false;
  const bool block = answer == Answer::kBlock;
  UpdateActivations(state_, log_, table, context_, block ? kBlockAction : kAllowAction);
  if (block)
    checked_.MarkBlocked(tag);
  else
    checked_.MarkAllowed(tag);
  return true;
}

void Decisions::FromPage(Answer answer, store::EventTable* table) {
  const bool block = answer == Answer::kBlock;
  std::string collected;
  for (std::size_t i = 1; i < context_.NotableInfo.size(); ++i) {
    const NotableRecord& record = context_.NotableInfo[i];
    if (core::Contains(core::LowerCase(record.Reaction), block ? "failed" : "success"))
      collected += ActOn(record, answer);
  }
  if (!collected.empty())
    state_.seams.message_boxes.Show(
        {state_.ProductName, collected, platform::BoxIcon::kInformation, platform::BoxButtons::kOk});
  UpdateActivations(state_, log_, table, context_, block ? kBlockAction : kAllowAction);
}

// What is to be told of one item: the failure of the call, if it failed, and the library's message. A message
// that the library did not end is not told at all.
std::string Decisions::ActOn(const NotableRecord& record, Answer answer) {
  constexpr std::size_t kMessageSize = 256;
  std::string message(kMessageSize, ' ');
  auto& family = state_.seams.family;
  const bool block = answer == Answer::kBlock;
  const platform::QuarantineEvent event{record.Monitor, record.Description, record.DateUTC,
                                        context_.NotableInfo[0].DateUTC,
                                        HasRow(state_, record, block ? "failed" : "success")};
  const platform::Status done =
      block ? family.QuarantineExport(event, message) : family.UnquarantineExport(event, message);
  std::string told;
  if (!done) {
    const core::RunTimeError error = core::FromPlatform(done.error());
    log_.WriteLog("frmNewUI:sDesc:beforeNavigate2", std::to_string(error.number) + ": " + error.description);
    told += error.description + "\r\n";
  }
  const auto end = message.find('\0');
  if (end != std::string::npos) told += message.substr(0, end) + "\r\n";
  return told;
}

PageCommand PageCommandOf(std::string_view url) {
  if (!url.starts_with("about:")) return PageCommand::kNone;
  if (url.ends_with("undo")) return PageCommand::kUndo;  // before "do", in which it ends too
  if (url.ends_with("do")) return PageCommand::kDo;
  if (url.ends_with("showhide")) return PageCommand::kShowHide;
  return PageCommand::kNone;
}

}  // namespace zendrix::alerts
