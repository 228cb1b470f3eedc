#include "admin/file_bookmark.h"

#include <algorithm>
#include <string_view>

namespace zendrix::admin {

std::optional<FileBookmark::Bytes> FileBookmark::BytesBefore(platform::ReadStream& stream,
                                                             std::int64_t offset) {
  Bytes bytes;
  const std::size_t wanted = static_cast<std::size_t>(std::min<std::int64_t>(offset, kCompared));
  if (!stream.Seek(offset - static_cast<std::int64_t>(wanted))) return std::nullopt;
  while (bytes.size < wanted) {
    const auto got = stream.Read(bytes.text.data() + bytes.size, wanted - bytes.size);
    if (!got || got.value() == 0) return std::nullopt;
    bytes.size += got.value();
  }
  return bytes;
}

void FileBookmark::Mark(const std::string& path, platform::ReadStream& stream, const Place& place) {
  Forget();
  const auto identity = stream.Identity();
  const auto before = BytesBefore(stream, place.offset);
  if (!identity || !before) return;
  path_ = path;
  identity_ = *identity;
  before_ = *before;
  place_ = place;
}

std::optional<FileBookmark::Place> FileBookmark::Find(const std::string& path, std::int32_t lines,
                                                      platform::ReadStream& stream) const {
  if (!place_ || place_->lines != lines || path_ != path) return std::nullopt;
  if (stream.Identity() != identity_) return std::nullopt;
  const auto before = BytesBefore(stream, place_->offset);
  const auto view = [](const Bytes& bytes) { return std::string_view(bytes.text.data(), bytes.size); };
  if (!before || view(*before) != view(before_)) return std::nullopt;
  return place_;
}

}  // namespace zendrix::admin
