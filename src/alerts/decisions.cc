#include "alerts/decisions.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "alerts/activations.h"
#include "alerts/lookup.h"
#include "alerts/summary_table.h"
#include "core/letter_case.h"
#include "core/path_text.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"
#include "family/description_reading.h"
#include "platform/windows_1252.h"

namespace zendrix::alerts {
namespace {

constexpr std::size_t kMessageSize = 256;

// The library's message as a line. One that the library did not end is not told at all.
std::string TextOf(const std::string& message) {
  const auto end = message.find('\0');
  return end == std::string::npos ? std::string() : message.substr(0, end) + "\r\n";
}

// Whether the event names this file, in either spelling that letters beyond ASCII can have.
bool Names(const NotableRecord& event, const std::string& path) {
  const auto kind = family::KindOfMonitor(event.Monitor);
  if (!kind) return false;
  const std::string_view named = family::ReadDescription(*kind, event.Description).path;
  return !named.empty() && (named == path || platform::Utf8FromBytes(named) == path);
}

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

// The alert's records, or one blank entry when the table holds it no more (or another row has its ID by now).
AlertContext Decisions::LookUp(const ListedAlert& alert) {
  const auto table = table_();
  GetNotableInfo(state_, log_, table.get(), alert.id, context_);
  if (context_.NotableInfo.front().DateUTC != alert.date_utc) context_.Reset();
  return context_;
}

void Decisions::File(Answer answer, const AlertContext& records) {
  const auto table = table_();
  UpdateActivations(state_, log_, table.get(), records,
                    answer == Answer::kBlock ? kBlockAction : kAllowAction);
}

bool Decisions::FromMenu(Answer answer, const ListedAlert& alert) {
  const AlertContext records = LookUp(alert);
  const auto said = state_.seams.message_boxes.Show(
      {"", Question(answer, alert.text), platform::BoxIcon::kQuestion, platform::BoxButtons::kYesNo});
  if (said != platform::BoxAnswer::kYes) return false;
  File(answer, records);
  if (answer == Answer::kBlock)
    checked_.MarkBlocked(alert.date_utc);
  else
    checked_.MarkAllowed(alert.date_utc);
  if (answer == Answer::kAllow) OfferBack(alert, records.NotableInfo);
  return true;
}

void Decisions::FromPage(Answer answer, const ListedAlert& alert) {
  const AlertContext records = LookUp(alert);
  const char* const wanted = answer == Answer::kBlock ? "failed" : "success";
  std::string collected;
  std::vector<NotableRecord> left_alone;
  for (std::size_t i = 1; i < records.NotableInfo.size(); ++i) {
    const NotableRecord& record = records.NotableInfo[i];
    if (core::Contains(core::LowerCase(record.Reaction), wanted))
      collected += ActOn(record, alert, answer);
    else
      left_alone.push_back(record);
  }
  if (!collected.empty())
    state_.seams.message_boxes.Show(
        {state_.ProductName, collected, platform::BoxIcon::kInformation, platform::BoxButtons::kOk});
  File(answer, records);
  if (answer == Answer::kAllow) OfferBack(alert, left_alone);
}

// What an earlier Block put away for this alert would stay away behind an Allow, and nothing would say so. An
// entry knows its alert by a moment that whoever wrote the event has chosen, so only what these events name
// is offered.
void Decisions::OfferBack(const ListedAlert& alert, const std::vector<NotableRecord>& events) {
  auto& family = state_.seams.family;
  auto& boxes = state_.seams.message_boxes;
  auto listed = family.QuarantineListOf(alert.date_utc);
  if (!listed) return;
  std::vector<platform::QuarantineEntry> entries = std::move(listed).value();
  std::erase_if(entries, [&](const platform::QuarantineEntry& entry) {
    return std::none_of(events.begin(), events.end(),
                        [&](const NotableRecord& record) { return Names(record, entry.path); });
  });
  if (entries.empty()) return;
  std::string question = "In quarantine because of this alert:\r\n";
  for (const platform::QuarantineEntry& entry : entries) question += core::PathText(entry.path) + "\r\n";
  question += "Put back in place?";
  const auto said =
      boxes.Show({state_.ProductName, question, platform::BoxIcon::kQuestion, platform::BoxButtons::kYesNo});
  if (said != platform::BoxAnswer::kYes) return;
  std::string told;
  for (const platform::QuarantineEntry& entry : entries) {
    std::string message(kMessageSize, ' ');
    const auto done = family.RestoreExport(entry.name, message);
    told += TextOf(message);
    if (!done) told += core::FromPlatform(done.error()).description + "\r\n";
  }
  if (!told.empty())
    boxes.Show({state_.ProductName, told, platform::BoxIcon::kInformation, platform::BoxButtons::kOk});
}

// What is to be told of one item: the failure of the call, if it failed, and the library's message.
std::string Decisions::ActOn(const NotableRecord& record, const ListedAlert& alert, Answer answer) {
  std::string message(kMessageSize, ' ');
  auto& family = state_.seams.family;
  const bool block = answer == Answer::kBlock;
  const platform::QuarantineEvent event{record.Monitor, record.Description, record.DateUTC, alert.date_utc,
                                        HasRow(state_, record, block ? "failed" : "success")};
  const platform::Status done =
      block ? family.QuarantineExport(event, message) : family.UnquarantineExport(event, message);
  std::string told;
  if (!done) {
    const core::RunTimeError error = core::FromPlatform(done.error());
    log_.WriteLog("frmNewUI:sDesc:beforeNavigate2", std::to_string(error.number) + ": " + error.description);
    told += error.description + "\r\n";
  }
  return told + TextOf(message);
}

PageCommand PageCommandOf(std::string_view url) {
  if (!url.starts_with("about:")) return PageCommand::kNone;
  if (url.ends_with("undo")) return PageCommand::kUndo;  // before "do", in which it ends too
  if (url.ends_with("do")) return PageCommand::kDo;
  if (url.ends_with("showhide")) return PageCommand::kShowHide;
  return PageCommand::kNone;
}

}  // namespace zendrix::alerts
