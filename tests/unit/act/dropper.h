// A program of the test's own that does nothing but run, in a folder that outlives a restart.
#pragma once

#include <gtest/gtest.h>
#include <linux/magic.h>
#include <signal.h>
#include <spawn.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/wait.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>

namespace zendrix::test {

inline std::string FolderOnDisk() {
  for (const char* path : {"/var/tmp", "/tmp", "."}) {
    struct statfs system = {};
    if (statfs(path, &system) == 0 && system.f_type != TMPFS_MAGIC && access(path, W_OK) == 0)
      return std::filesystem::canonical(path);
  }
  throw std::runtime_error("no folder on a disk to be had");
}

class Dropper {
 public:
  explicit Dropper(std::string path) : path_(std::move(path)) {
    Write();
    Start();
  }
  Dropper(const Dropper&) = delete;
  Dropper& operator=(const Dropper&) = delete;
  ~Dropper() { End(); }

  // The same contents anew.
  void Write() const {
    std::filesystem::remove(path_);
    std::filesystem::copy_file("/bin/sleep", path_);
    chmod(path_.c_str(), 0755);
  }
  void Start() {
    End();
    const char* arguments[] = {"dropper", "1000", nullptr};
    EXPECT_EQ(posix_spawn(&process_, path_.c_str(), nullptr, nullptr, const_cast<char**>(arguments), environ),
              0);
  }
  // Whether somebody has ended it; waits for the end of one that is ended.
  bool WasKilled() {
    int status = 0;
    if (process_ == 0 || waitpid(process_, &status, WNOHANG) != process_) return false;
    process_ = 0;
    return WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL;
  }
  bool IsThere() const { return std::filesystem::exists(path_); }
  pid_t process() const { return process_; }
  const std::string& path() const { return path_; }

 private:
  void End() {
    if (process_ == 0) return;
    kill(process_, SIGKILL);
    waitpid(process_, nullptr, 0);
    process_ = 0;
  }

  const std::string path_;
  pid_t process_ = 0;
};

}  // namespace zendrix::test
