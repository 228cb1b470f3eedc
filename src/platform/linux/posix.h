// Small helpers around POSIX calls, shared by the units of this folder.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace zendrix::platform {

// Owns a file descriptor.
class FileDescriptor {
 public:
  explicit FileDescriptor(int fd = -1) : fd_(fd) {}
  FileDescriptor(FileDescriptor&& other) noexcept : fd_(other.Take()) {}
  FileDescriptor& operator=(FileDescriptor&& other) noexcept;
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;
  ~FileDescriptor() { Close(); }

  explicit operator bool() const { return fd_ >= 0; }
  int get() const { return fd_; }
  int Take();
  // False when the last writes turned out to have failed.
  bool Close();

 private:
  int fd_;
};

// The refusal that an errno value stands for, in the platform's words.
Error ErrorFromErrno(int number, std::string_view subject);

// A text that a C function would cut at its first NUL is no path at all.
bool HasNul(std::string_view text);

// First plain executable file of this name on PATH, absolute entries only; empty when there is none.
std::string FindProgram(const std::string& name);

// Runs `body` on a thread that nobody waits for and that gets no signals, so that handlers stay with the one
// thread that the program knows of. `body` may touch only what it owns. False when there is no thread to be
// had.
bool RunInBackground(std::function<void()> body);

}  // namespace zendrix::platform
