#include "agent/sources/notice_stream.h"

#include <sys/inotify.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "platform/linux/posix.h"

namespace zendrix::agent {
namespace {

constexpr std::uint32_t kOfTheFolder = IN_DELETE_SELF | IN_MOVE_SELF | IN_IGNORED | IN_UNMOUNT;
// IN_MODIFY would tell of every write into every file; the record of log-ins alone is never closed by those
// who write it, so its folder is asked for that too (see Watch).
constexpr std::uint32_t kChanges = IN_CLOSE_WRITE | IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO |
                                   IN_ATTRIB | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr const char* kWrittenInPlace = "/run";

class InotifyStream : public NoticeStream {
 public:
  explicit InotifyStream(platform::FileDescriptor file) : file_(std::move(file)) {}

  platform::Result<int> Watch(const std::string& folder) override {
    const std::uint32_t wanted = folder == kWrittenInPlace ? kChanges | IN_MODIFY : kChanges;
    const int number = inotify_add_watch(file_.get(), folder.c_str(), wanted | IN_ONLYDIR);
    if (number < 0) return platform::ErrorFromErrno(errno, folder);
    return number;
  }

  std::string Read() override {
    const ssize_t got = read(file_.get(), room_.data(), room_.size());
    return std::string(room_.data(), got > 0 ? static_cast<std::size_t>(got) : 0);
  }

  int Handle() const override { return file_.get(); }

 private:
  platform::FileDescriptor file_;
  std::vector<char> room_ = std::vector<char>(65536);
};

}  // namespace

std::vector<Notice> ParseNotices(std::string_view bytes) {
  std::vector<Notice> notices;
  inotify_event head;
  while (bytes.size() >= sizeof head) {
    std::memcpy(&head, bytes.data(), sizeof head);
    bytes.remove_prefix(sizeof head);
    if (head.len > bytes.size()) break;
    std::string_view name = bytes.substr(0, head.len);
    bytes.remove_prefix(head.len);
    name = name.substr(0, name.find('\0'));
    notices.push_back(
        {head.wd, (head.mask & IN_Q_OVERFLOW) != 0, (head.mask & kOfTheFolder) != 0, std::string(name)});
  }
  return notices;
}

platform::Result<std::unique_ptr<NoticeStream>> OpenInotify() {
  platform::FileDescriptor file(inotify_init1(IN_NONBLOCK | IN_CLOEXEC));
  if (!file) return platform::ErrorFromErrno(errno, "inotify");
  return std::unique_ptr<NoticeStream>(std::make_unique<InotifyStream>(std::move(file)));
}

}  // namespace zendrix::agent
