#include "agent/score/program_files.h"

#include <algorithm>

#include "agent/host/places.h"
#include "agent/score/digest.h"

namespace zendrix::agent {
namespace {

constexpr std::size_t kMostKnown = 4000;
constexpr std::int64_t kPerSecond = 64 << 20;
constexpr std::int64_t kLookAgainMs = 1000;
constexpr std::int64_t kPart = 1 << 16;  // of a large file
constexpr std::int64_t kParts = 64;      // spread evenly
constexpr std::int64_t kEnds = 1 << 20;  // at its beginning and at its end

bool IsSameFile(const EntryFacts& a, const EntryFacts& b) {
  return a.device == b.device && a.inode == b.inode;
}

bool IsUnchanged(const EntryFacts& a, const EntryFacts& b) {
  return IsSameFile(a, b) && a.size == b.size && a.modified_ns == b.modified_ns &&
         a.changed_ns == b.changed_ns;
}

}  // namespace

// Where the file that runs can be read, and its facts; empty when it is there no more.
std::string ProgramFiles::WhereItIs(const std::string& path, const Running& running,
                                    std::optional<EntryFacts>& facts) {
  facts = host_.Look(path);
  if (running.process != 0) {
    const std::string exe = "/proc/" + std::to_string(running.process) + "/exe";
    const auto target = host_.ReadLink(exe);
    // The number may be another program's by now.
    const bool still_runs = target && (*target == path || *target == path + " (deleted)");
    const auto runs = still_runs ? host_.LookThrough(exe) : std::nullopt;
    const bool is_meant = runs && (running.inode == 0 || runs->inode == running.inode);
    if (is_meant && (!facts || !IsSameFile(*facts, *runs))) {
      facts = runs;
      return exe;
    }
    if (is_meant) return path;
  }
  return running.inode != 0 && facts && facts->inode != running.inode ? "" : path;
}

Contents ProgramFiles::Of(const std::string& path, std::int64_t now_ms, const Running& running) {
  if (path.empty() || path[0] != '/') return {};
  const auto found = known_.find(path);
  const bool is_told_apart = running.inode != 0 || running.process != 0;
  if (found != known_.end() && now_ms - found->second.looked_ms < kLookAgainMs &&
      (!is_told_apart || found->second.facts.inode == running.inode))
    return found->second.contents;
  std::optional<EntryFacts> facts;
  const std::string from = WhereItIs(path, running, facts);
  if (from.empty() || !facts || facts->kind != EntryKind::kFile) return {};
  if (found != known_.end() && IsUnchanged(found->second.facts, *facts)) {
    found->second.looked_ms = now_ms;
    return found->second.contents;
  }
  Contents contents;
  contents.is_put_off = !MayRead(std::min(facts->size, kWhole), now_ms);
  if (contents.is_put_off) return contents;
  contents = Read(path, from, *facts);
  const auto after = from == path ? host_.Look(from) : host_.LookThrough(from);
  // What changed while it was read is neither the old nor the new.
  if (!after || !IsUnchanged(*after, *facts)) return {};
  if (known_.size() >= kMostKnown) known_.clear();
  known_[path] = {*facts, now_ms, contents};
  return contents;
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

std::string ProgramFiles::SampledSum(const std::string& from, const EntryFacts& facts) {
  Sum sum(SumKind::kSha256);
  sum.Add("samples " + std::to_string(facts.size) + " " + std::to_string(facts.changed_ns) + "\n");
  const auto add = [&](std::int64_t at, std::int64_t size) {
    const auto part = host_.ReadFrom(from, static_cast<std::uint64_t>(at), static_cast<std::size_t>(size));
    if (!part || part->size() != static_cast<std::size_t>(size)) return false;
    sum.Add(*part);
    return true;
  };
  bool whole = add(0, kEnds) && add(facts.size - kEnds, kEnds);
  for (std::int64_t i = 1; i <= kParts && whole; ++i) whole = add(facts.size / (kParts + 1) * i, kPart);
  return whole ? sum.Digits() : "";
}

Contents ProgramFiles::Read(const std::string& path, const std::string& from, const EntryFacts& facts) {
  Contents contents;
  std::string md5;
  // No package puts anything elsewhere.
  const bool may_be_packaged = InSystemFolder(path) || path.starts_with("/etc/");
  if (facts.size > kWhole) {
    contents.sha256 = SampledSum(from, facts);
  } else if (const auto sums = SumsOfFile(host_, from, static_cast<std::size_t>(kWhole), may_be_packaged)) {
    contents.sha256 = sums->sha256;
    md5 = sums->md5;
  }
  if (!may_be_packaged) return contents;
  if (const auto owner = packages_.OwnerOf(path, md5)) {
    contents.package = {owner->package, owner->unchanged};
    contents.installed = owner->installed;
  }
  return contents;
}

}  // namespace zendrix::agent
