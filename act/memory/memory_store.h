// A quarantine in memory. Files are put there by a test, and a sentence makes an operation refuse.
#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "act/store.h"
#include "family/description_reading.h"

namespace zendrix::act {

class MemoryStore : public Store {
 public:
  struct File {
    std::string sha256;
    FileId id;
    bool others = false;
  };

  StoreAnswer Look(const family::Event& event, uid_t user) override {
    looks.push_back({event, user});
    return Find(event, refuse_look);
  }

  StoreAnswer Take(const family::Event& event, uid_t user) override {
    takes.push_back({event, user});
    if (on_take) on_take();
    StoreAnswer answer = Find(event, refuse_take);
    if (!answer.done) return answer;
    family::Entry entry;
    entry.name = std::string(31, '0') + std::to_string(entries.size());
    entry.manifest.path = answer.file.path;
    entry.manifest.sha256 = answer.file.sha256;
    entry.manifest.alert = event.alert;
    entry.manifest.owner = owner;
    entries.insert(entries.begin(), entry);
    files.erase(answer.file.path);
    return answer;
  }

  StoreAnswer Restore(const std::string& name) override {
    if (!refuse_restore.empty()) return {false, refuse_restore, {}};
    for (auto entry = entries.begin(); entry != entries.end(); ++entry) {
      if (entry->name != name) continue;
      const std::string path = entry->manifest.path;
      files[path] = {entry->manifest.sha256, {1, 99}};
      entries.erase(entry);
      return {true, "back " + path, {}};
    }
    return {false, "none", {}};
  }

  StoreList List() override {
    if (!refuse_list.empty()) return {false, {}, refuse_list};
    return {true, entries, ""};
  }

  std::map<std::string, File> files;               // by path
  std::map<std::string, std::string> other_names;  // what a description's path means here instead
  std::vector<family::Entry> entries;
  uid_t owner = 0;  // of what is taken
  std::string refuse_look, refuse_take, refuse_restore, refuse_list;
  std::function<void()> on_take;  // in front of the move
  std::vector<std::pair<family::Event, uid_t>> looks, takes;

 private:
  StoreAnswer Find(const family::Event& event, const std::string& refusal) const {
    if (!refusal.empty()) return {false, refusal, {}};
    const auto kind = family::KindOfMonitor(event.monitor);
    const std::string path(kind ? family::ReadDescription(*kind, event.description).path : "");
    const auto other = other_names.find(path);
    const auto file = files.find(other == other_names.end() ? path : other->second);
    if (file == files.end()) return {false, "no file", {}};
    if (!event.sha256.empty() && event.sha256 != file->second.sha256) return {false, "other contents", {}};
    return {true,
            "took " + file->first + ".",
            {file->first, file->second.sha256, file->second.id, file->second.others}};
  }
};

}  // namespace zendrix::act
