#include "admin/text_ranks.h"

#include <algorithm>
#include <array>
#include <bit>
#include <compare>
#include <cstring>

#include "core/letter_case.h"

namespace zendrix::admin {
namespace {

constexpr std::size_t kStep = 16;
// Texts lie anywhere in memory; so many of them are on their way at a time.
constexpr std::size_t kAhead = 12;

const std::array<unsigned char, 256>& Upper() {
  static const auto table = [] {
    std::array<unsigned char, 256> upper{};
    for (std::size_t i = 0; i < upper.size(); ++i)
      upper[i] = static_cast<unsigned char>(core::UpperByte(static_cast<char>(i)));
    return upper;
  }();
  return table;
}

// The next sixteen characters of a text as two numbers that compare as they do, and how many of them there
// are (one more than sixteen when the text goes on).
struct Item {
  std::uint64_t key, more;
  std::uint32_t left;
  std::uint32_t place;  // in the list of texts

  bool operator==(const Item& other) const {
    return key == other.key && more == other.more && left == other.left;
  }
  auto operator<=>(const Item& other) const {
    if (key != other.key) return key <=> other.key;
    return more != other.more ? more <=> other.more : left <=> other.left;
  }
};

constexpr std::uint64_t Each(unsigned char byte) {
  return std::uint64_t{0x0101010101010101} * byte;
}

// Eight characters at once, the first in the highest byte.
std::uint64_t UpperEight(std::uint64_t text) {
  if ((text & Each(0x80)) == 0) {
    // Bit 7 of each byte: from 'a' on, and beyond 'z'. No byte carries into the next one.
    const std::uint64_t lower = (text + Each(0x80 - 'a')) & ~(text + Each(0x7F - 'z')) & Each(0x80);
    return text - (lower >> 2);
  }
  const auto& upper = Upper();
  std::uint64_t key = 0;
  for (int shift = 56; shift >= 0; shift -= 8) key = key << 8 | upper[text >> shift & 0xFF];
  return key;
}

void ReadKey(Item& item, std::string_view text, std::size_t from) {
  const std::size_t left = text.size() - from;
  std::uint64_t characters[2] = {};
  if (left >= kStep)
    std::memcpy(characters, text.data() + from, kStep);
  else
    std::memcpy(characters, text.data() + from, left);
  if constexpr (std::endian::native == std::endian::little)
    for (std::uint64_t& eight : characters) eight = __builtin_bswap64(eight);
  item.key = UpperEight(characters[0]);
  item.more = UpperEight(characters[1]);
  item.left = static_cast<std::uint32_t>(std::min(left, kStep + 1));
}

// Texts [begin, end) are equal in front of `from`; `sorted` when they lie in the order of their next step.
struct Group {
  std::size_t begin, end, from;
  bool sorted;
};

}  // namespace

std::vector<std::uint32_t> RanksNoCase(const store::TextPool& pool, std::span<const store::TextId> texts) {
  std::vector<Item> items(texts.size());
  for (std::uint32_t i = 0; i < items.size(); ++i) items[i].place = i;
  std::vector<std::uint32_t> ranks(texts.size());
  std::uint32_t rank = 0;
  // What is still to be told apart, the smallest on top. Texts of files may be alike for millions of
  // characters, so this must not be a recursion.
  std::vector<Group> groups{{0, items.size(), 0, false}};
  while (!groups.empty()) {
    const Group group = groups.back();
    groups.pop_back();
    if (!group.sorted) {
      const auto text = [&](std::size_t i) { return pool.Text(texts[items[i].place]); };
      for (std::size_t i = group.begin; i < group.end; ++i) {
        if (i + kAhead < group.end) __builtin_prefetch(text(i + kAhead).data() + group.from);
        ReadKey(items[i], text(i), group.from);
      }
      const std::span<Item> all(items.data() + group.begin, group.end - group.begin);
      if (!std::ranges::is_sorted(all)) std::ranges::sort(all);
    }
    for (std::size_t begin = group.begin; begin < group.end;) {
      std::size_t end = begin + 1;
      while (end < group.end && items[end] == items[begin]) ++end;
      if (end - begin > 1 && items[begin].left > kStep) {
        if (end < group.end) groups.push_back({end, group.end, group.from, true});
        groups.push_back({begin, end, group.from + kStep, false});
        break;
      }
      for (std::size_t i = begin; i < end; ++i) ranks[items[i].place] = rank;
      ++rank;
      begin = end;
    }
  }
  return ranks;
}

int CompareNoCase(std::string_view one, std::string_view other) {
  const auto& upper = Upper();
  const std::size_t common = std::min(one.size(), other.size());
  for (std::size_t i = 0; i < common; ++i) {
    const int difference =
        upper[static_cast<unsigned char>(one[i])] - upper[static_cast<unsigned char>(other[i])];
    if (difference != 0) return difference;
  }
  return one.size() < other.size() ? -1 : one.size() > other.size() ? 1 : 0;
}

}  // namespace zendrix::admin
