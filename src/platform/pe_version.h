// The version of a Windows program as its own version resource tells it, by the published layout of PE/COFF
// images and of their resources. Only the few headers on the way to that resource are read, however large the
// file is. Every number in the file is somebody else's: an image that breaks the layout anywhere on that way,
// and a file that is no image at all, has no version.
#pragma once

#include <cstddef>
#include <string>

#include "platform/files.h"

namespace zendrix::platform {

// What is read of a file at the most, in bytes.
inline constexpr std::size_t kMostReadForVersion = 64 * 1024;

// Four dotted numbers ("1.2.0.3"); empty without a version, and when the file cannot be read.
std::string PeFileVersion(Files& files, const std::string& path);

}  // namespace zendrix::platform
