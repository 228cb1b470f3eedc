// What killed processes leave behind: the temporary files of whole-file writes. A writer holds a lock on its
// temporary until that has taken the target's place; a temporary that nobody holds belongs to nobody any more
// and is taken away by the next process that writes into its folder. So they never pile up.
#pragma once

#include <string>

namespace zendrix::platform {

inline constexpr char kTemporaryPrefix[] = ".zendrix-";
inline constexpr char kTemporarySuffix[] = ".tmp";

// Locks a temporary that was just made, until its last descriptor is closed or the process ends. False when
// it was taken for a left-over in the moment before: it's gone, and the writer needs another one.
bool ClaimTemporary(int fd);

// Removes the temporaries of a folder that nobody holds. Quiet.
void SweepLeftOvers(const std::string& folder);

}  // namespace zendrix::platform
