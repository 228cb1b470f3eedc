// The small steps that quarantine is made of, all relative to open folders. Those that can fail refuse with a
// plain sentence; those that only say yes or no change nothing.
#pragma once

#include <sys/stat.h>

#include <cstdint>
#include <string>
#include <vector>

#include "family/intermediate/budget.h"
#include "family/intermediate/descriptor.h"
#include "family/intermediate/manifest.h"

namespace zendrix::family {

// 32 hexadecimal digits that nobody can guess.
std::string RandomName();

// SHA-256 of a file that is `size` bytes long, read from its beginning; with a `copy` of 0 or more every byte
// goes there too, and holes stay holes. Refuses a file that turns out longer, so that a file that grows and
// grows comes to an end, and one that is beyond the budget.
std::string HashAndCopy(const Descriptor& file, std::uint64_t size, int copy, Budget* budget = nullptr);

// A new file with these bytes, on the disk when this returns.
void WriteNewFile(int folder, const std::string& name, const std::string& bytes);
// A new empty file, for writing, that only its owner can read.
Descriptor CreateFile(int folder, const std::string& name);
// Contents of a small plain file; empty when it cannot be had.
std::string ReadSmallFile(int folder, const std::string& name);

std::vector<std::string> NamesIn(int folder);
bool Exists(int folder, const std::string& name);
// Nothing happens when it is not there.
void Remove(int folder, const std::string& name);
// May this process add and remove names in the folder?
bool MayChange(int folder);

// Whatever has the name, opened without doing anything to it: nothing is followed, waited for or set off.
// Invalid when there is nothing.
Descriptor OpenHandle(int folder, const std::string& name, struct stat& status);
// The very thing behind a handle, opened for reading. Invalid when this process may not.
Descriptor OpenForReading(const Descriptor& handle);
// The same for a file without permissions, which keep its own owner out as well unless he is the superuser:
// they are given for the moment of opening.
Descriptor OpenInSpite(const Descriptor& handle);
bool SetMode(const Descriptor& handle, mode_t mode);
// Takes every permission away, and when the superuser acts the owner too: whoever has the file open could
// give the permissions back. False when that is not permitted.
bool MakeOwn(const Descriptor& file);

// Renames without ever overwriting. False when the two folders are on different file systems.
bool RenameNoReplace(int from_folder, const std::string& from, int to_folder, const std::string& to);

// What was renamed in or out of the folder, on the disk.
void SyncFolder(int folder);
void SyncFile(const Descriptor& file);

// Gives the file owner, mode and times as the manifest has them, all of them or a refusal.
void Restore(const Descriptor& file, const Manifest& manifest);

// Whether the name in the folder is this very file.
bool IsStill(int folder, const std::string& name, const struct stat& status);

// Whether the name in the folder is a plain file with the contents that the manifest tells; in spite of
// missing permissions when those may be given for the moment.
bool Holds(int folder, const std::string& name, const Manifest& manifest);
bool HoldsInSpite(int folder, const std::string& name, const Manifest& manifest);

}  // namespace zendrix::family
