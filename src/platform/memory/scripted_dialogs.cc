#include "platform/memory/scripted_dialogs.h"

#include <stdexcept>

namespace zendrix::platform {

std::vector<std::string> ScriptedBoxes::Texts() const {
  std::vector<std::string> texts;
  for (const BoxRequest& request : shown) texts.push_back(request.text);
  return texts;
}

BoxAnswer ScriptedBoxes::Show(const BoxRequest& request) {
  shown.push_back(request);
  // By value from here: code that runs under the box may show another one.
  const BoxRequest open = request;
  if (while_open) while_open(open);
  if (open_ms_ > 0) timers_.Advance(open_ms_);
  if (open.buttons == BoxButtons::kOk) return BoxAnswer::kOk;
  if (answers_.empty()) {
    if (!on_unscripted) throw std::logic_error("a question that no answer was announced for: " + open.text);
    on_unscripted(open);
    return BoxAnswer::kNo;
  }
  const BoxAnswer answer = answers_.front();
  answers_.pop_front();
  return answer;
}

std::string ScriptedFileDialogs::Choose(const FileRequest& request) {
  shown.push_back(request);
  if (while_open) while_open();
  if (choices_.empty()) return {};
  std::string choice = std::move(choices_.front());
  choices_.pop_front();
  return choice;
}

std::optional<std::uint32_t> ScriptedColourDialogs::Choose(const ColourRequest& request) {
  shown.push_back(request);
  if (while_open) while_open();
  if (choices_.empty()) return std::nullopt;
  const auto choice = choices_.front();
  choices_.pop_front();
  return choice;
}

}  // namespace zendrix::platform
