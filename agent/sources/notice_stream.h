// Notices that something changed in a folder, as inotify(7) gives them. The twin in memory/ plays what a test
// gives it.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/result.h"

namespace zendrix::agent {

class NoticeStream {
 public:
  virtual ~NoticeStream() = default;
  // Has changes of the folder's entries told from now on; the number that its notices bear, the same again
  // for a folder that is watched already.
  virtual platform::Result<int> Watch(const std::string& folder) = 0;
  // The notices since the last call as the kernel lays them out; at most 64 KB, so that there may be more.
  virtual std::string Read() = 0;
  virtual int Handle() const = 0;
};

struct Notice {
  int folder = 0;         // number of its watch
  bool overflow = false;  // some were lost; the folder means nothing
  bool moved = false;     // the folder itself went or was moved
  std::string name;       // of the entry; the bytes that whoever made it chose
};

// A record that is cut ends the list.
std::vector<Notice> ParseNotices(std::string_view bytes);

platform::Result<std::unique_ptr<NoticeStream>> OpenInotify();

}  // namespace zendrix::agent
