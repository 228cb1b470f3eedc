// quarantine: what was put away, and the way back.
#include "alerts/quarantine.h"
#include "inspect/commands.h"
#include "inspect/console.h"

namespace zendrix::inspect {
namespace {

constexpr char kQuarantineUsage[] = "quarantine list | quarantine restore NAME";

void List(Console& console) {
  const auto contents = alerts::ReadQuarantine(console.state().seams.family);
  if (!contents.failure.empty()) throw NoSuchThing(Text(contents.failure));
  Json entries = Json::array();
  for (const auto& entry : contents.entries)
    entries.push_back({{"name", entry.name},
                       {"path", Path(entry.path)},
                       {"size", entry.size},
                       {"sha256", entry.sha256},
                       {"when", entry.when},
                       {"owner", entry.owner},
                       {"alert", Text(entry.alert)}});
  console.Print({{"entries", std::move(entries)}});
}

void Restore(Console& console, const std::string& name) {
  const auto outcome = alerts::RestoreFromQuarantine(console.state().seams.family, name);
  if (!outcome.restored) throw NoSuchThing(Text(outcome.told));
  console.Print({{"restored", Path(outcome.path)}});
}

}  // namespace

void Quarantine(Console& console, const Words& words) {
  RequireWords(words, 1, 2, kQuarantineUsage);
  if (words[0] == "list" && words.size() == 1) return List(console);
  if (words[0] == "restore" && words.size() == 2) return Restore(console, words[1]);
  throw WrongUsage(std::string("usage: ") + kQuarantineUsage);
}

}  // namespace zendrix::inspect
