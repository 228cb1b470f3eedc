#include "agent/score/packages.h"

#include <algorithm>
#include <set>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

constexpr const char* kInfo = "/var/lib/dpkg/info";
constexpr std::size_t kListLimit = 8U << 20U;
constexpr std::size_t kMostPackages = 60000;
constexpr std::size_t kMostPaths = 4000000;
constexpr std::size_t kMd5Digits = 32;
constexpr std::uint64_t kNumberMask = 0xFFFF;
constexpr std::int64_t kNsPerSecond = 1000000000;

// FNV-1a. A hit is always held against the list itself, so that it need not be hard to meet.
std::uint64_t PlaceOf(std::string_view path) {
  std::uint64_t sum = 14695981039346656037U;
  for (const char byte : path) sum = (sum ^ static_cast<unsigned char>(byte)) * 1099511628211U;
  return sum & ~kNumberMask;
}

std::string FileOf(const std::string& name, const char* end) {
  return std::string(kInfo) + "/" + name + end;
}

// "/usr/bin/tool" is "/bin/tool" in records from before the two folders became one, and the other way round.
std::vector<std::string> NamesOf(const std::string& path) {
  std::vector<std::string> names = {path};
  for (const std::string_view folder : {"/bin/", "/sbin/", "/lib"}) {
    if (path.starts_with(folder)) names.push_back("/usr" + path);
    if (path.starts_with("/usr" + std::string(folder))) names.push_back(path.substr(4));
  }
  return names;
}

}  // namespace

void Packages::Follow() {
  const auto facts = host_.Look(kInfo);
  if (!facts || facts->modified_ns == folder_ns_) return;
  folder_ns_ = facts->modified_ns;
  std::set<std::string> seen;
  std::vector<std::uint16_t> stale;
  for (const std::string& file : host_.List(kInfo)) {
    if (!file.ends_with(".list")) continue;
    const std::string name = file.substr(0, file.size() - 5);
    const auto written = host_.Look(FileOf(name, ".list"));
    if (!written || written->kind != EntryKind::kFile) continue;
    seen.insert(name);
    auto number = numbers_.find(name);
    if (number == numbers_.end()) {
      if (records_.size() >= kMostPackages) continue;
      number = numbers_.emplace(name, static_cast<std::uint16_t>(records_.size())).first;
      records_.push_back({name, -1});
    }
    if (records_[number->second].written_ns == written->modified_ns) continue;
    records_[number->second].written_ns = written->modified_ns;
    stale.push_back(number->second);
  }
  std::vector<bool> gone(records_.size(), false);
  for (const std::uint16_t number : stale) gone[number] = true;
  for (auto& [name, number] : numbers_) {
    if (seen.contains(name)) continue;
    gone[number] = true;
    records_[number].written_ns = -1;
  }
  std::erase_if(index_, [&](std::uint64_t place) { return gone[place & kNumberMask]; });
  for (const std::uint16_t number : stale) ReadList(number);
  std::sort(index_.begin(), index_.end());
}

void Packages::ReadList(std::uint16_t number) {
  const auto text = host_.ReadText(FileOf(records_[number].name, ".list"), kListLimit);
  if (!text) return;
  for (const std::string_view line : SplitLines(*text)) {
    if (index_.size() < kMostPaths && line.size() > 1) index_.push_back(PlaceOf(line) | number);
  }
}

bool Packages::Lists(const Record& record, const std::string& path) {
  const auto text = host_.ReadText(FileOf(record.name, ".list"), kListLimit);
  if (!text) return false;
  const auto lines = SplitLines(*text);
  return std::find(lines.begin(), lines.end(), path) != lines.end();
}

std::optional<std::string> Packages::SumOf(const Record& record, const std::string& path) {
  const auto text = host_.ReadText(FileOf(record.name, ".md5sums"), kListLimit);
  if (!text) return {};
  for (const std::string_view line : SplitLines(*text)) {
    if (line.size() > kMd5Digits + 2 && line.substr(kMd5Digits + 2) == std::string_view(path).substr(1)) {
      return std::string(line.substr(0, kMd5Digits));
    }
  }
  return {};
}

std::optional<Packages::Owner> Packages::OwnerOf(const std::string& path, const std::string& md5) {
  if (path.size() < 2 || path[0] != '/' || path.find('\n') != std::string::npos) return {};
  Follow();
  for (const std::string& name : NamesOf(path)) {
    const std::uint64_t place = PlaceOf(name);
    for (auto at = std::lower_bound(index_.begin(), index_.end(), place);
         at != index_.end() && (*at & ~kNumberMask) == place; ++at) {
      const Record& record = records_[*at & kNumberMask];
      if (!Lists(record, name)) continue;
      const auto sum = SumOf(record, name);
      return Owner{record.name, !sum || *sum == md5, record.written_ns / kNsPerSecond};
    }
  }
  return {};
}

}  // namespace zendrix::agent
