#include "platform/memory/overlay_files.h"

#include <set>
#include <utility>

namespace zendrix::platform {

const OverlayFiles::Entry* OverlayFiles::Find(const std::string& normal_path) const {
  const auto found = entries_.find(normal_path);
  return found == entries_.end() ? nullptr : &found->second;
}

bool OverlayFiles::HasFolder(const std::string& normal_path) {
  const Entry* entry = Find(normal_path);
  return entry ? entry->folder : below_.FolderExists(normal_path);
}

bool OverlayFiles::Exists(const std::string& path) {
  const std::string normal = NormalPath(path);
  const Entry* entry = Find(normal);
  return entry ? entry->content != nullptr : below_.Exists(normal);
}

bool OverlayFiles::FolderExists(const std::string& path) {
  return HasFolder(NormalPath(path));
}

Result<std::int64_t> OverlayFiles::Size(const std::string& path) {
  const std::string normal = NormalPath(path);
  const Entry* entry = Find(normal);
  if (!entry) return below_.Size(normal);
  if (entry->content) return static_cast<std::int64_t>(entry->content->bytes.size());
  return Refusal(entry->folder ? ErrorKind::kNotRegular : ErrorKind::kNotFound, path);
}

Result<std::unique_ptr<ReadStream>> OverlayFiles::Open(const std::string& path) {
  const std::string normal = NormalPath(path);
  const Entry* entry = Find(normal);
  if (!entry) return below_.Open(normal);
  if (entry->content) return std::unique_ptr<ReadStream>(std::make_unique<MemoryStream>(entry->content));
  return Refusal(entry->folder ? ErrorKind::kNotRegular : ErrorKind::kNotFound, path);
}

Status OverlayFiles::CheckTarget(const std::string& normal_path) {
  if (const Entry* entry = Find(normal_path)) {
    if (entry->folder) return Refusal(ErrorKind::kNotRegular, normal_path);
    if (entry->content) return Done{};
  } else if (const auto size = below_.Size(normal_path); size || size.error().kind != ErrorKind::kNotFound) {
    if (!size) return size.error();
    return Done{};
  }
  if (!HasFolder(FolderOf(normal_path))) return Refusal(ErrorKind::kNotFound, normal_path);
  return Done{};
}

Result<std::shared_ptr<MemoryContent>> OverlayFiles::TakeUp(const std::string& normal_path) {
  if (const Entry* entry = Find(normal_path)) {
    if (entry->content) return entry->content;
    return Refusal(entry->folder ? ErrorKind::kNotRegular : ErrorKind::kNotFound, normal_path);
  }
  auto bytes = below_.ReadAll(normal_path);
  if (!bytes) return bytes.error();
  return std::make_shared<MemoryContent>(MemoryContent{std::move(bytes.value())});
}

void OverlayFiles::Put(const std::string& normal_path, std::shared_ptr<MemoryContent> content) {
  entries_[normal_path] = Entry{std::move(content), false};
}

Status OverlayFiles::WriteAll(const std::string& path, std::string_view bytes) {
  const std::string normal = NormalPath(path);
  if (Status allowed = CheckTarget(normal); !allowed) return allowed;
  Put(normal, std::make_shared<MemoryContent>(MemoryContent{std::string(bytes)}));
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
  Put(normal, content.value());
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
  Put(normal_to, content.value());
  entries_[normal_from] = Entry{};
  return Done{};
}

Result<std::string> OverlayFiles::CreateTemporary(const std::string& folder) {
  const std::string normal = NormalPath(folder);
  if (!HasFolder(normal)) {
    return Refusal(Size(normal) ? ErrorKind::kNotRegular : ErrorKind::kNotFound, folder);
  }
  std::string path;
  int number = 0;
  do {
    path = JoinPath(folder, "tmp" + std::to_string(++number) + ".tmp");
  } while (Size(path) || HasFolder(NormalPath(path)));
  Put(NormalPath(path), std::make_shared<MemoryContent>());
  return path;
}

Result<std::vector<std::string>> OverlayFiles::List(const std::string& folder) {
  const std::string normal = NormalPath(folder);
  std::set<std::string> names;
  const Entry* entry = Find(normal);
  if (entry && !entry->folder) {
    return Refusal(entry->content ? ErrorKind::kNotRegular : ErrorKind::kNotFound, folder);
  }
  if (!entry) {
    const auto below = below_.List(normal);
    if (!below) return below.error();
    names.insert(below.value().begin(), below.value().end());
  }
  for (const auto& [path, change] : entries_) {
    if (FolderOf(path) != normal) continue;
    if (change.content || change.folder) {
      names.insert(NameOf(path));
    } else {
      names.erase(NameOf(path));
    }
  }
  return std::vector<std::string>(names.begin(), names.end());
}

Status OverlayFiles::CreateFolder(const std::string& path) {
  const std::string normal = NormalPath(path);
  const auto size = Size(normal);
  if (size || HasFolder(normal) || size.error().kind == ErrorKind::kNotRegular) {
    return Refusal(ErrorKind::kAlreadyExists, path);
  }
  if (!HasFolder(FolderOf(normal))) return Refusal(ErrorKind::kNotFound, path);
  entries_[normal] = Entry{nullptr, true};
  return Done{};
}

}  // namespace zendrix::platform
