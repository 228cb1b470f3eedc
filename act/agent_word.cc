#include "act/agent_word.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <vector>

#include "platform/linux/posix.h"

namespace zendrix::act {

Told AgentFile::Search(RowSearch& search) const {
  constexpr std::size_t kBlock = std::size_t{64} << 10;
  const platform::FileDescriptor file(
      ::open(path_.c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  struct stat status = {};
  if (!file || ::fstat(file.get(), &status) != 0) return Told::kUnreadable;
  const bool believed = S_ISREG(status.st_mode) && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0 &&
                        (status.st_uid == agent_ || status.st_uid == 0);
  if (!believed) return Told::kUnreadable;
  std::vector<char> block(kBlock);
  for (std::size_t whole = 0; whole < kLargest && !search.Found();) {
    const ssize_t got = ::read(file.get(), block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return Told::kUnreadable;
    if (got == 0) break;
    whole += static_cast<std::size_t>(got);
    search.Take({block.data(), static_cast<std::size_t>(got)});
  }
  return search.Found() ? Told::kYes : Told::kNo;
}

Told AgentFile::Tells(const ShownEvent& event) {
  AlertSearch search(event);
  return Search(search);
}

Told AgentFile::TellsAlert(const ShownAlert& alert, std::string& description) {
  CodeSearch search(alert);
  const Told told = Search(search);
  description = search.description();
  return told;
}

}  // namespace zendrix::act
