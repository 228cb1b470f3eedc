#include "agent/host/observe_autorun.h"

#include "agent/host/parse_autorun.h"
#include "agent/host/places.h"
#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kEntryLimit = 65536;  // bytes of one entry that are read
constexpr std::size_t kFolderLimit = 2000;  // entries of one folder that are looked at

constexpr const char* kDesktopFolder = "/etc/xdg/autostart";
constexpr const char* kUnitFolders[] = {"/etc/systemd/system", "/run/systemd/system",
                                        "/usr/local/lib/systemd/system", "/etc/systemd/user"};
constexpr const char* kOwnDesktopFolder = "/.config/autostart";
constexpr const char* kOwnUnitFolder = "/.config/systemd/user";

bool EndsWith(std::string_view text, std::string_view end) {
  return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

Item MakeItem(const std::string& path, const std::string& command) {
  Item item;
  item.monitor = monitor::kAutorun;
  item.description = CleanName(path) + "=" + CleanName(command);
  item.subject = item.description;
  const std::string program = ProgramOfCommand(command);
  if (program.substr(0, 1) != "/") return item;  // a bare name is looked up in the system folders
  item.subject = CleanName(program);
  item.program = program;
  if (InTemporaryFolder(program)) {
    item.rules.Add(Rule::kAutorunInTemporaryFolder);
  } else if (!InSystemFolder(program)) {
    item.rules.Add(Rule::kAutorunOutsideSystem);
  }
  if (IsHidden(program)) item.rules.Add(Rule::kAutorunHidden);
  return item;
}

std::vector<std::string> ListSome(HostView& host, const std::string& folder) {
  auto names = host.List(folder);
  if (names.size() > kFolderLimit) names.resize(kFolderLimit);
  return names;
}

void AddDesktopEntries(HostView& host, const std::string& folder, std::vector<Item>& items) {
  for (const std::string& name : ListSome(host, folder)) {
    if (!EndsWith(name, ".desktop")) continue;
    const std::string path = folder + "/" + name;
    const auto text = host.ReadText(path, kEntryLimit);
    const auto command = text ? ParseDesktopCommand(*text) : std::nullopt;
    if (command) items.push_back(MakeItem(path, *command));
  }
}

void AddUnit(HostView& host, const std::string& path, std::vector<Item>& items) {
  const auto text = host.ReadText(path, kEntryLimit);
  if (!text) return;
  for (const std::string& command : ParseUnitCommands(*text)) items.push_back(MakeItem(path, command));
}

// Units that lie in the folder itself, and those that a target wants: a link in "NAME.wants".
void AddUnits(HostView& host, const std::string& folder, std::vector<Item>& items) {
  for (const std::string& name : ListSome(host, folder)) {
    const std::string path = folder + "/" + name;
    if (EndsWith(name, ".service")) AddUnit(host, path, items);
    if (!EndsWith(name, ".wants") && !EndsWith(name, ".requires")) continue;
    for (const std::string& wanted : ListSome(host, path)) {
      if (EndsWith(wanted, ".service")) AddUnit(host, path + "/" + wanted, items);
    }
  }
}

bool IsPerson(const Account& account) {
  return IsLoginShell(account.shell) && account.home.size() > 1 && account.home[0] == '/';
}

}  // namespace

std::vector<Item> ObserveAutorun(HostView& host, const std::vector<Account>& accounts) {
  std::vector<Item> items;
  AddDesktopEntries(host, kDesktopFolder, items);
  for (const char* folder : kUnitFolders) AddUnits(host, folder, items);
  for (const Account& account : accounts) {
    if (!IsPerson(account)) continue;
    AddDesktopEntries(host, account.home + kOwnDesktopFolder, items);
    AddUnits(host, account.home + kOwnUnitFolder, items);
  }
  return items;
}

std::vector<std::string> AutorunFolders(HostView& host, const std::vector<Account>& accounts) {
  std::vector<std::string> folders = {kDesktopFolder};
  std::vector<std::string> units(std::begin(kUnitFolders), std::end(kUnitFolders));
  for (const Account& account : accounts) {
    if (!IsPerson(account)) continue;
    folders.push_back(account.home + kOwnDesktopFolder);
    units.push_back(account.home + kOwnUnitFolder);
  }
  for (const std::string& folder : units) {
    folders.push_back(folder);
    for (const std::string& name : ListSome(host, folder)) {
      if (EndsWith(name, ".wants") || EndsWith(name, ".requires")) folders.push_back(folder + "/" + name);
    }
  }
  return folders;
}

}  // namespace zendrix::agent
