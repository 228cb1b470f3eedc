#include "admin/text_ranks.h"

#include <algorithm>
#include <array>
#include <compare>

#include "core/letter_case.h"

namespace zendrix::admin {
namespace {

constexpr std::size_t kStep = 8;

const std::array<unsigned char, 256>& Upper() {
  static const auto table = [] {
    std::array<unsigned char, 256> upper{};
    for (std::size_t i = 0; i < upper.size(); ++i)
      upper[i] = static_cast<unsigned char>(core::UpperByte(static_cast<char>(i)));
    return upper;
  }();
  return table;
}

// The next eight characters of a text as one number that compares as they do, and how many of them there are
// (one more than eight when the text goes on).
struct Item {
  std::uint64_t key;
  std::uint32_t left;
  std::uint32_t place;  // in the list of texts

  bool operator==(const Item& other) const { return key == other.key && left == other.left; }
  auto operator<=>(const Item& other) const {
    return key != other.key ? key <=> other.key : left <=> other.left;
  }
};

void ReadKey(Item& item, std::string_view text, std::size_t from) {
  const auto& upper = Upper();
  const std::size_t left = text.size() - from;
  const std::size_t here = std::min(left, kStep);
  std::uint64_t key = 0;
  for (std::size_t i = 0; i < here; ++i)
    key |= std::uint64_t{upper[static_cast<unsigned char>(text[from + i])]} << (8 * (kStep - 1 - i));
  item.key = key;
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
      for (std::size_t i = group.begin; i < group.end; ++i)
        ReadKey(items[i], pool.Text(texts[items[i].place]), group.from);
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
