// Any file system with a fault at a chosen operation, for tests that go through every one of them in turn.
// The operations that change something are counted from 1 (reads too, when told so). An operation can be
// refused, or be the one at which the process is "killed": ProcessEnded is thrown, and from then on nothing
// has any effect, which is how the files look to the next start.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace zendrix::platform {

class FaultyFiles : public Files {
 public:
  // Exit status in the ProcessEnded of a kill.
  static constexpr int kKilledStatus = 137;

  // `below` must outlive this.
  explicit FaultyFiles(Files& below) : below_(below) {}

  // Refuses operation number n (from 1, counted from the construction).
  void FailAt(int n, ErrorKind kind) {
    fail_at_ = n;
    fail_kind_ = kind;
  }
  // Ends the process before operation number n has any effect, but that an append still gets its first
  // `appended` bytes into the file.
  void KillAt(int n, std::size_t appended = 0) {
    kill_at_ = n;
    appended_ = appended;
  }
  void CountReadsToo() { count_reads_ = true; }
  // Operations counted so far.
  int Operations() const { return operations_; }
  bool Killed() const { return killed_; }

  bool Exists(const std::string& path) override;
  bool FolderExists(const std::string& path) override;
  Result<std::int64_t> Size(const std::string& path) override;
  Result<std::unique_ptr<ReadStream>> Open(const std::string& path) override;
  Status WriteAll(const std::string& path, std::string_view bytes) override;
  Status Append(const std::string& path, std::string_view bytes) override;
  Status Remove(const std::string& path) override;
  Status Rename(const std::string& from, const std::string& to) override;
  Result<std::vector<std::string>> List(const std::string& folder) override;

 private:
  enum class Effect { kChange, kRead };
  // Counts one operation; the outcome is its refusal, if any. `before_end` is run just before a kill.
  template <class BeforeEnd>
  Status Begin(Effect effect, BeforeEnd before_end);
  Status Begin(Effect effect);

  Files& below_;
  int operations_ = 0;
  int fail_at_ = 0;
  ErrorKind fail_kind_ = ErrorKind::kOther;
  int kill_at_ = 0;
  std::size_t appended_ = 0;
  bool count_reads_ = false;
  bool killed_ = false;
};

}  // namespace zendrix::platform
