// Where no service manager looks after the Agent: one that knows a single service, the Agent that stands
// beside the console, and a single folder, into which that Agent writes.
//
// The Agent holds the lock file of the folder as long as it runs (process_lock.h); its holder is believed
// to be the Agent when it runs the very file that stands beside the console (device and inode of its
// executable, so that a namesake is none) and belongs to this user. It is looked at and signalled through a
// descriptor of the process, taken before the lock is asked a second time: its number cannot have become
// another's. An Agent that is started is no child in any lasting sense: it goes on when the console ends.
//
// Every call is bounded by the deadline; none waits for anything but the Agent. Results of Run, further to
// those of linux_service_manager.h:
//
//   0  the Agent has written its first look, or has ended
//   2  the Agent may not be executed, or not be signalled
//   6  a stop when no Agent of this user writes into the folder
//   7  the deadline: the Agent is left as it is
//   8  the Agent ended before its first look was written, or could not be started for want of memory
//   9  the Agent's file went away
//  10  a start when the Agent runs already, also when another console was faster
//  19  a start when another program, or another version or user's Agent, holds the folder
//
// Errors of both calls: kNotFound for any other service, and when no Agent stands beside the console.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/posix.h"
#include "platform/service_manager.h"

namespace zendrix::platform {

// In the folder that the Agent writes into.
inline constexpr char kAgentLock[] = "zendrix-agent.lock";
inline constexpr char kAgentProgram[] = "zendrix-agent";
// The Agent's exit status when another one holds the folder.
inline constexpr int kFolderTaken = 3;

struct LocalService {
  std::string name;                    // of the service, letter case does not matter
  std::string program;                 // path of the Agent
  std::string folder;                  // that the Agent writes into
  std::vector<std::string> arguments;  // of the Agent, further to the folder
  std::chrono::milliseconds deadline = std::chrono::seconds(10);
};

// The Agent that stands in `program_folder`, beside the console, as the Agent called `name` of the folder
// that the console reads, in the form of the console's edition.
LocalService AgentBeside(const std::string& program_folder, std::string name, const std::string& folder,
                         bool home_edition);

class LocalServiceManager : public ServiceManager {
 public:
  explicit LocalServiceManager(LocalService service) : service_(std::move(service)) {}

  // Whether an Agent has ever been at work in the folder: then it is this folder's Agent, running or not.
  bool InCharge() const;

  Result<int> Run(const std::string& service, ServiceMethod method) override;
  // State: "Running", "Start Pending" before the first look, or "Stopped"; start mode: "Manual".
  Result<ServiceProperties> Properties(const std::string& service) override;

  // The process of the Agent; nothing when none of this user's writes into the folder.
  std::optional<pid_t> Process() const;

 private:
  struct Agent;

  bool Knows(const std::string& service) const;
  std::string LockPath() const;
  std::optional<Agent> Find() const;
  int Start() const;
  int Stop() const;
  int WaitForFirstLook(pid_t child) const;
  int WhyEnded(pid_t child) const;

  LocalService service_;
};

}  // namespace zendrix::platform
