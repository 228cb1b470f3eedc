// Processes of a test's own. A handle stays with the process that had the number when it was opened.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include "act/processes.h"
#include "platform/memory/fake_clock.h"

namespace zendrix::act {

class MemoryProcesses : public Processes {
 public:
  struct Process {
    FileId file;
    std::int64_t began = 0;
    bool lives = true;
    bool resists = false;  // goes on in spite of being ended
    bool elsewhere = false;
    platform::FakeClock* clock = nullptr;  // that goes on while its end is waited for
  };

  // A new process with this number; one that had it before has ended.
  Process& Start(pid_t number, FileId file, std::int64_t began) {
    if (const auto old = by_number_.find(number); old != by_number_.end()) old->second->lives = false;
    auto process = std::make_shared<Process>(Process{file, began});
    by_number_[number] = process;
    return *process;
  }

  std::unique_ptr<HeldProcess> Hold(pid_t number) override {
    const auto found = by_number_.find(number);
    if (found == by_number_.end() || !found->second->lives) return nullptr;
    return std::make_unique<Handle>(found->second);
  }

 private:
  class Handle : public HeldProcess {
   public:
    explicit Handle(std::shared_ptr<Process> process) : process_(std::move(process)) {}
    Found Is(const ShownProgram& shown) override {
      if (!process_->lives || (shown.moment && process_->began > *shown.moment)) return Found::kGone;
      return process_->file == shown.file && !process_->elsewhere ? Found::kIt : Found::kAnother;
    }
    void Kill() override {
      if (!process_->resists) process_->lives = false;
    }
    bool HasEnded(std::int64_t milliseconds) override {
      if (process_->lives && process_->clock) process_->clock->Sleep(milliseconds);
      return !process_->lives;
    }

   private:
    std::shared_ptr<Process> process_;
  };

  std::map<pid_t, std::shared_ptr<Process>> by_number_;
};

}  // namespace zendrix::act
