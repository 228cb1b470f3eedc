#include "agent/host/observe_folders.h"

#include <algorithm>
#include <functional>
#include <iterator>
#include <map>

#include "agent/host/distinct_name.h"
#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kWatchedFolderLimit = 5000;  // entries of one folder that are told
constexpr std::size_t kMostLooks = 50000;          // names of one folder, whatever they turn out to be
constexpr std::uint32_t kAnyExecute = 0111;
constexpr std::uint32_t kSetUserId = 04000;
constexpr const char* kPreloadList = "/etc/ld.so.preload";
constexpr std::size_t kPreloadLimit = 16384;
constexpr std::size_t kMostPreloaded = 8;

constexpr const char* kSystemFolders[] = {
    "/etc/cron.d",      "/etc/cron.daily", "/etc/cron.hourly",         "/etc/cron.monthly",
    "/etc/cron.weekly", "/etc/init.d",     "/etc/profile.d",           "/etc/sudoers.d",
    "/usr/local/bin",   "/usr/local/sbin", "/var/spool/cron/crontabs",
};
constexpr const char* kSystemFiles[] = {"/etc/anacrontab", "/etc/crontab", "/etc/profile", "/etc/sudoers"};
constexpr const char* kTemporaryFolders[] = {"/dev/shm", "/tmp", "/var/tmp"};

Item MakeItem(std::string_view monitor_name, const std::string& path, const EntryFacts& facts) {
  Item item;
  item.monitor = monitor_name;
  item.description = DistinctName(path);
  item.subject = item.description;
  item.place = path;
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

bool IsProgramFile(const EntryFacts& facts) {
  return facts.kind == EntryKind::kFile && (facts.mode & (kAnyExecute | kSetUserId)) != 0;
}

// What lies in the folder and is `wanted`; only that counts against the limit.
template <class Wanted>
void AddEntries(HostView& host, const std::string& folder, Wanted wanted, Shortfall* missed,
                std::vector<Item>& items) {
  std::map<std::string, EntryFacts, std::less<>> facts_of;
  std::size_t looked_at = 0;
  std::uint64_t unlooked = 0;
  const auto list = host.ListSome(folder, kWatchedFolderLimit, [&](std::string_view name) {
    if (++looked_at > kMostLooks) {
      ++unlooked;
      return false;
    }
    const auto facts = host.Look(folder + "/" + std::string(name));
    if (!facts || name.empty() || !wanted(*facts)) return false;
    if (facts_of.size() < 2 * kWatchedFolderLimit) facts_of.emplace(name, *facts);
    return true;
  });
  for (const std::string& name : list.names) {
    const std::string path = folder + "/" + name;
    const auto known = facts_of.find(name);
    const auto facts = known != facts_of.end() ? known->second : host.Look(path);
    if (!facts || !wanted(*facts)) continue;
    items.push_back(MakeItem(monitor::kFolders, path, *facts));
    if (IsTemporaryFolder(folder)) items.back().rules = RulesOfTemporary(name, *facts);
  }
  const std::uint64_t left_out = list.left_out + unlooked;
  if (missed != nullptr && left_out > 0) missed->Add(monitor::kFolders, folder, left_out);
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

std::vector<Item> ObserveFolders(HostView& host, const std::set<std::string>& named, Shortfall* missed) {
  std::vector<Item> items;
  const auto is_file = [](const EntryFacts& facts) {
    return facts.kind == EntryKind::kFile || facts.kind == EntryKind::kLink;
  };
  for (const char* folder : kSystemFolders) AddEntries(host, folder, is_file, missed, items);
  for (const char* path : kSystemFiles) {
    const auto facts = host.Look(path);
    if (facts && is_file(*facts)) items.push_back(MakeItem(monitor::kFolders, path, *facts));
  }
  AddPreloadList(host, items);
  const std::size_t first_temporary = items.size();
  for (const char* folder : kTemporaryFolders) AddEntries(host, folder, IsProgramFile, missed, items);
  std::set<std::string_view> there;
  for (std::size_t i = first_temporary; i < items.size(); ++i) there.insert(items[i].place);
  std::vector<Item> more;
  for (const std::string& path : named) {
    if (there.contains(path)) continue;
    const auto facts = host.Look(path);
    if (!facts || !IsProgramFile(*facts)) continue;
    more.push_back(MakeItem(monitor::kFolders, path, *facts));
    more.back().rules = RulesOfTemporary(path.substr(path.rfind('/') + 1), *facts);
  }
  items.insert(items.end(), std::make_move_iterator(more.begin()), std::make_move_iterator(more.end()));
  return items;
}

std::vector<std::string> FoldersLookedAt() {
  std::vector<std::string> folders(std::begin(kSystemFolders), std::end(kSystemFolders));
  folders.insert(folders.end(), std::begin(kTemporaryFolders), std::end(kTemporaryFolders));
  return folders;
}

std::vector<std::string> FilesLookedAt() {
  return {std::begin(kSystemFiles), std::end(kSystemFiles)};
}

bool IsTemporaryFolder(std::string_view folder) {
  return std::find(std::begin(kTemporaryFolders), std::end(kTemporaryFolders), folder) !=
         std::end(kTemporaryFolders);
}

}  // namespace zendrix::agent
