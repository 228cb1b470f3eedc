// Folders that intruders like. System folders (programs installed by hand, scheduled jobs, log-in scripts,
// rights) are listed whole, since a change there is news; of the folders where anybody may write only files
// that can be run are listed. No folder is searched deeper than its own entries.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "agent/events/snapshot.h"
#include "agent/host/host_view.h"
#include "agent/host/shortfall.h"

namespace zendrix::agent {

// The path of each file. `named` are files of temporary folders that somebody told of: they are looked at
// even when the folder holds more names than a look takes. `missed`, where given, gathers what was left out.
std::vector<Item> ObserveFolders(HostView& host, const std::set<std::string>& named = {},
                                 Shortfall* missed = nullptr);

// The folders that it reads, whether they exist or not; ld.so.preload in /etc is looked at beside them,
// and so are the files of FilesLookedAt.
std::vector<std::string> FoldersLookedAt();
// Files of /etc that rule what runs or who has rights.
std::vector<std::string> FilesLookedAt();
bool IsTemporaryFolder(std::string_view folder);

}  // namespace zendrix::agent
