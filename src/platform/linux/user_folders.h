// The user's own folders, as the XDG Base Directory Specification has them: a variable that is unset, empty
// or relative counts as its default below the home folder.
#pragma once

#include <string>

#include "platform/result.h"

namespace zendrix::platform {

// Absolute paths without a closing separator.
struct UserFolders {
  std::string config;  // XDG_CONFIG_HOME, by default ~/.config
  std::string state;   // XDG_STATE_HOME, by default ~/.local/state
};

// Of this process's user. Where the environment names no home folder it is that of the user's account; a user
// without any is given one that nobody has.
UserFolders FindUserFolders();

// Makes the folder, and those above it that are missing, each with the rights 0700.
Status MakePrivateFolder(const std::string& path);

}  // namespace zendrix::platform
