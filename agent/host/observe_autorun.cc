#include "agent/host/observe_autorun.h"

#include <algorithm>
#include <utility>

#include "agent/host/commands.h"
#include "agent/host/distinct_name.h"
#include "agent/host/parse_autorun.h"
#include "agent/host/places.h"
#include "agent/host/text.h"
#include "agent/score/digest.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kEntryLimit = 65536;  // bytes of one entry that are read
// Whoever has an account may lay as many entries as the disk holds. A file, a folder of wanted units and each
// command count as one, so that a look takes a bounded time and room whatever there is.
constexpr std::size_t kOfSystem = 2000;
constexpr std::size_t kOfAccount = 500;
constexpr std::size_t kOfAll = 5000;

constexpr const char* kDesktopFolder = "/etc/xdg/autostart";
constexpr const char* kUnitFolders[] = {
    "/etc/systemd/system", "/run/systemd/system", "/usr/local/lib/systemd/system",
    "/etc/systemd/user",   "/run/systemd/user",   "/usr/local/lib/systemd/user"};
constexpr const char* kOwnDesktopFolder = "/.config/autostart";
constexpr const char* kOwnUnitFolders[] = {"/.config/systemd/user", "/.local/share/systemd/user"};

bool IsDesktopEntry(std::string_view name) {
  return name.ends_with(".desktop");
}
bool IsUnit(std::string_view name) {
  return name.ends_with(".service");
}
// A target's wanted units, as links.
bool IsFolderOfWanted(std::string_view name) {
  return name.ends_with(".wants") || name.ends_with(".requires");
}
// Drop-ins of one unit, of all whose name begins alike, or of all (systemd.unit(5)).
bool IsFolderOfDropIns(std::string_view name) {
  return name.ends_with(".service.d") || name == "service.d";
}
bool IsDropIn(std::string_view name) {
  return name.ends_with(".conf");
}
bool IsFolderOfUnits(std::string_view name) {
  return IsFolderOfWanted(name) || IsFolderOfDropIns(name);
}

Item MakeItem(const std::string& path, const std::string& text) {
  Item item;
  item.monitor = monitor::kAutorun;
  item.description = CleanName(path) + "=" + CleanName(text);
  item.subject = item.description;
  // What is written may be the same for two commands; a changed one counts as gone and come again.
  item.identity = Sha256Of(path + "\n" + text);
  item.place = path;
  const Command command = ReadCommand(text);
  if (!command.temporary.empty()) {
    item.rules.Add(Rule::kAutorunInTemporaryFolder);
  } else if (command.is_outside) {
    item.rules.Add(Rule::kAutorunOutsideSystem);
  }
  if (!command.hidden.empty()) item.rules.Add(Rule::kAutorunHidden);
  const std::string program = command.temporary.empty() ? NormalPath(command.program) : command.temporary;
  if (!program.starts_with("/")) return item;  // a bare name is looked up in the system folders
  item.subject = DistinctName(program);
  item.program = program;
  return item;
}

// One look at everything that starts by itself, within its limits.
class AutorunLook {
 public:
  AutorunLook(HostView& host, Shortfall* missed) : host_(host), missed_(missed) {}

  // What follows is one account's, or the system's.
  void Begin(std::size_t limit) { left_of_owner_ = std::min(limit, left_of_all_); }

  void AddDesktopEntries(const std::string& folder) {
    ForEach(folder, IsDesktopEntry, [&](const std::string& path) { AddEntry(path, ParseDesktopCommands); });
  }

  // Units that lie in the folder itself, those that a target wants, and what is dropped in.
  void AddUnits(const std::string& folder) {
    ForEach(folder, IsUnit, [&](const std::string& path) { AddEntry(path, ParseUnitCommands); });
    ForEach(folder, IsFolderOfUnits, [&](const std::string& below) {
      const bool drop_ins = IsFolderOfDropIns(below.substr(below.rfind('/') + 1));
      ForEach(below, drop_ins ? IsDropIn : IsUnit,
              [&](const std::string& path) { AddEntry(path, ParseUnitCommands); });
    });
  }

  std::vector<Item> items;

 private:
  using Parser = Commands (*)(std::string_view);

  bool Spend() {
    if (left_of_owner_ == 0 || left_of_all_ == 0) return false;
    --left_of_owner_;
    --left_of_all_;
    return true;
  }

  void Miss(const std::string& place, std::uint64_t count) {
    if (missed_ != nullptr && count > 0) missed_->Add(monitor::kAutorun, place, count);
  }

  template <class Visit>
  void ForEach(const std::string& folder, bool (*wanted)(std::string_view), Visit visit) {
    const NameList list = host_.ListSome(folder, left_of_owner_, wanted);
    std::uint64_t left_out = list.left_out;
    for (const std::string& name : list.names) {
      if (Spend()) {
        visit(folder + "/" + name);
      } else {
        ++left_out;
      }
    }
    Miss(folder, left_out);
  }

  void AddEntry(const std::string& path, Parser parse) {
    const auto text = host_.ReadText(path, kEntryLimit + 1);
    if (!text) {
      // A unit that is switched off leads to /dev/null; only a plain file would be read by others.
      const auto facts = host_.LookThrough(path);
      if (facts && facts->kind == EntryKind::kFile) Miss(path, 1);
      return;
    }
    Commands commands = parse(std::string_view(*text).substr(0, kEntryLimit));
    bool is_first = true;  // paid for with the file
    for (const std::string& command : commands.texts) {
      if (!std::exchange(is_first, false) && !Spend()) {
        ++commands.left_out;
      } else {
        items.push_back(MakeItem(path, command));
      }
    }
    Miss(path, commands.left_out + (text->size() > kEntryLimit ? 1 : 0));
  }

  HostView& host_;
  Shortfall* missed_;
  std::size_t left_of_owner_ = 0;
  std::size_t left_of_all_ = kOfAll;
};

bool IsPerson(const Account& account) {
  return IsLoginShell(account.shell) && account.home.size() > 1 && account.home[0] == '/';
}

}  // namespace

std::vector<Item> ObserveAutorun(HostView& host, const std::vector<Account>& accounts, Shortfall* missed) {
  AutorunLook look(host, missed);
  look.Begin(kOfSystem);
  look.AddDesktopEntries(kDesktopFolder);
  for (const char* folder : kUnitFolders) look.AddUnits(folder);
  for (const Account& account : accounts) {
    if (!IsPerson(account)) continue;
    look.Begin(kOfAccount);
    look.AddDesktopEntries(account.home + kOwnDesktopFolder);
    for (const char* folder : kOwnUnitFolders) look.AddUnits(account.home + folder);
  }
  return std::move(look.items);
}

std::vector<std::string> AutorunFolders(HostView& host, const std::vector<Account>& accounts) {
  std::vector<std::string> folders = {kDesktopFolder};
  const auto add = [&](const std::string& folder, std::size_t limit) {
    folders.push_back(folder);
    for (const std::string& name : host.ListSome(folder, limit, IsFolderOfUnits).names)
      folders.push_back(folder + "/" + name);
  };
  for (const char* folder : kUnitFolders) add(folder, kOfSystem);
  for (const Account& account : accounts) {
    if (!IsPerson(account) || folders.size() >= kOfAll) continue;
    folders.push_back(account.home + kOwnDesktopFolder);
    for (const char* folder : kOwnUnitFolders) add(account.home + folder, kOfAccount);
  }
  return folders;
}

}  // namespace zendrix::agent
