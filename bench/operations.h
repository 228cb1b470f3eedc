// What zendrix-bench can measure, by name.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "measure.h"

namespace zendrix::bench {

struct NamedOperation {
  std::string_view name;
  std::string_view about;  // for the usage text
  // One repetition on the file; `arguments` are those that stand behind it on the command line.
  std::function<Operation(const std::string& file, const std::vector<std::string>& arguments)> make;
};

const std::vector<NamedOperation>& Operations();

}  // namespace zendrix::bench
