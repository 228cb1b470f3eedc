#include "inspect/grid_words.h"

#include <algorithm>

#include "inspect/document.h"

namespace zendrix::inspect {
namespace {

bool IsIn(const std::vector<std::string>& names, const std::string& name) {
  return std::find(names.begin(), names.end(), name) != names.end();
}

}  // namespace

GridWords::GridWords(const Words& words, const GridOptions& options) {
  bool plain = false;
  for (std::size_t i = 0; i < words.size(); ++i) {
    const std::string& word = words[i];
    if (plain || !LooksLikeOption(word)) {
      plain_.push_back(word);
      continue;
    }
    if (word == "--") {
      plain = true;
      continue;
    }
    const std::size_t equals = word.find('=');
    const std::string name = word.substr(0, equals);
    if (IsIn(options.flags, word)) {
      values_[word];
    } else if (name != "--file" && !IsIn(options.with_value, name)) {
      throw WrongUsage("unknown option " + word + " (arguments that begin with \"-\" stand behind --)");
    } else if (equals != std::string::npos) {
      values_[name] = word.substr(equals + 1);
    } else if (++i < words.size()) {
      values_[name] = words[i];
    } else {
      throw WrongUsage("option " + name + " needs a value");
    }
  }
}

std::optional<std::string> GridWords::Value(const std::string& option) const {
  const auto found = values_.find(option);
  return found == values_.end() ? std::nullopt : std::optional(found->second);
}

}  // namespace zendrix::inspect
