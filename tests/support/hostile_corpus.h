// The hostile texts of tests/data/hostile, and the harmless text of the same shape that each is compared
// with.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zendrix::test {

struct HostileText {
  std::string name;  // "tags:7"
  std::string bytes;
};

// All texts, by file and line. Throws std::runtime_error when there is none or one is not written as the
// README.md of the folder tells.
std::vector<HostileText> HostileCorpus(const std::string& folder);

// The texts that fall to one of `shares` tests which go through the texts together: every text falls to one.
std::vector<HostileText> ShareOf(const std::vector<HostileText>& texts, std::size_t share,
                                 std::size_t shares);

// The text with a letter in the place of every character that is neither a blank nor one at which a
// description is taken apart (":", ";", "=", "\", ".", ","). Equal characters give equal letters, so that two
// texts that hold one another still do.
class Harmless {
 public:
  std::string Of(std::string_view text);

 private:
  std::string from_, to_;
};

}  // namespace zendrix::test
