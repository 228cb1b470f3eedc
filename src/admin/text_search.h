// A text that is looked for in many others, with exact case or ignoring it by the rules of Windows-1252.
#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <string>
#include <string_view>

namespace zendrix::admin {

class TextSearch {
 public:
  static constexpr std::size_t kNowhere = std::string_view::npos;

  // `wanted` is not empty.
  TextSearch(std::string_view wanted, bool match_case);

  // Where the text stands first, from character `from` (counted from 0) on, or kNowhere.
  std::size_t Find(std::string_view in, std::size_t from = 0) const;
  bool IsIn(std::string_view text) const { return Find(text) != kNowhere; }
  // Whether it may stand in a text that is made of these characters only.
  bool MayConsistOf(const std::bitset<256>& characters) const;
  std::size_t size() const { return wanted_.size(); }

 private:
  // Eight characters at a time that may be this one: those that have its bits outside `loose`.
  struct Candidate {
    std::uint64_t loose, bits;
  };
  Candidate CandidateOf(char character) const;
  bool MayStandAtOneOfEight(const char* places) const;
  bool StandsAt(const char* place) const;

  std::array<char, 256> fold_;
  std::string wanted_;  // folded
  Candidate first_, last_;
};

}  // namespace zendrix::admin
