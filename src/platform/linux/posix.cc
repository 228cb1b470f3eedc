#include "platform/linux/posix.h"

#include <pthread.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <system_error>
#include <thread>

#include "platform/files.h"

namespace zendrix::platform {
namespace {

ErrorKind KindOf(int number) {
  switch (number) {
    case ENOENT:
    case ENOTDIR:
      return ErrorKind::kNotFound;
    case EACCES:
    case EPERM:
    case EBUSY:
    case EAGAIN:
    case ETXTBSY:
    case EROFS:
      return ErrorKind::kPermissionDenied;
    case EEXIST:
      return ErrorKind::kAlreadyExists;
    case ELOOP:  // a link, where none may be followed
    case EISDIR:
    case ENXIO:  // a pipe or device that nobody serves
    case ENODEV:
      return ErrorKind::kNotRegular;
    case ENOSPC:
    case EDQUOT:
      return ErrorKind::kNoSpace;
    default:
      return ErrorKind::kOther;
  }
}

}  // namespace

FileDescriptor& FileDescriptor::operator=(FileDescriptor&& other) noexcept {
  if (this != &other) {
    Close();
    fd_ = other.Take();
  }
  return *this;
}

int FileDescriptor::Take() {
  const int fd = fd_;
  fd_ = -1;
  return fd;
}

bool FileDescriptor::Close() {
  const int fd = Take();
  return fd < 0 || close(fd) == 0 || errno == EINTR;
}

Error ErrorFromErrno(int number, std::string_view subject) {
  std::string text(subject);
  text += ": ";
  text += std::generic_category().message(number);
  return {KindOf(number), std::move(text)};
}

bool HasNul(std::string_view text) {
  return text.find('\0') != std::string_view::npos;
}

std::string FindProgram(const std::string& name) {
  const char* path = std::getenv("PATH");
  std::string_view rest = path ? path : "/usr/local/bin:/usr/bin:/bin";
  for (;;) {
    const std::size_t end = rest.find(':');
    const std::string_view folder = rest.substr(0, end);
    if (folder.starts_with('/')) {
      std::string candidate = JoinPath(folder, name);
      struct stat status {};
      if (stat(candidate.c_str(), &status) == 0 && S_ISREG(status.st_mode) &&
          access(candidate.c_str(), X_OK) == 0) {
        return candidate;
      }
    }
    if (end == std::string_view::npos) return {};
    rest.remove_prefix(end + 1);
  }
}

bool RunInBackground(std::function<void()> body) {
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  // A thread begins with the mask of the one that makes it.
  pthread_sigmask(SIG_SETMASK, &all, &before);
  bool running = true;
  try {
    std::thread(std::move(body)).detach();
  } catch (const std::system_error&) {
    running = false;
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  return running;
}

}  // namespace zendrix::platform
