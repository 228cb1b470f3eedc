// quarantine: what was put away, and the way back.
#include <algorithm>

#include "inspect/commands.h"
#include "inspect/console.h"
#include "platform/family_libraries.h"

namespace zendrix::inspect {
namespace {

constexpr char kUsage[] = "quarantine list | quarantine restore NAME";

std::vector<platform::QuarantineEntry> EntriesIn(Console& console) {
  auto entries = console.state().seams.family.QuarantineList();
  if (!entries) throw NoSuchThing(Text(entries.error().text));
  return std::move(entries.value());
}

void List(Console& console) {
  Json entries = Json::array();
  for (const auto& entry : EntriesIn(console))
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
  const auto entries = EntriesIn(console);
  const auto entry =
      std::find_if(entries.begin(), entries.end(), [&](const auto& one) { return one.name == name; });
  if (entry == entries.end()) throw NoSuchThing("There is no such entry in quarantine.");
  std::string message;
  const auto restored = console.state().seams.family.RestoreExport(name, message);
  if (!restored) throw NoSuchThing(Text(restored.error().text));
  if (!restored.value()) throw NoSuchThing(Text(message.substr(0, message.find('\0'))));
  console.Print({{"restored", Path(entry->path)}});
}

}  // namespace

void Quarantine(Console& console, const Words& words) {
  RequireWords(words, 1, 2, kUsage);
  if (words[0] == "list" && words.size() == 1) return List(console);
  if (words[0] == "restore" && words.size() == 2) return Restore(console, words[1]);
  throw WrongUsage(std::string("usage: ") + kUsage);
}

}  // namespace zendrix::inspect
