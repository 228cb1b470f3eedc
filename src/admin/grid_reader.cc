#include "admin/grid_reader.h"

#include <array>

#include "core/run_time_error.h"

namespace zendrix::admin {

namespace {
constexpr std::size_t kBlock = 256 * 1024;
constexpr std::size_t kPieces = 5;
}  // namespace

std::optional<GridRowFields> SplitGridLine(std::string_view line) {
  std::array<std::string_view, kPieces> pieces;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < kPieces; ++i) {
    const std::size_t comma = line.find(',', begin);
    if (comma == std::string_view::npos && i + 1 < kPieces) return std::nullopt;
    pieces[i] = line.substr(begin, comma == std::string_view::npos ? comma : comma - begin);
    begin = comma + 1;
  }
  return GridRowFields{pieces[0], pieces[1], pieces[2], pieces[3], pieces[4]};
}

GridLines::GridLines(platform::Files& files, const std::string& path)
    : stream_(core::ValueOrRaise(files.Open(path))) {}

bool GridLines::Fill() {
  buffer_.resize(kBlock);
  buffer_.resize(core::ValueOrRaise(stream_->Read(buffer_.data(), kBlock)));
  place_ = 0;
  return !buffer_.empty();
}

bool GridLines::Next(std::string& line) {
  line.clear();
  if (place_ == buffer_.size() && !Fill()) return false;
  while (true) {
    const std::size_t end = buffer_.find('\n', place_);
    if (end != std::string::npos) {
      line.append(buffer_, place_, end - place_);
      place_ = end + 1;
      if (!line.empty() && line.back() == '\r') line.pop_back();
      return true;
    }
    line.append(buffer_, place_, std::string::npos);
    if (!Fill()) return true;
  }
}

std::int32_t GridLines::Skip(std::int32_t lines) {
  std::int32_t skipped = 0;
  while (skipped < lines) {
    if (place_ == buffer_.size() && !Fill()) return skipped;
    std::size_t end = buffer_.find('\n', place_);
    while (end == std::string::npos) {
      if (!Fill()) return skipped + 1;
      end = buffer_.find('\n');
    }
    place_ = end + 1;
    ++skipped;
  }
  return skipped;
}

}  // namespace zendrix::admin
