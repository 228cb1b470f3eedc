#include "agent/host/places.h"

#include <algorithm>
#include <initializer_list>
#include <iterator>

namespace zendrix::agent {
namespace {

bool BeginsWithAny(std::string_view text, std::initializer_list<std::string_view> beginnings) {
  return std::any_of(beginnings.begin(), beginnings.end(), [&](std::string_view beginning) {
    return text.substr(0, beginning.size()) == beginning;
  });
}

}  // namespace

bool InTemporaryFolder(std::string_view path) {
  return BeginsWithAny(path, {"/tmp/", "/var/tmp/", "/dev/shm/", "/run/shm/"});
}

bool IsHidden(std::string_view path) {
  for (std::size_t at = path.find("/."); at != std::string_view::npos; at = path.find("/.", at + 1)) {
    const std::string_view rest = path.substr(at + 1);
    const std::string_view name = rest.substr(0, rest.find('/'));
    if (name != "." && name != "..") return true;
  }
  return false;
}

bool InSystemFolder(std::string_view path) {
  return BeginsWithAny(
      path, {"/usr/", "/bin/", "/sbin/", "/lib/", "/lib64/", "/lib32/", "/opt/", "/snap/", "/nix/store/"});
}

bool IsUsualPort(unsigned port) {
  static constexpr unsigned kPorts[] = {20,  21,  22,  23,  25,  37,  43,   53,   67,   68,  80,
                                        88,  110, 111, 119, 123, 135, 137,  139,  143,  161, 179,
                                        389, 443, 445, 465, 514, 515, 546,  547,  554,  587, 631,
                                        636, 853, 873, 990, 993, 995, 2049, 3306, 5353, 5432};
  return std::binary_search(std::begin(kPorts), std::end(kPorts), port);
}

bool LooksLikeKernelThread(std::string_view process_name) {
  return BeginsWithAny(process_name,
                       {"[", "kworker", "ksoftirqd", "kthreadd", "migration/", "rcu_", "kswapd"});
}

}  // namespace zendrix::agent
