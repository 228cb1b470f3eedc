// A host made of texts, for tests of the observers.
#pragma once

#include <map>
#include <set>
#include <string>

#include "agent/events/snapshot.h"
#include "agent/host/host_view.h"

namespace zendrix::agent {

class FakeHost : public HostView {
 public:
  std::map<std::string, std::string> texts;
  std::map<std::string, std::string> links;
  std::map<std::string, EntryFacts> facts;

  // A program that runs, with its files under /proc.
  void AddProcess(std::uint64_t pid, const std::string& name, const std::string& program,
                  std::uint64_t start_ticks = 100) {
    const std::string folder = "/proc/" + std::to_string(pid);
    texts[folder + "/stat"] = StatText(pid, name, 4194304, start_ticks);
    texts[folder + "/status"] = "Name:\tx\nVmRSS:\t    1000 kB\n";
    if (!program.empty()) links[folder + "/exe"] = program;
  }

  void RemoveProcess(std::uint64_t pid) {
    const std::string folder = "/proc/" + std::to_string(pid) + "/";
    std::erase_if(texts, [&](const auto& entry) { return entry.first.starts_with(folder); });
    std::erase_if(links, [&](const auto& entry) { return entry.first.starts_with(folder); });
  }

  static std::string StatText(std::uint64_t pid, const std::string& name, std::uint64_t flags,
                              std::uint64_t start_ticks) {
    return std::to_string(pid) + " (" + name + ") S 1 1 1 0 -1 " + std::to_string(flags) +
           " 0 0 0 0 0 0 0 0 20 0 1 0 " + std::to_string(start_ticks) + " 3133440 390\n";
  }

  std::optional<std::string> ReadText(const std::string& path, std::size_t limit) override {
    const auto found = texts.find(path);
    if (found == texts.end()) return {};
    return found->second.substr(0, limit);
  }

  std::optional<std::string> ReadLink(const std::string& path) override {
    const auto found = links.find(path);
    if (found == links.end()) return {};
    return found->second;
  }

  std::vector<std::string> List(const std::string& folder) override {
    std::set<std::string> names;
    Collect(texts, folder, names);
    Collect(links, folder, names);
    Collect(facts, folder, names);
    return {names.begin(), names.end()};
  }

  std::optional<EntryFacts> Look(const std::string& path) override {
    const auto found = facts.find(path);
    if (found == facts.end()) return {};
    return found->second;
  }

  std::optional<EntryFacts> LookThrough(const std::string& path) override { return Look(path); }

 private:
  template <class Map>
  static void Collect(const Map& entries, const std::string& folder, std::set<std::string>& names) {
    const std::string start = folder + "/";
    for (auto at = entries.lower_bound(start); at != entries.end() && at->first.starts_with(start); ++at) {
      const std::string rest = at->first.substr(start.size());
      names.insert(rest.substr(0, rest.find('/')));
    }
  }
};

inline Item MakeItem(std::string_view monitor_name, const std::string& description, RuleSet rules = {},
                     const std::string& subject = "") {
  Item item;
  item.monitor = monitor_name;
  item.description = description;
  item.subject = subject.empty() ? description : subject;
  item.rules = rules;
  return item;
}

}  // namespace zendrix::agent
