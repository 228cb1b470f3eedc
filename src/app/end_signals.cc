#include "app/end_signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <csignal>

namespace zendrix::app {

namespace {

sigset_t Wanted() {
  sigset_t wanted;
  sigemptyset(&wanted);
  for (const int signal : {SIGTERM, SIGINT, SIGHUP}) sigaddset(&wanted, signal);
  return wanted;
}

}  // namespace

void EndSignals::Block() {
  const sigset_t wanted = Wanted();
  pthread_sigmask(SIG_BLOCK, &wanted, nullptr);
}

EndSignals::EndSignals(std::function<void()> on_end) : on_end_(std::move(on_end)) {
  const sigset_t wanted = Wanted();
  descriptor_ = signalfd(-1, &wanted, SFD_NONBLOCK | SFD_CLOEXEC);
  if (descriptor_ < 0) return;
  notifier_ = new QSocketNotifier(descriptor_, QSocketNotifier::Read, this);
  connect(notifier_, &QSocketNotifier::activated, this, [this] {
    signalfd_siginfo info;
    while (read(descriptor_, &info, sizeof info) == static_cast<ssize_t>(sizeof info)) {
    }
    on_end_();
  });
}

EndSignals::~EndSignals() {
  if (descriptor_ >= 0) close(descriptor_);
}

}  // namespace zendrix::app
