#include "agent/sources/program_index.h"

namespace zendrix::agent {
namespace {

constexpr const char* kProgramFolders[] = {"/usr/bin",        "/usr/sbin",    "/usr/local/bin",
                                           "/usr/local/sbin", "/usr/libexec", "/bin",
                                           "/sbin",           "/usr/games",   "/usr/lib/systemd"};

constexpr const char* kTemporaryFolders[] = {"/tmp", "/var/tmp", "/dev/shm"};
constexpr std::uint32_t kAnyExecute = 0111;

}  // namespace

void ProgramIndex::Learn(const std::string& path) {
  if (path.empty() || path[0] != '/' || paths_.size() >= kMost) return;
  const auto facts = host_.LookThrough(path);
  if (!facts || facts->kind != EntryKind::kFile) return;
  paths_[{facts->device, facts->inode}] = path;
  std::string folder = path.substr(0, path.rfind('/'));
  if (folder.empty() || folders_.size() >= kMostFolders || !folders_.insert(folder).second) return;
  unread_.push_back(std::move(folder));
}

std::optional<std::string> ProgramIndex::PathOf(const FileIdentity& file, std::int64_t now_ns) {
  if (auto path = Known(file)) return path;
  for (const std::string& folder : std::exchange(unread_, {})) ReadFolder(folder);
  if (auto path = Known(file)) return path;
  const auto is_due = [now_ns](std::optional<std::int64_t>& last_ns, std::int64_t apart_ns) {
    if (last_ns && now_ns - *last_ns < apart_ns) return false;
    last_ns = now_ns;
    return true;
  };
  if (is_due(read_temporary_ns_, kReadTemporaryAgainNs)) {
    for (const char* folder : kTemporaryFolders) ReadFolder(folder);
  }
  if (is_due(read_ns_, kReadAgainNs)) {
    for (const char* folder : kProgramFolders) ReadFolder(folder);
    for (const std::string& folder : folders_) ReadFolder(folder);
  }
  return Known(file);
}

std::optional<std::string> ProgramIndex::Known(const FileIdentity& file) {
  const auto found = paths_.find({file.device, file.inode});
  if (found == paths_.end()) return {};
  const auto facts = host_.LookThrough(found->second);
  if (facts && facts->device == file.device && facts->inode == file.inode) return found->second;
  paths_.erase(found);
  return {};
}

// Links (/usr/bin/awk) are left out: the kernel knows a program by the file that they lead to.
void ProgramIndex::ReadFolder(const std::string& folder) {
  const auto itself = host_.Look(folder);
  if (!itself || itself->kind != EntryKind::kFolder) return;
  auto names = host_.List(folder);
  if (names.size() > kMostOfOneFolder) names.resize(kMostOfOneFolder);
  for (const std::string& name : names) {
    std::string path = folder + "/" + name;
    const auto facts = host_.Look(path);
    if (!facts || facts->kind != EntryKind::kFile || (facts->mode & kAnyExecute) == 0) continue;
    if (paths_.size() < kMost) paths_.try_emplace({facts->device, facts->inode}, std::move(path));
  }
}

}  // namespace zendrix::agent
