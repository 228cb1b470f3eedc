// The words behind `grid`: a subcommand, its options and its arguments. Options are those that the subcommand
// takes, as "--name value" or "--name=value", and --file of all of them; behind "--" there are none.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "inspect/commands.h"

namespace zendrix::inspect {

struct GridOptions {
  std::vector<std::string> with_value;
  std::vector<std::string> flags;
};

class GridWords {
 public:
  // Throws WrongUsage for an option that there is not, and for one without its value. `words` are those
  // behind the subcommand.
  GridWords(const Words& words, const GridOptions& options);

  // The arguments, in their order.
  const Words& plain() const { return plain_; }
  bool Has(const std::string& flag) const { return values_.contains(flag); }
  std::optional<std::string> Value(const std::string& option) const;
  // The file that the grid is to show; empty for the folder's own.
  std::string file() const { return Value("--file").value_or(""); }

 private:
  Words plain_;
  std::map<std::string, std::string> values_;
};

}  // namespace zendrix::inspect
