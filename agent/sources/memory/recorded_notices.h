// Notices that a test gives, of folders that it says exist.
#pragma once

#include <cstring>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "agent/sources/notice_stream.h"

namespace zendrix::agent {

// What the test keeps of a stream that its source owns.
struct NoticeScript {
  std::set<std::string> folders;       // that exist
  std::map<std::string, int> numbers;  // of those that were asked for
  std::map<std::string, platform::Error> refused;
  std::string waiting;  // as the kernel lays them out

  // An entry of a watched folder changed; passed over when nobody asked for the folder.
  void Change(const std::string& folder, const std::string& name, std::uint32_t mask) {
    const auto number = numbers.find(folder);
    if (number == numbers.end()) return;
    Add(number->second, mask, name);
  }
  void Add(std::int32_t number, std::uint32_t mask, const std::string& name) {
    const std::uint32_t padded = name.empty() ? 0 : static_cast<std::uint32_t>(name.size() / 16 + 1) * 16;
    const std::uint32_t head[4] = {static_cast<std::uint32_t>(number), mask, 0, padded};
    waiting.append(reinterpret_cast<const char*>(head), sizeof head);
    std::string text = name;
    text.resize(padded);
    waiting += text;
  }
};

class RecordedNotices : public NoticeStream {
 public:
  explicit RecordedNotices(NoticeScript& script) : script_(script) {}
  platform::Result<int> Watch(const std::string& folder) override {
    const auto refused = script_.refused.find(folder);
    if (refused != script_.refused.end()) return refused->second;
    if (!script_.folders.contains(folder)) {
      return platform::Error{platform::ErrorKind::kNotFound, folder + ": none"};
    }
    return script_.numbers.try_emplace(folder, static_cast<int>(script_.numbers.size()) + 1).first->second;
  }
  std::string Read() override { return std::exchange(script_.waiting, {}); }
  int Handle() const override { return -1; }

 private:
  NoticeScript& script_;
};

}  // namespace zendrix::agent
