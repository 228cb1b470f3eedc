// Reads a text file line by line in large blocks. A line ends at LF, and a CR right before it belongs to the
// end; the last line may lack its end. The file may grow while it is read: the end is where a read returns
// nothing at that moment.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

#include "platform/files.h"

namespace zendrix::store {

class LineReader {
 public:
  explicit LineReader(platform::ReadStream& stream);

  // The next line begins at this byte. Before the first read only.
  void Skip(std::int64_t bytes);
  // Whether nothing is left. Invalidates the line read last. Raises what the stream refuses.
  bool AtEnd();
  // The next line without its end. The caller may change it; it is valid until the next call of any of these.
  // Raises 62 when nothing is left.
  std::span<char> ReadLine();
  // The next line and those behind it that need no reading, as many as there is room for (one at least), all
  // of them valid as long as one would be. Returns how many.
  std::size_t ReadLines(std::span<std::span<char>> lines);
  // The byte of the stream behind what was handed out.
  std::int64_t Offset() const { return base_ + static_cast<std::int64_t>(begin_); }
  // Whether the line read last lacked its end.
  bool LineIsOpen() const { return line_is_open_; }

 private:
  bool Fill();
  bool TakeBuffered(std::size_t searched, std::span<char>& line);

  platform::ReadStream& stream_;
  std::size_t capacity_;
  std::unique_ptr<char[]> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  std::int64_t base_ = 0;  // where the buffer begins in the stream
  bool line_is_open_ = false;
};

}  // namespace zendrix::store
