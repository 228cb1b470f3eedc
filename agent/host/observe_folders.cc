#include "agent/host/observe_folders.h"

#include <algorithm>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kWatchedFolderLimit = 5000;  // entries of one folder that are looked at
constexpr std::uint32_t kAnyExecute = 0111;
constexpr std::uint32_t kSetUserId = 04000;
constexpr const char* kPreloadList = "/etc/ld.so.preload";
constexpr std::size_t kPreloadLimit = 16384;
constexpr std::size_t kMostPreloaded = 8;

constexpr const char* kSystemFolders[] = {
    "/etc/cron.d", "/etc/cron.daily", "/etc/cron.hourly", "/etc/cron.monthly", "/etc/cron.weekly",
    "/etc/init.d", "/etc/profile.d",  "/etc/sudoers.d",   "/usr/local/bin",    "/usr/local/sbin",
};
constexpr const char* kTemporaryFolders[] = {"/dev/shm", "/tmp", "/var/tmp"};

Item MakeItem(std::string_view monitor_name, const std::string& path, const EntryFacts& facts) {
  Item item;
  item.monitor = monitor_name;
  item.description = CleanName(path);
  item.subject = item.description;
  // A file whose contents changed counts as gone and come again.
  item.identity =
      std::to_string(facts.size) + " " + std::to_string(facts.modified_ns) + " " + std::to_string(facts.mode);
  return item;
}

RuleSet RulesOfTemporary(const std::string& name, const EntryFacts& facts) {
  RuleSet rules;
  if ((facts.mode & kSetUserId) != 0) rules.Add(Rule::kSetUserIdInTemporaryFolder);
  rules.Add(name[0] == '.' ? Rule::kHiddenProgramInTemporaryFolder : Rule::kProgramFileInTemporaryFolder);
  return rules;
}

template <class Visit>
void ForEachEntry(HostView& host, const std::string& folder, Visit visit) {
  auto names = host.List(folder);
  if (names.size() > kWatchedFolderLimit) names.resize(kWatchedFolderLimit);
  for (const std::string& name : names) {
    const std::string path = folder + "/" + name;
    const auto facts = host.Look(path);
    if (facts && !name.empty()) visit(name, path, *facts);
  }
}

// ld.so(8): names of libraries, separated by blanks, colons or line ends; "#" begins a comment. Each library
// is an item of its own, and the list belongs to the first of them: it is what the list does that is unusual.
void AddPreloadList(HostView& host, std::vector<Item>& items) {
  const auto facts = host.Look(kPreloadList);
  if (!facts) return;
  items.push_back(MakeItem(monitor::kFolders, kPreloadList, *facts));
  items.back().rules.Add(Rule::kPreloadList);
  const std::size_t list = items.size() - 1;
  const std::string text = host.ReadText(kPreloadList, kPreloadLimit).value_or("");
  std::size_t count = 0;
  for (const std::string_view line : SplitLines(text)) {
    std::string names(line.substr(0, line.find('#')));
    std::replace(names.begin(), names.end(), ':', ' ');
    for (const std::string_view name : SplitWords(names)) {
      if (name[0] != '/' || ++count > kMostPreloaded) continue;
      const std::string library(name);
      Item item = MakeItem(monitor::kFolders, library, host.Look(library).value_or(EntryFacts{}));
      item.rules.Add(Rule::kPreloadList);
      item.program = library;
      if (items[list].program.empty()) {
        items[list].subject = item.subject;
        items[list].program = library;
      }
      items.push_back(std::move(item));
    }
  }
}

}  // namespace

std::vector<Item> ObserveFolders(HostView& host) {
  std::vector<Item> items;
  for (const char* folder : kSystemFolders) {
    ForEachEntry(host, folder, [&](const std::string&, const std::string& path, const EntryFacts& facts) {
      if (facts.kind == EntryKind::kFile || facts.kind == EntryKind::kLink) {
        items.push_back(MakeItem(monitor::kFolders, path, facts));
      }
    });
  }
  AddPreloadList(host, items);
  for (const char* folder : kTemporaryFolders) {
    ForEachEntry(host, folder,
                 [&](const std::string& name, const std::string& path, const EntryFacts& facts) {
                   if (facts.kind != EntryKind::kFile || (facts.mode & (kAnyExecute | kSetUserId)) == 0)
                     return;
                   items.push_back(MakeItem(monitor::kFolders, path, facts));
                   items.back().rules = RulesOfTemporary(name, facts);
                 });
  }
  return items;
}

std::vector<std::string> FoldersLookedAt() {
  std::vector<std::string> folders(std::begin(kSystemFolders), std::end(kSystemFolders));
  folders.insert(folders.end(), std::begin(kTemporaryFolders), std::end(kTemporaryFolders));
  return folders;
}

}  // namespace zendrix::agent
