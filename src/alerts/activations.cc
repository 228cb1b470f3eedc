#include "alerts/activations.h"

#include <charconv>
#include <cstdint>
#include <optional>

#include "core/guards.h"
#include "core/run_time_error.h"
#include "core/text_rules.h"

namespace zendrix::alerts {
namespace {

constexpr char kLineEnd[] = "\r\n";
constexpr char kPlace[] = "EventUtils:UpdateActivations";

// The code that the decision is filed under, or nothing when this is the first alert with its Change.
std::optional<std::string> CodeOf(store::EventTable& table, const NotableRecord& alert) {
  const auto cursor = table.cursor();
  store::EventCursor& rows = *cursor;
  rows.MoveFirst();
  rows.Find("ID = '" + std::to_string(alert.ID) + "' ", 0, store::Direction::kForward);
  // The file may have been replaced since the alert was looked up: its ID is another row's then.
  if (rows.Eof() || rows.Text(store::kDateUTC) != alert.DateUTC) return std::nullopt;
  const std::string criterion = "Change = '" + alert.Change + "' ";
  do {
    rows.Find(criterion, 1, store::Direction::kBackward);
  } while (!rows.Bof() && rows.Text(store::kMonitor) != "Aggregation");
  if (rows.Bof()) return std::nullopt;
  const std::string_view code = rows.Text(store::kCode);
  return std::string(code.substr(0, code.rfind(',')));
}

// The file's text with the decision in it.
std::string WithDecision(const std::string& text, const std::string& code, const std::string& line) {
  std::string result;
  bool replaced = false;
  for (const std::string_view old_line : core::Lines(text)) {
    const bool hit = core::Contains(old_line, code);
    result += hit ? std::string_view(line) : old_line;
    result += kLineEnd;
    replaced = replaced || hit;
  }
  return replaced ? result : result + line + kLineEnd;
}

// The answer may come when the alert is off the screen and its row gone: everything goes by value.
void TellAgent(core::AppState& state, core::ErrorLog& log, const std::string& date_utc,
               const std::string& code, const std::string& action) {
  std::int64_t second = 0;
  const char* const end = date_utc.data() + date_utc.size();
  if (const auto [last, error] = std::from_chars(date_utc.data(), end, second);
      error != std::errc() || last != end)
    return;  // no alert of the Agent's
  state.seams.agent_link.Decide(
      second, code, action == kBlockAction, [&state, &log](const std::string& sentence) {
        log.WriteLog(kPlace, sentence);
        state.seams.message_boxes.Show({state.ProductName, sentence, platform::BoxIcon::kExclamation});
      });
}

}  // namespace

void UpdateActivations(core::AppState& state, core::ErrorLog& log, store::EventTable* table,
                       const AlertContext& context, const std::string& action) {
  core::OrLog(log, kPlace, [&] {
    if (!table) core::Raise(core::kObjectNotSet);
    const auto code = CodeOf(*table, context.NotableInfo.front());
    if (!code) return;
    // Every line of the file holds the empty text: such a decision would take the place of all others.
    if (code->empty()) {
      log.WriteLog(kPlace, "The alert has no code. Its decision is not written.");
      return;
    }
    auto& files = state.seams.files;
    const std::string path = platform::JoinPath(state.ProgramFolder, kActivationsFile);
    const std::string old_text = files.Exists(path) ? core::ValueOrRaise(files.ReadAll(path)) : std::string();
    core::ValueOrRaise(files.WriteAll(path, WithDecision(old_text, *code, *code + "," + action)));
    TellAgent(state, log, context.NotableInfo.front().DateUTC, *code, action);
  });
}

}  // namespace zendrix::alerts
