// Where no service manager looks after the Agent: one that knows a single service, the recorder that stands
// beside the console, and a single folder, into which that recorder writes.
//
// The recorder holds the lock file of the folder as long as it runs (process_lock.h); its holder is believed
// to be the Agent when it runs the very file that stands beside the console (device and inode of its
// executable, so that a namesake is none) and belongs to this user. It is looked at and signalled through a
// descriptor of the process, taken before the lock is asked a second time: its number cannot have become
// another's. A recorder that is started is no child in any lasting sense: it goes on when the console ends.
//
// Every call is bounded by the deadline; none waits for anything but the recorder. Results of Run, further to
// those of linux_service_manager.h:
//
//   0  the recorder has written its first look, or has ended
//   2  the recorder may not be executed, or not be signalled
//   6  a stop when no recorder of this user writes into the folder
//   7  the deadline: the recorder is left as it is
//   8  the recorder ended before its first look was written, or could not be started for want of memory
//   9  the recorder's file went away
//  10  a start when the recorder runs already, also when another console was faster
//  19  a start when another program, or another version or user's recorder, holds the folder
//
// Errors of both calls: kNotFound for any other service, and when no recorder stands beside the console.
#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <vector>

#include "platform/linux/posix.h"
#include "platform/service_manager.h"

namespace zendrix::platform {

// In the folder that the recorder writes into.
inline constexpr char kRecorderLock[] = "zendrix-recorder.lock";
inline constexpr char kRecorderProgram[] = "zendrix-recorder";
// The recorder's exit status when another one holds the folder.
inline constexpr int kFolderTaken = 3;

struct LocalService {
  std::string name;                    // of the service, letter case does not matter
  std::string program;                 // path of the recorder
  std::string folder;                  // that the recorder writes into
  std::vector<std::string> arguments;  // of the recorder, further to the folder
  std::chrono::milliseconds deadline = std::chrono::seconds(10);
};

// The recorder that stands in `program_folder`, beside the console, as the Agent called `name` of the folder
// that the console reads, in the form of the console's edition.
LocalService RecorderBeside(const std::string& program_folder, std::string name, const std::string& folder,
                            bool home_edition);

class LocalServiceManager : public ServiceManager {
 public:
  explicit LocalServiceManager(LocalService service) : service_(std::move(service)) {}

  // Whether a recorder has ever been at work in the folder: then it is this folder's Agent, running or not.
  bool InCharge() const;

  Result<int> Run(const std::string& service, ServiceMethod method) override;
  // State: "Running", "Start Pending" before the first look, or "Stopped"; start mode: "Manual".
  Result<ServiceProperties> Properties(const std::string& service) override;

  // The process of the recorder; nothing when none of this user's writes into the folder.
  std::optional<pid_t> Process() const;

 private:
  struct Recorder;

  bool Knows(const std::string& service) const;
  std::string LockPath() const;
  std::optional<Recorder> Find() const;
  int Start() const;
  int Stop() const;
  int WaitForFirstLook(pid_t child) const;
  int WhyEnded(pid_t child) const;

  LocalService service_;
};

}  // namespace zendrix::platform
