#include "agent/host/distinct_name.h"

#include <algorithm>

#include "agent/host/text.h"
#include "agent/score/digest.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kDigits = 12;

bool EndsInMark(std::string_view name) {
  if (name.size() <= kDigits) return false;
  const auto digits = name.substr(name.size() - kDigits);
  return name[name.size() - kDigits - 1] == '~' &&
         digits.find_first_not_of("0123456789abcdef") == std::string_view::npos;
}

bool NamesMountNamespace(std::string_view name) {
  return name.find(" in another mount namespace") != std::string_view::npos ||
         name.find(" in mount namespace ") != std::string_view::npos ||
         name.find(" in no mount namespace") != std::string_view::npos;
}

}  // namespace

std::string DistinctName(std::string_view raw) {
  // As the kernel calls what runs from memory. A file that is called as that is written is marked instead.
  constexpr std::string_view kInMemory = "/memfd:";
  if (raw.starts_with(kInMemory)) {
    const std::string name = "/memfd_" + DistinctName(raw.substr(kInMemory.size()));
    return name.size() > kNameLimit ? MarkedName(raw) : name;
  }
  if (raw.starts_with("/memfd_")) return MarkedName(raw);
  std::string name = CleanName(raw);
  if (name == raw && !EndsInMark(name) && !NamesMountNamespace(name)) return name;
  // Whole, so that what stands in for another character can be counted. Other characters that are written
  // otherwise than the host has them are written like no other.
  const std::string whole = CleanName(raw, raw.size() + 1);
  const bool is_lossy =
      std::count(whole.begin(), whole.end(), '_') != std::count(raw.begin(), raw.end(), '_') ||
      raw.find('\'') != std::string_view::npos || whole.size() > kNameLimit;
  return is_lossy || EndsInMark(name) || NamesMountNamespace(name) ? MarkedName(raw) : name;
}

std::string MarkedName(std::string_view raw) {
  return CleanName(raw, kNameLimit - kDigits - 1) + "~" + Sha256Of(raw).substr(0, kDigits);
}

}  // namespace zendrix::agent
