#include "platform/linux/poll_loop.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <limits>
#include <vector>

#include "platform/linux/linux_clock.h"

namespace zendrix::platform {

static_assert(std::atomic<bool>::is_always_lock_free, "Quit is called from signal handlers");

PollLoop::PollLoop()
    : timers_([] { return LinuxClock().MonotonicMs(); }), wake_(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

void PollLoop::Quit() {
  const int saved = errno;
  quit_.store(true);
  const std::uint64_t one = 1;
  [[maybe_unused]] const ssize_t written = write(wake_.get(), &one, sizeof one);
  errno = saved;
}

std::int64_t PollLoop::UntilNextTimer() const {
  const auto due = timers_.NextDue();
  if (!due) return -1;
  return std::clamp<std::int64_t>(*due - LinuxClock().MonotonicMs(), 0, std::numeric_limits<int>::max());
}

void PollLoop::Run() {
  while (!quit_.load()) {
    Poll(static_cast<int>(UntilNextTimer()));
    if (!quit_.load()) timers_.FireDue();
  }
  quit_.store(false);
  std::uint64_t count = 0;
  [[maybe_unused]] const ssize_t drained = read(wake_.get(), &count, sizeof count);
}

void PollLoop::WatchReadable(int fd, std::function<void()> on_readable) {
  watched_[fd] = std::move(on_readable);
}

void PollLoop::StopWatching(int fd) {
  watched_.erase(fd);
}

void PollLoop::ProcessMessages() {
  WaitForMessages(0);
}

void PollLoop::WaitForMessages(std::int64_t longest_ms) {
  const std::int64_t timer = UntilNextTimer();
  Poll(static_cast<int>(timer < 0 ? longest_ms : std::min(timer, longest_ms)));
  timers_.FireDue();
}

void PollLoop::Poll(int timeout_ms) {
  std::vector<pollfd> waiting{{wake_.get(), POLLIN, 0}};
  for (const auto& watched : watched_) waiting.push_back({watched.first, POLLIN, 0});
  if (poll(waiting.data(), waiting.size(), timeout_ms) <= 0) return;
  for (std::size_t i = 1; i < waiting.size(); ++i) {
    if (waiting[i].revents == 0) continue;
    // An earlier call may have ended the watching of this one.
    const auto found = watched_.find(waiting[i].fd);
    if (found == watched_.end()) continue;
    if (waiting[i].revents & POLLNVAL) {
      // Closed without being taken off: it would wake the loop for ever.
      watched_.erase(found);
      continue;
    }
    const auto on_readable = found->second;
    on_readable();
  }
}

}  // namespace zendrix::platform
