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

// With single slashes and without ".". Where `up`, each ".." takes the name in front of it away.
std::string Tidied(std::string_view path, bool up) {
  std::string tidy;
  const bool is_absolute = path.starts_with("/");
  while (!path.empty()) {
    const std::size_t slash = std::min(path.find('/'), path.size());
    const std::string_view name = path.substr(0, slash);
    path.remove_prefix(std::min(slash + 1, path.size()));
    if (name.empty() || name == ".") continue;
    if (name == ".." && up && is_absolute) {
      tidy.resize(tidy.empty() ? 0 : tidy.rfind('/'));
      continue;
    }
    if (is_absolute || !tidy.empty()) tidy += '/';
    tidy += name;
  }
  return tidy.empty() && is_absolute ? "/" : tidy;
}

// Whether Tidied would change nothing, as of nearly every path: the kernel writes them so.
bool IsTidy(std::string_view path) {
  if (!path.starts_with("/") || path.ends_with("/")) return false;
  for (std::size_t at = path.find('/', 1); at != std::string_view::npos; at = path.find('/', at + 1)) {
    if (path[at + 1] == '/' || path[at + 1] == '.') return false;
  }
  return path.size() > 1 && path[1] != '.' && path[1] != '/';
}

bool HasStepUp(std::string_view path) {
  for (std::size_t at = path.find(".."); at != std::string_view::npos; at = path.find("..", at + 1)) {
    const bool begins = at == 0 || path[at - 1] == '/';
    if (begins && (at + 2 == path.size() || path[at + 2] == '/')) return true;
  }
  return false;
}

bool IsTemporary(std::string_view tidy) {
  return BeginsWithAny(tidy, {"/tmp/", "/var/tmp/", "/dev/shm/", "/run/shm/", "/run/user/"});
}

bool IsOfSystem(std::string_view tidy) {
  return BeginsWithAny(
      tidy, {"/usr/", "/bin/", "/sbin/", "/lib/", "/lib64/", "/lib32/", "/opt/", "/snap/", "/nix/store/"});
}

// "base", or "base" with one of these characters or a digit behind it.
bool IsThread(std::string_view name, std::string_view base, std::string_view ends) {
  if (!name.starts_with(base)) return false;
  if (name.size() == base.size()) return true;
  const char next = name[base.size()];
  return ends.find(next) != std::string_view::npos ||
         (ends.find('0') != std::string_view::npos && next >= '0' && next <= '9');
}

}  // namespace

std::string NormalPath(std::string_view path) {
  return Tidied(path, true);
}

bool InTemporaryFolder(std::string_view path) {
  if (IsTidy(path)) return IsTemporary(path);
  return IsTemporary(Tidied(path, true)) || IsTemporary(Tidied(path, false));
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
  if (IsTidy(path)) return IsOfSystem(path);
  return !HasStepUp(path) && IsOfSystem(Tidied(path, false));
}

bool IsInterpreter(std::string_view path) {
  std::string_view name = path.substr(path.rfind('/') + 1);
  // "python3.11"
  const std::size_t end = name.find_last_not_of("0123456789.-");
  if (end != std::string_view::npos) name = name.substr(0, end + 1);
  static constexpr std::string_view kNames[] = {
      "awk",     "bash", "busybox", "csh",    "dash", "deno", "fish",  "gawk",   "gjs",  "guile",
      "java",    "ksh",  "lua",     "luajit", "mawk", "mono", "node",  "nodejs", "perl", "php",
      "php-cgi", "pwsh", "pypy",    "python", "ruby", "sh",   "tclsh", "tcsh",   "wine", "zsh"};
  return std::find(std::begin(kNames), std::end(kNames), name) != std::end(kNames);
}

bool IsLoader(std::string_view path) {
  const std::string_view name = path.substr(path.rfind('/') + 1);
  return name.starts_with("ld") && (name.ends_with(".so") || name.find(".so.") != std::string_view::npos) &&
         (name == "ld.so" || name.starts_with("ld-") || name.starts_with("ld64.so"));
}

bool IsUsualPort(unsigned port) {
  static constexpr unsigned kPorts[] = {20,  21,  22,  23,  25,  37,  43,   53,   67,   68,  80,
                                        88,  110, 111, 119, 123, 135, 137,  139,  143,  161, 179,
                                        389, 443, 445, 465, 514, 515, 546,  547,  554,  587, 631,
                                        636, 853, 873, 990, 993, 995, 2049, 3306, 5353, 5432};
  return std::binary_search(std::begin(kPorts), std::end(kPorts), port);
}

bool LooksLikeKernelThread(std::string_view process_name) {
  const std::string_view name = process_name;
  if (name.size() > 1 && name[0] == '[') return name[1] >= 'a' && name[1] <= 'z';
  static constexpr std::string_view kWhole[] = {"kthreadd",  "khugepaged",  "khungtaskd", "kauditd",
                                                "kdevtmpfs", "oom_reaper",  "ksmd",       "kblockd",
                                                "kthrotld",  "kintegrityd", "rcu_gp",     "rcu_par_gp",
                                                "rcu_sched", "rcu_bh",      "rcu_preempt"};
  if (std::find(std::begin(kWhole), std::end(kWhole), name) != std::end(kWhole)) return true;
  // A number or a name of the kernel's stands behind these.
  static constexpr std::string_view kBeginnings[] = {
      "migration/", "cpuhp/", "irq/",     "jbd2/",    "rcub/",     "rcuc/",    "rcuop/",
      "rcuos/",     "rcuog/", "xfsaild/", "scsi_eh_", "rcu_tasks", "rcu_exp_", "idle_inject/"};
  for (const std::string_view beginning : kBeginnings) {
    if (name.size() > beginning.size() && name.starts_with(beginning)) return true;
  }
  return IsThread(name, "kworker", "/") || IsThread(name, "ksoftirqd", "/") ||
         IsThread(name, "kswapd", "0") || IsThread(name, "kcompactd", "0");
}

}  // namespace zendrix::agent
