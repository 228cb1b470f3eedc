#include "admin/text_search.h"

#include <algorithm>

#include "core/letter_case.h"
#include "store/text_pool.h"

namespace zendrix::admin {
namespace {

constexpr std::uint64_t kOnes = 0x0101010101010101, kTops = 0x8080808080808080;
constexpr std::size_t kAtOnce = 8;

std::size_t Code(char character) {
  return static_cast<unsigned char>(character);
}

}  // namespace

TextSearch::TextSearch(std::string_view wanted, bool match_case) : wanted_(wanted) {
  for (std::size_t i = 0; i < fold_.size(); ++i) {
    const auto character = static_cast<char>(i);
    fold_[i] = match_case ? character : core::UpperByte(character);
  }
  for (char& character : wanted_) character = fold_[Code(character)];
  first_ = CandidateOf(wanted_.front());
  last_ = CandidateOf(wanted_.back());
}

// All characters that fold to the same one agree outside the bits in which any two of them differ.
TextSearch::Candidate TextSearch::CandidateOf(char character) const {
  unsigned char loose = 0;
  for (std::size_t i = 0; i < fold_.size(); ++i)
    if (fold_[i] == character) loose |= static_cast<unsigned char>(i ^ Code(character));
  return {kOnes * loose, kOnes * static_cast<unsigned char>(Code(character) | loose)};
}

bool TextSearch::StandsAt(const char* place) const {
  return std::all_of(wanted_.begin(), wanted_.end(),
                     [&](char character) { return fold_[Code(*place++)] == character; });
}

// A byte of `differ` is zero where first and last character may both be right; the usual trick finds whether
// there is such a byte at all.
bool TextSearch::MayStandAtOneOfEight(const char* places) const {
  const std::uint64_t differ = ((store::Load8(places) | first_.loose) ^ first_.bits) |
                               ((store::Load8(places + wanted_.size() - 1) | last_.loose) ^ last_.bits);
  return ((differ - kOnes) & ~differ & kTops) != 0;
}

// The last eight places overlap with those in front.
std::size_t TextSearch::Find(std::string_view in, std::size_t from) const {
  if (in.size() < wanted_.size() || from > in.size() - wanted_.size()) return kNowhere;
  const std::size_t end = in.size() - wanted_.size() + 1;
  const bool eight = end - from >= kAtOnce;
  for (std::size_t at = from; at < end;) {
    const std::size_t begin = eight ? std::min(at, end - kAtOnce) : at;
    at = std::min(begin + kAtOnce, end);
    if (eight && !MayStandAtOneOfEight(in.data() + begin)) continue;
    for (std::size_t place = begin; place < at; ++place)
      if (StandsAt(in.data() + place)) return place;
  }
  return kNowhere;
}

bool TextSearch::MayConsistOf(const std::bitset<256>& characters) const {
  std::bitset<256> folded;
  for (std::size_t i = 0; i < fold_.size(); ++i)
    if (characters[i]) folded[Code(fold_[i])] = true;
  return std::all_of(wanted_.begin(), wanted_.end(), [&](char character) { return folded[Code(character)]; });
}

}  // namespace zendrix::admin
