// The name of a program or file as lines and decisions know it. CleanName (see text.h) may write two names
// alike; where it changed or cut something, the name here ends in "~" and twelve hexadecimal digits of the
// SHA-256 of the host's bytes, so that no two are alike. A name that reads as if it had such an end, or as if
// a mount namespace had been added to it, is given one too.
#pragma once

#include <string>
#include <string_view>

namespace zendrix::agent {

std::string DistinctName(std::string_view raw);
// With such an end in any case: for a name that could pass for another thing's.
std::string MarkedName(std::string_view raw);

}  // namespace zendrix::agent
