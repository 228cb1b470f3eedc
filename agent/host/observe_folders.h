// Folders that intruders like. System folders (programs installed by hand, scheduled jobs, log-in scripts,
// rights) are listed whole, since a change there is news; of the folders where anybody may write only files
// that can be run are listed. No folder is searched deeper than its own entries.
#pragma once

#include <string>
#include <vector>

#include "agent/events/snapshot.h"
#include "agent/host/host_view.h"

namespace zendrix::agent {

// The path of each file.
std::vector<Item> ObserveFolders(HostView& host);

// The folders that it reads, whether they exist or not; ld.so.preload in /etc is looked at beside them.
std::vector<std::string> FoldersLookedAt();

}  // namespace zendrix::agent
