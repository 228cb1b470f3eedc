// A new file with the rights of another: the log that begins anew has to stay writable for whoever the
// administrator let write the one before, such as the mailer.
#pragma once

#include <functional>
#include <string>

namespace zendrix::agent {

// Makes the empty file `path` with the permission bits and the access list of `like`; nothing is made where
// one is there already or the rights cannot be given. Neither is followed when it is a link.
using MakeLike = std::function<bool(const std::string& path, const std::string& like)>;

// On the real disk. See acl(5): the list is the attribute system.posix_acl_access.
bool MakeFileLike(const std::string& path, const std::string& like);

}  // namespace zendrix::agent
