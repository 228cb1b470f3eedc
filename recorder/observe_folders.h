// Folders that intruders like. System folders (programs installed by hand, scheduled jobs, log-in scripts,
// rights) are listed whole, since a change there is news; of the folders where anybody may write only files
// that can be run are listed. No folder is searched deeper than its own entries.
#pragma once

#include <vector>

#include "recorder/host_view.h"
#include "recorder/snapshot.h"

namespace zendrix::recorder {

// The path of each file.
std::vector<Item> ObserveFolders(HostView& host);

}  // namespace zendrix::recorder
