// Extended attributes of a file: access lists, capabilities, labels, a user's own.
#pragma once

#include <map>
#include <string>

#include "family/intermediate/descriptor.h"

namespace zendrix::family {

using Attributes = std::map<std::string, std::string>;

// All that this process may see; none on file systems that have no such thing. Refuses when they are there
// and cannot be read.
Attributes AttributesOf(const Descriptor& file);

// Gives the file these as well; what it has already is not written again. False when one cannot be given.
bool GiveAttributes(const Descriptor& file, const Attributes& attributes);

// A change of owner that takes no capabilities away, as the system otherwise does. False when not permitted.
bool ChangeOwner(const Descriptor& file, unsigned owner, unsigned group);

}  // namespace zendrix::family
