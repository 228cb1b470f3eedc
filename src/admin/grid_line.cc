#include "admin/grid_line.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "core/text_rules.h"
#include "store/text_pool.h"

namespace zendrix::admin {

namespace {

constexpr std::size_t kPieces = 5;
constexpr unsigned char kBlank = 32;

bool IsControl(char c) {
  return static_cast<unsigned char>(c) < kBlank;
}

// Eight characters at a time: subtracting 32 from each borrows from its top bit where it is smaller.
bool HasControl(std::string_view line) {
  constexpr std::uint64_t kBlanks = 0x2020202020202020, kTops = 0x8080808080808080;
  std::size_t i = 0;
  for (; i + 8 <= line.size(); i += 8) {
    const std::uint64_t eight = store::Load8(line.data() + i);
    if (((eight - kBlanks) & ~eight & kTops) != 0) return true;
  }
  return std::any_of(line.begin() + static_cast<std::ptrdiff_t>(i), line.end(), IsControl);
}

}  // namespace

std::string_view CleanGridLine(std::span<char> line) {
  const std::string_view text(line.data(), line.size());
  if (HasControl(text)) std::ranges::replace_if(line, IsControl, ' ');
  return core::Trim(text);
}

std::optional<GridRowFields> SplitGridLine(std::string_view line) {
  std::array<std::string_view, kPieces> pieces;
  std::size_t begin = 0;
  for (std::size_t i = 0; i < kPieces; ++i) {
    const std::size_t comma = line.find(',', begin);
    if (comma == std::string_view::npos && i + 1 < kPieces) return std::nullopt;
    pieces[i] = line.substr(begin, comma == std::string_view::npos ? comma : comma - begin);
    begin = comma + 1;
  }
  const char* const source = pieces[1].data();
  const auto size = static_cast<std::size_t>(pieces[3].data() + pieces[3].size() - source);
  return GridRowFields{pieces[0], pieces[1], pieces[2], pieces[3], pieces[4], {source, size}};
}

}  // namespace zendrix::admin
