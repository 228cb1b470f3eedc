#include "core/desc_lookup.h"

#include <algorithm>

#include "core/run_time_error.h"

namespace zendrix::core {
namespace {

// The text behind the first `key` in the line; empty when the key is not in it.
std::string Behind(std::string_view line, std::string_view key) {
  const std::size_t at = line.find(key);
  return at == std::string_view::npos ? std::string() : std::string(line.substr(at + key.size()));
}

}  // namespace

bool DescLookup(const DescArray& lines, std::string_view key, std::string& text) {
  const auto found = std::find_if(lines.begin(), lines.end(), [&](const std::string& line) {
    return line.find(key) != std::string::npos;
  });
  if (found == lines.end()) return false;
  text = Behind(*found, key);
  return true;
}

std::string DescAt(const DescArray& lines, std::size_t n) {
  if (lines.empty()) return kDescriptionNotAvailable;
  if (n >= lines.size()) Raise(kSubscriptOutOfRange);
  return Behind(lines[n], std::to_string(static_cast<long>(n) - 1) + ",");
}

}  // namespace zendrix::core
