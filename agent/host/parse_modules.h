// The kernel's list of loaded modules, /proc/modules (see proc(5)): one line each, the name its first word.
#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>

namespace zendrix::agent {

inline constexpr char kModulesFile[] = "/proc/modules";
inline constexpr std::size_t kModulesLimit = 1U << 20U;  // bytes; a desktop's list has 10,000

// Raw names. A last line without an end may be cut and is left out.
std::set<std::string> ParseModules(std::string_view text);

}  // namespace zendrix::agent
