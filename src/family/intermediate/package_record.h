// What the package manager of this computer knows of a file.
#pragma once

#include "family/intermediate/named_file.h"
#include "family/intermediate/outside.h"

namespace zendrix::family {

enum class Packaged {
  kNo,       // no package has a file there
  kAsBuilt,  // a package has it, and has it so, or does not say how
  kAltered,  // a package has it with other contents
  kUnknown,  // the package manager did not say
};

// By the records of dpkg: "info/NAME.list" says which paths a package has, "info/NAME.md5sums" what is in
// them. A path counts under both of its names where "/bin" is a link to "/usr/bin" and the like, and a file
// of the same name that is the same on the disk counts wherever it is mounted. Other package managers are
// asked by their own tool. `file` must be open for reading.
Packaged PackagedAs(const NamedFile& file, const Outside& outside);

}  // namespace zendrix::family
