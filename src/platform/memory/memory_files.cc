#include "platform/memory/memory_files.h"

#include <algorithm>

namespace zendrix::platform {

void MemoryFiles::Put(const std::string& path, std::string_view bytes) {
  Reach(NormalPath(path)).bytes = bytes;
}

void MemoryFiles::PutMore(const std::string& path, std::string_view bytes) {
  Reach(NormalPath(path)).bytes += bytes;
}

MemoryContent& MemoryFiles::Reach(const std::string& path) {
  MakeFolders(FolderOf(path));
  auto& content = files_[path];
  if (!content) content = std::make_shared<MemoryContent>();
  return *content;
}

void MemoryFiles::MakeFolders(std::string path) {
  while (path != "/" && path != "." && folders_.insert(path).second) path = FolderOf(path);
}

std::string MemoryFiles::Get(const std::string& path) const {
  const auto found = files_.find(NormalPath(path));
  return found == files_.end() ? std::string() : found->second->bytes;
}

bool MemoryFiles::Has(const std::string& path) const {
  return files_.count(NormalPath(path)) != 0;
}

void MemoryFiles::Vanish(const std::string& path) {
  files_.erase(NormalPath(path));
}

std::vector<std::string> MemoryFiles::Paths() const {
  std::vector<std::string> paths;
  for (const auto& [path, content] : files_) paths.push_back(path);
  return paths;
}

void MemoryFiles::FailNext(FileOp op, const std::string& path, ErrorKind kind, int count) {
  faults_.push_back({op, path == "*" ? path : NormalPath(path), kind, count, 0});
}

void MemoryFiles::FailReadAfter(const std::string& path, std::int64_t bytes, ErrorKind kind, int count) {
  faults_.push_back({FileOp::kRead, path == "*" ? path : NormalPath(path), kind, count, bytes});
}

void MemoryFiles::ClearFaults() {
  faults_.clear();
}

Status MemoryFiles::Begin(FileOp op, const std::string& path, std::int64_t position) {
  if (before) before(op, path);
  const auto fault = std::find_if(faults_.begin(), faults_.end(), [&](const Fault& candidate) {
    return candidate.op == op && position >= candidate.after &&
           (candidate.path == "*" || candidate.path == path);
  });
  if (fault == faults_.end()) return Done{};
  const ErrorKind kind = fault->kind;
  if (fault->count != kAlways && --fault->count <= 0) faults_.erase(fault);
  return Refusal(kind, path);
}

bool MemoryFiles::HasFolder(const std::string& path) const {
  return path == "/" || path == "." || folders_.count(path) != 0;
}

Status MemoryFiles::CheckTarget(const std::string& path) const {
  if (HasFolder(path)) return Refusal(ErrorKind::kNotRegular, path);
  const std::string folder = FolderOf(path);
  if (Has(folder) || (strict_folders && !HasFolder(folder))) return Refusal(ErrorKind::kNotFound, path);
  return Done{};
}

void MemoryFiles::VanishFolder(const std::string& path) {
  const std::string normal = NormalPath(path);
  std::erase_if(files_, [&](const auto& file) { return file.first.starts_with(normal + "/"); });
  std::erase_if(folders_, [&](const std::string& folder) {
    return folder == normal || folder.starts_with(normal + "/");
  });
}

bool MemoryFiles::Exists(const std::string& path) {
  return Has(path);
}

bool MemoryFiles::FolderExists(const std::string& path) {
  return HasFolder(NormalPath(path));
}

Result<std::int64_t> MemoryFiles::Size(const std::string& path) {
  const std::string normal = NormalPath(path);
  if (const Status allowed = Begin(FileOp::kSize, normal); !allowed) return allowed.error();
  const auto found = files_.find(normal);
  if (found != files_.end()) return static_cast<std::int64_t>(found->second->bytes.size());
  return Refusal(HasFolder(normal) ? ErrorKind::kNotRegular : ErrorKind::kNotFound, path);
}

Result<std::unique_ptr<ReadStream>> MemoryFiles::Open(const std::string& path) {
  const std::string normal = NormalPath(path);
  if (const Status allowed = Begin(FileOp::kOpen, normal); !allowed) return allowed.error();
  const auto found = files_.find(normal);
  if (found == files_.end()) {
    return Refusal(HasFolder(normal) ? ErrorKind::kNotRegular : ErrorKind::kNotFound, path);
  }
  auto gate = [this, normal](std::int64_t position) { return Begin(FileOp::kRead, normal, position); };
  return std::unique_ptr<ReadStream>(std::make_unique<MemoryStream>(found->second, std::move(gate)));
}

Status MemoryFiles::WriteAll(const std::string& path, std::string_view bytes) {
  const std::string normal = NormalPath(path);
  if (Status allowed = Begin(FileOp::kWriteAll, normal); !allowed) return allowed;
  if (Status allowed = CheckTarget(normal); !allowed) return allowed;
  // A new content: open streams keep the one that is replaced.
  files_.erase(normal);
  Put(normal, bytes);
  return Done{};
}

Status MemoryFiles::Append(const std::string& path, std::string_view bytes) {
  const std::string normal = NormalPath(path);
  if (Status allowed = Begin(FileOp::kAppend, normal); !allowed) return allowed;
  if (Status allowed = CheckTarget(normal); !allowed) return allowed;
  PutMore(normal, bytes);
  return Done{};
}

Status MemoryFiles::Remove(const std::string& path) {
  const std::string normal = NormalPath(path);
  if (Status allowed = Begin(FileOp::kRemove, normal); !allowed) return allowed;
  if (files_.erase(normal) != 0) return Done{};
  return Refusal(HasFolder(normal) ? ErrorKind::kNotRegular : ErrorKind::kNotFound, path);
}

Status MemoryFiles::Rename(const std::string& from, const std::string& to) {
  const std::string normal_from = NormalPath(from);
  const std::string normal_to = NormalPath(to);
  if (Status allowed = Begin(FileOp::kRename, normal_from); !allowed) return allowed;
  const auto found = files_.find(normal_from);
  if (found == files_.end()) {
    return Refusal(HasFolder(normal_from) ? ErrorKind::kNotRegular : ErrorKind::kNotFound, from);
  }
  if (Status allowed = CheckTarget(normal_to); !allowed) return allowed;
  if (normal_from == normal_to) return Done{};
  const std::shared_ptr<MemoryContent> content = found->second;
  files_.erase(found);
  MakeFolders(FolderOf(normal_to));
  files_[normal_to] = content;
  return Done{};
}

Result<std::vector<std::string>> MemoryFiles::List(const std::string& folder) {
  const std::string normal = NormalPath(folder);
  if (const Status allowed = Begin(FileOp::kList, normal); !allowed) return allowed.error();
  if (Has(normal)) return Refusal(ErrorKind::kNotRegular, folder);
  if (!HasFolder(normal)) return Refusal(ErrorKind::kNotFound, folder);
  std::set<std::string> names;
  for (const auto& [path, content] : files_) names.insert(ChildName(normal, path));
  for (const std::string& path : folders_) names.insert(ChildName(normal, path));
  names.erase("");
  return std::vector<std::string>(names.begin(), names.end());
}

}  // namespace zendrix::platform
