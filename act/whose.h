// Whether a file is plainly the affair of the one who wants it blocked: his own, or below his home. Whatever
// starts by itself for the whole computer is not, whoever owns it.
#pragma once

#include <sys/types.h>

#include <string>
#include <vector>

namespace zendrix::act {

struct Whose {
  uid_t user = 0;
  std::string home;                        // counts only when it is his own; may be empty
  std::vector<std::string> shared_starts;  // folders whose entries start for everybody
};

// `path` is absolute and leads through no link. Folders are told apart by what they are, not by their names.
bool IsOthers(const std::string& path, uid_t owner, const Whose& caller);

}  // namespace zendrix::act
