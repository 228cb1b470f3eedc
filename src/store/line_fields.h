// One line of the monitoring file cleaned and split at its bars.
//   1700000000,HOST,42,Running Processes|0|1|C:\a.exe|started|ok,3|
// has fields 0 to 6 and is full.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

namespace zendrix::store {

class LineFields {
 public:
  // Cleans the line in place (control characters become blanks), leaves out blanks at both ends and
  // splits the rest. The fields are views of the line.
  void Split(std::span<char> line);

  // The whole line, cleaned.
  std::string_view line() const { return line_; }
  // Index of the last field; -1 for an empty line.
  int last() const { return line_.empty() ? -1 : static_cast<int>(bar_count_); }
  // At least 7 fields.
  bool full() const { return last() >= 6; }
  // The field of this index, from 0 to last().
  std::string_view operator[](int i) const {
    const auto field = static_cast<std::size_t>(i);
    const char* const begin = i == 0 ? line_.data() : base_ + bars_[field - 1] + 1;
    const char* const end = field < bar_count_ ? base_ + bars_[field] : line_.data() + line_.size();
    return {begin, static_cast<std::size_t>(end - begin)};
  }

 private:
  bool Scan(const char* text, std::size_t size);
  bool ScanBytes(const char* text, std::size_t from, std::size_t size);
  void NoteBars(std::size_t at, std::uint64_t hits);

  const char* base_ = nullptr;  // the positions of bars count from here
  std::string_view line_;
  std::vector<std::uint32_t> bars_;  // the first bar_count_ are this line's
  std::size_t bar_count_ = 0;
};

}  // namespace zendrix::store
