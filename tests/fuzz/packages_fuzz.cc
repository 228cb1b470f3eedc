// Records of the package manager as whoever became root may leave them: no reading crashes, and a file is
// only said to be a package's when the list names it, and unchanged only when the sums do not say otherwise.
// An input is the list, then the sums, parted by the first NUL.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "agent/host/text.h"
#include "agent/score/packages.h"
#include "unit/agent/fake_host.h"

namespace {

using namespace zendrix::agent;

constexpr char kSum[] = "0123456789abcdef0123456789abcdef";

void Require(bool holds) {
  if (!holds) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string_view list = input.substr(0, input.find('\0'));
  const std::string_view sums = input.substr(std::min(list.size() + 1, input.size()));
  const std::string folder = "/var/lib/dpkg/info";
  FakeHost host;
  host.facts[folder] = {EntryKind::kFolder, 0755, 0, 7};
  host.facts[folder + "/pkg.list"] = {EntryKind::kFile, 0644, static_cast<std::int64_t>(list.size()), 5};
  host.texts[folder + "/pkg.list"] = std::string(list);
  host.texts[folder + "/pkg.md5sums"] = std::string(sums);
  Packages packages(host);
  Require(!packages.OwnerOf("", kSum) && !packages.OwnerOf("/", kSum) &&
          !packages.OwnerOf("usr/bin/x", kSum));
  // The second is the same file in records from before the two folders became one.
  const std::string names[] = {"/usr/bin/x", "/bin/x"};
  const auto listed = [&](const std::string& name) {
    const auto lines = SplitLines(list);
    return std::find(lines.begin(), lines.end(), name) != lines.end();
  };
  const auto owner = packages.OwnerOf(names[0], kSum);
  Require(owner.has_value() == (listed(names[0]) || listed(names[1])));
  if (!owner) return 0;
  Require(owner->package == "pkg" && owner->installed == 0);
  const std::string named = "  " + (listed(names[0]) ? names[0] : names[1]).substr(1);
  // Where the sums name the file nowhere, or only with this sum, it is as it was built.
  const bool is_named = sums.find(named.substr(2)) != std::string_view::npos;
  const bool has_sum = sums.find(kSum) != std::string_view::npos;
  if (!is_named) Require(owner->unchanged);
  if (SplitLines(sums).size() == 1 && sums.starts_with(std::string(kSum) + named + "\n"))
    Require(owner->unchanged);
  if (!has_sum && SplitLines(sums).size() == 1 &&
      sums.size() == std::string(kSum).size() + named.size() + 1 && sums.ends_with(named + "\n")) {
    Require(!owner->unchanged);
  }
  return 0;
}
