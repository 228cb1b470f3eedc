#include "store/line_reader.h"

#include <cstring>

#include "core/run_time_error.h"

namespace zendrix::store {
namespace {

constexpr std::size_t kBlock = 128 * 1024;

}  // namespace

LineReader::LineReader(platform::ReadStream& stream)
    : stream_(stream), capacity_(kBlock), buffer_(std::make_unique_for_overwrite<char[]>(kBlock)) {}

void LineReader::Skip(std::int64_t bytes) {
  core::ValueOrRaise(stream_.Seek(bytes));
  base_ = bytes;
}

bool LineReader::AtEnd() {
  return begin_ == end_ && !Fill();
}

// The next line, if the buffer holds its end, which does not stand in front of `searched`.
bool LineReader::TakeBuffered(std::size_t searched, std::span<char>& line) {
  const void* const found = std::memchr(buffer_.get() + searched, '\n', end_ - searched);
  if (found == nullptr) return false;
  const auto feed = static_cast<std::size_t>(static_cast<const char*>(found) - buffer_.get());
  const std::size_t last = feed > begin_ && buffer_[feed - 1] == '\r' ? feed - 1 : feed;
  line = std::span<char>(buffer_.get() + begin_, last - begin_);
  begin_ = feed + 1;
  line_is_open_ = false;
  return true;
}

std::span<char> LineReader::ReadLine() {
  std::span<char> line;
  std::size_t searched = begin_;
  while (!TakeBuffered(searched, line)) {
    const std::size_t before = end_ - begin_;
    if (!Fill()) {
      if (begin_ == end_) core::Raise(core::kInputPastEnd);
      line = std::span<char>(buffer_.get() + begin_, end_ - begin_);
      begin_ = end_;
      line_is_open_ = true;
      break;
    }
    searched = begin_ + before;
  }
  return line;
}

std::size_t LineReader::ReadLines(std::span<std::span<char>> lines) {
  lines[0] = ReadLine();
  std::size_t count = 1;
  while (count < lines.size() && TakeBuffered(begin_, lines[count])) ++count;
  return count;
}

// Moves what has not been handed out to the front and reads behind it. False at the end of the file.
bool LineReader::Fill() {
  const std::size_t kept = end_ - begin_;
  if (kept == capacity_) {  // a line longer than the buffer
    auto wider = std::make_unique_for_overwrite<char[]>(capacity_ * 2);
    std::memcpy(wider.get(), buffer_.get(), kept);
    buffer_ = std::move(wider);
    capacity_ *= 2;
  } else if (begin_ > 0) {
    std::memmove(buffer_.get(), buffer_.get() + begin_, kept);
    base_ += static_cast<std::int64_t>(begin_);
    begin_ = 0;
    end_ = kept;
  }
  const std::size_t got = core::ValueOrRaise(stream_.Read(buffer_.get() + end_, capacity_ - end_));
  end_ += got;
  return got > 0;
}

}  // namespace zendrix::store
