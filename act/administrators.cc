#include "act/administrators.h"

#include <grp.h>
#include <pwd.h>

#include <algorithm>
#include <vector>

namespace zendrix::act {

bool IsAdministrator(uid_t user) {
  const passwd* const account = ::getpwuid(user);
  if (!account) return false;
  int count = 256;
  std::vector<gid_t> groups(static_cast<std::size_t>(count));
  if (::getgrouplist(account->pw_name, account->pw_gid, groups.data(), &count) < 0) return false;
  groups.resize(static_cast<std::size_t>(count));
  // The same that polkit takes for administrators as it is delivered.
  return std::any_of(groups.begin(), groups.end(), [](gid_t group) {
    for (const char* name : {"sudo", "wheel"}) {
      const struct group* const known = ::getgrnam(name);
      if (known && known->gr_gid == group) return true;
    }
    return false;
  });
}

}  // namespace zendrix::act
