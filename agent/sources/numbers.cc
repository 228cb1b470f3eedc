#include "agent/sources/numbers.h"

#include <fcntl.h>
#include <linux/netlink.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>
#include <utility>

#include "agent/host/parse_link_stats.h"
#include "platform/linux/posix.h"

namespace zendrix::agent {
namespace {

constexpr char kPressureFile[] = "/proc/pressure/memory";
constexpr char kTrigger[] = "some 200000 2000000";  // microseconds; its NUL is part of what is written
constexpr int kRoom = 1 << 18;
constexpr int kMostParts = 1000;  // of one answer
constexpr int kNumbersAnswerMs = 100;

class KernelTrigger : public PressureTrigger {
 public:
  explicit KernelTrigger(platform::FileDescriptor file) : file_(std::move(file)) {}

  platform::Result<bool> Fired() override {
    pollfd wanted = {file_.get(), POLLPRI, 0};
    if (poll(&wanted, 1, 0) <= 0) return false;
    if ((wanted.revents & (POLLERR | POLLNVAL)) != 0)
      return platform::Error{platform::ErrorKind::kUnavailable, "the kernel took it away"};
    return (wanted.revents & POLLPRI) != 0;
  }

 private:
  platform::FileDescriptor file_;
};

}  // namespace

Numbers::Numbers(platform::Result<std::unique_ptr<PressureTrigger>> trigger,
                 platform::Result<std::unique_ptr<NetlinkStream>> links) {
  if (trigger) {
    trigger_ = std::move(trigger.value());
  } else {
    pressure_refusal_ = trigger.error().text;
  }
  if (links) {
    links_ = std::move(links.value());
  } else {
    links_refusal_ = links.error().text;
  }
}

bool Numbers::IsPressed() {
  if (!trigger_) return false;
  const auto fired = trigger_->Fired();
  if (fired) return fired.value();
  trigger_.reset();
  pressure_refusal_ = fired.error().text;
  return false;
}

std::optional<std::uint64_t> Numbers::TrafficBytes() {
  if (!links_) return {};
  std::optional<std::uint64_t> total;
  DumpPart part = links_->Send(LinkStatsQuestion()) ? DumpPart::kMore : DumpPart::kRefused;
  std::string datagram;
  for (int i = 0; i < kMostParts && part == DumpPart::kMore; ++i) {
    if (links_->Receive(datagram, kNumbersAnswerMs) != NetlinkStream::Outcome::kGot) break;
    part = ReadLinkStatsPart(datagram, total);
  }
  if (part == DumpPart::kDone) return total;
  // Half an answer would look like a fall of the counters, and the rest of it would come with the next one.
  links_.reset();
  links_refusal_ = part == DumpPart::kRefused ? "the kernel refused" : "the kernel did not answer to its end";
  return {};
}

platform::Result<std::unique_ptr<PressureTrigger>> OpenPressureTrigger() {
  platform::FileDescriptor file(open(kPressureFile, O_RDWR | O_NONBLOCK | O_CLOEXEC));
  if (!file) return platform::ErrorFromErrno(errno, kPressureFile);
  if (write(file.get(), kTrigger, sizeof kTrigger) < 0) return platform::ErrorFromErrno(errno, kPressureFile);
  return std::unique_ptr<PressureTrigger>(std::make_unique<KernelTrigger>(std::move(file)));
}

std::unique_ptr<Numbers> MakeNumbers() {
  return std::make_unique<Numbers>(OpenPressureTrigger(), OpenNetlink(NETLINK_ROUTE, 0, kRoom));
}

}  // namespace zendrix::agent
