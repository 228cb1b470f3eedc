#include "platform/memory/overlay_files.h"

#include <set>
#include <utility>

namespace zendrix::platform {

const OverlayFiles::Entry* OverlayFiles::Find(const std::string& normal_path) const {
  const auto found = entries_.find(normal_path);
  return found == entries_.end() ? nullptr : &found->second;
}

bool OverlayFiles::HasFolder(const std::string& normal_path) {
  return !Find(normal_path) && below_.FolderExists(normal_path);
}

bool OverlayFiles::Exists(const std::string& path) {
  const std::string normal = NormalPath(path);
  const Entry* entry = Find(normal);
  return entry ? *entry != nullptr : below_.Exists(normal);
}

bool OverlayFiles::FolderExists(const std::string& path) {
  return HasFolder(NormalPath(path));
}

Result<std::int64_t> OverlayFiles::Size(const std::string& path) {
  const std::string normal = NormalPath(path);
  const Entry* entry = Find(normal);
  if (!entry) return below_.Size(normal);
  if (*entry) return static_cast<std::int64_t>((*entry)->bytes.size());
  return Refusal(ErrorKind::kNotFound, path);
}

Result<std::unique_ptr<ReadStream>> OverlayFiles::Open(const std::string& path) {
  const std::string normal = NormalPath(path);
  const Entry* entry = Find(normal);
  if (!entry) return below_.Open(normal);
  if (*entry) return std::unique_ptr<ReadStream>(std::make_unique<MemoryStream>(*entry));
  return Refusal(ErrorKind::kNotFound, path);
}

Status OverlayFiles::CheckTarget(const std::string& normal_path) {
  if (const Entry* entry = Find(normal_path)) {
    if (*entry) return Done{};
  } else if (const auto size = below_.Size(normal_path); size || size.error().kind != ErrorKind::kNotFound) {
    if (!size) return size.error();
    return Done{};
  }
  if (!HasFolder(FolderOf(normal_path))) return Refusal(ErrorKind::kNotFound, normal_path);
  return Done{};
}

Result<std::shared_ptr<MemoryContent>> OverlayFiles::TakeUp(const std::string& normal_path) {
  if (const Entry* entry = Find(normal_path)) {
    if (*entry) return *entry;
    return Refusal(ErrorKind::kNotFound, normal_path);
  }
  auto bytes = below_.ReadAll(normal_path);
  if (!bytes) return bytes.error();
  return std::make_shared<MemoryContent>(std::move(bytes.value()));
}

Status OverlayFiles::WriteAll(const std::string& path, std::string_view bytes) {
  const std::string normal = NormalPath(path);
  if (Status allowed = CheckTarget(normal); !allowed) return allowed;
  entries_[normal] = std::make_shared<MemoryContent>(std::string(bytes));
  return Done{};
}

Status OverlayFiles::Append(const std::string& path, std::string_view bytes) {
  const std::string normal = NormalPath(path);
  if (Status allowed = CheckTarget(normal); !allowed) return allowed;
  auto content = TakeUp(normal);
  if (!content) {
    if (content.error().kind != ErrorKind::kNotFound) return content.error();
    content = std::make_shared<MemoryContent>();
  }
  content.value()->bytes += bytes;
  entries_[normal] = content.value();
  return Done{};
}

Status OverlayFiles::Remove(const std::string& path) {
  const std::string normal = NormalPath(path);
  const auto size = Size(normal);
  if (!size) return size.error();
  entries_[normal] = Entry{};
  return Done{};
}

Status OverlayFiles::Rename(const std::string& from, const std::string& to) {
  const std::string normal_from = NormalPath(from);
  const std::string normal_to = NormalPath(to);
  auto content = TakeUp(normal_from);
  if (!content) return content.error();
  if (Status allowed = CheckTarget(normal_to); !allowed) return allowed;
  if (normal_from == normal_to) return Done{};
  entries_[normal_to] = content.value();
  entries_[normal_from] = Entry{};
  return Done{};
}

Result<std::vector<std::string>> OverlayFiles::List(const std::string& folder) {
  const std::string normal = NormalPath(folder);
  std::set<std::string> names;
  if (const Entry* entry = Find(normal)) {
    return Refusal(*entry ? ErrorKind::kNotRegular : ErrorKind::kNotFound, folder);
  }
  const auto below = below_.List(normal);
  if (!below) return below.error();
  names.insert(below.value().begin(), below.value().end());
  for (const auto& [path, change] : entries_) {
    if (FolderOf(path) != normal) continue;
    if (change) {
      names.insert(NameOf(path));
    } else {
      names.erase(NameOf(path));
    }
  }
  return std::vector<std::string>(names.begin(), names.end());
}

}  // namespace zendrix::platform
