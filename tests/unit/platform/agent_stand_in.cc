// In the Agent's place: it takes the folder's lock as the Agent does, and then does what the file
// "plan" in the folder says (nothing there: it runs until it is told to end).
#include <csignal>
#include <ctime>
#include <fstream>
#include <iostream>
#include <string>

#include "platform/files.h"
#include "platform/linux/local_service_manager.h"
#include "platform/linux/process_lock.h"

int main(int argc, char** argv) {
  using namespace zendrix::platform;
  if (argc < 3 || std::string(argv[1]) != "--folder") return 2;
  const std::string folder = argv[2];
  std::string plan;
  std::ifstream(JoinPath(folder, "plan")) >> plan;
  // What it was started with, for the test to see.
  std::ofstream started(JoinPath(folder, "started"), std::ios::app);
  for (int i = 1; i < argc; ++i) started << argv[i] << ' ';
  started << std::endl;

  sigset_t end;
  sigemptyset(&end);
  sigaddset(&end, SIGTERM);
  sigprocmask(SIG_BLOCK, &end, nullptr);
  if (plan == "die") return 1;
  ProcessLock lock;
  const LockOutcome outcome = lock.Acquire(JoinPath(folder, kAgentLock));
  if (outcome == LockOutcome::kTaken) return kFolderTaken;
  if (outcome == LockOutcome::kUnusable || plan == "die-late") return 1;
  if (plan == "killed") raise(SIGKILL);
  if (plan != "slow") lock.SetReady();
  // With the test's folder it goes too, also when the test was cut short.
  constexpr timespec kGlance = {0, 100'000'000};
  while (lock.CanBeFound()) {
    if (sigtimedwait(&end, nullptr, &kGlance) == SIGTERM && plan != "stubborn") break;
  }
  return 0;
}
