#include "agent/score/program_files.h"

#include "agent/host/places.h"
#include "agent/score/digest.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kMostKnown = 4000;
constexpr std::int64_t kLargest = 64 << 20;
constexpr std::int64_t kPerSecond = 64 << 20;
constexpr std::int64_t kLookAgainMs = 1000;

}  // namespace

Contents ProgramFiles::Of(const std::string& path, std::int64_t now_ms) {
  if (path.empty() || path[0] != '/') return {};
  const auto found = known_.find(path);
  if (found != known_.end() && now_ms - found->second.looked_ms < kLookAgainMs) return found->second.contents;
  const auto facts = host_.Look(path);
  if (!facts || facts->kind != EntryKind::kFile) return {};
  if (found != known_.end() && found->second.size == facts->size &&
      found->second.modified_ns == facts->modified_ns) {
    found->second.looked_ms = now_ms;
    return found->second.contents;
  }
  if (!MayRead(facts->size, now_ms)) return {};
  if (known_.size() >= kMostKnown) known_.clear();
  Known& known = known_[path];
  known = {facts->size, facts->modified_ns, now_ms, Read(path, facts->size)};
  return known.contents;
}

bool ProgramFiles::MayRead(std::int64_t size, std::int64_t now_ms) {
  if (now_ms / 1000 != second_) {
    second_ = now_ms / 1000;
    read_ = 0;
  }
  if (read_ >= kPerSecond) return false;
  read_ += size;
  return true;
}

Contents ProgramFiles::Read(const std::string& path, std::int64_t size) {
  Contents contents;
  std::string md5;
  // No package puts anything elsewhere.
  const bool may_be_packaged = InSystemFolder(path) || path.starts_with("/etc/");
  if (size <= kLargest) {
    if (const auto sums = SumsOfFile(host_, path, static_cast<std::size_t>(kLargest), may_be_packaged)) {
      contents.sha256 = sums->sha256;
      md5 = sums->md5;
    }
  }
  if (!may_be_packaged) return contents;
  if (const auto owner = packages_.OwnerOf(path, md5)) {
    contents.package = {owner->package, owner->unchanged};
    contents.installed = owner->installed;
  }
  return contents;
}

}  // namespace zendrix::agent
