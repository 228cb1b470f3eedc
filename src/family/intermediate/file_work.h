// The small steps that quarantine is made of. Each refuses with a plain sentence when it fails.
#pragma once

#include <string>

#include "family/intermediate/descriptor.h"
#include "family/intermediate/manifest.h"

namespace zendrix::family {

// 32 hexadecimal digits that nobody can guess.
std::string RandomName();

// SHA-256 of the whole file, read from its beginning; with a valid `copy` every byte goes there too.
std::string HashAndCopy(const Descriptor& file, int copy);

// A new file with these bytes, on the disk when this returns.
void WriteNewFile(int folder, const std::string& name, const std::string& bytes);
// Contents of a small plain file; empty when it cannot be had.
std::string ReadSmallFile(int folder, const std::string& name);

// Renames without ever overwriting. False when the two folders are on different file systems.
bool RenameNoReplace(int from_folder, const std::string& from, int to_folder, const std::string& to);

// Gives the file owner, mode and times back. An owner that may not be given stays as it is.
void Restore(const Descriptor& file, const Manifest& manifest);

// Whether the name in the folder is this very file.
bool IsStill(int folder, const std::string& name, const struct stat& status);

}  // namespace zendrix::family
