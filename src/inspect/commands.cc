#include "inspect/commands.h"

#include <algorithm>
#include <array>
#include <utility>

#include "inspect/document.h"

namespace zendrix::inspect {

Command FindCommand(const std::string& name) {
  static constexpr std::array<std::pair<const char*, Command>, 22> kCommands = {
      {{"events", Events},     {"follow", Follow},   {"log", Log},
       {"desc", Desc},         {"hash", Hash},       {"risk", Risk},
       {"settings", Settings}, {"ini", Ini},         {"smtp", Smtp},
       {"valid", Valid},       {"token", Token},     {"alerts", Alerts},
       {"alert", Alert},       {"decide", Decide},   {"act", Act},
       {"wizard", Wizard},     {"checked", Checked}, {"link", Link},
       {"portal", Portal},     {"status", Status},   {"quarantine", Quarantine},
       {"grid", Grid}}};
  const auto found =
      std::find_if(kCommands.begin(), kCommands.end(), [&](const auto& one) { return name == one.first; });
  return found == kCommands.end() ? nullptr : found->second;
}

bool LooksLikeOption(const std::string& word) {
  const std::size_t first = word.starts_with("-.") ? 2 : 1;
  const bool number = first < word.size() && word[first] >= '0' && word[first] <= '9';
  return word.size() > 1 && word[0] == '-' && !number;
}

void RequireWords(const Words& words, std::size_t least, std::size_t most, const char* usage) {
  if (words.size() < least || words.size() > most) throw WrongUsage(std::string("usage: ") + usage);
}

}  // namespace zendrix::inspect
