#include <gtest/gtest.h>

#include <string>

#include "support/fuzzed_console.h"

namespace zendrix::test {
namespace {

class Random {
 public:
  explicit Random(std::uint64_t seed) : state_(seed) {}
  std::uint64_t Below(std::uint64_t n) {
    state_ = state_ * 6364136223846793005u + 1442695040888963407u;
    return (state_ >> 33) % n;
  }
  template <std::size_t n>
  std::string Of(const char* const (&texts)[n]) {
    return texts[Below(n)];
  }

 private:
  std::uint64_t state_;
};

// Mostly sound lines, with everything that the rules treat apart mixed in.
std::string RandomLine(Random& random, int date) {
  static constexpr const char* kDates[] = {"", "yesterday", " 17", "+5", "0017", "1e3"};
  static constexpr const char* kMonitors[] = {"System", "Aggregation", "aggregation", "Community",
                                              "",       "Tcp \x80"};
  static constexpr const char* kNumbers[] = {"0",    "1",         "-1", "12ab", "",
                                             "0.95", "1234567.5", ".5", "- 3",  "1e5"};
  static constexpr const char* kTexts[] = {"a",  "K=a * b;L=c", "a * b", " * ", "",        "K=a;;L= * ",
                                           "x;", "a\tb",        "it's",  "* ",  " * a * ", "\xE4"};
  if (random.Below(12) == 0) return random.Of(kTexts);
  std::string line = random.Below(10) == 0 ? random.Of(kDates) : std::to_string(date);
  line += ",HOST" + std::to_string(random.Below(2));
  if (random.Below(15) != 0) line += ",7," + random.Of(kMonitors);
  line += "|" + random.Of(kNumbers) + "|" + random.Of(kNumbers) + "|" + random.Of(kTexts) + "|" +
          random.Of(kTexts);
  line += "|c," + std::to_string(random.Below(3)) + "|";
  for (auto extra = random.Below(4); extra > 0; --extra) line += "|" + random.Of(kTexts);
  return line;
}

std::string RandomEnd(Random& random) {
  return random.Below(6) == 0 ? "\n" : random.Below(20) == 0 ? "\r\r\n" : "\r\n";
}

TEST(ReaderTwinTest, FullLoadsAgreeWithThePlainRules) {
  for (std::uint64_t seed = 1; seed <= 150; ++seed) {
    Random random(seed);
    std::string file;
    for (int i = 0; i < 130; ++i) file += RandomLine(random, 1700000000 + i / 2) + RandomEnd(random);
    if (seed % 3 == 0) file += "rest";
    FuzzedConsole console;
    console.SetFile(file);
    EXPECT_TRUE(console.Load()) << seed;
  }
}

TEST(ReaderTwinTest, GrowingAndReplacedFilesAgreeWithThePlainRules) {
  int reached = 0;
  for (std::uint64_t seed = 1; seed <= 300; ++seed) {
    Random random(seed * 77);
    FuzzedConsole console;
    int date = 1000;
    std::string file;
    const auto more = [&](std::uint64_t lines) {
      for (; lines > 0; --lines) {
        date += static_cast<int>(random.Below(3));
        file += RandomLine(random, date) + RandomEnd(random);
      }
    };
    more(random.Below(5));
    console.SetFile(file);
    if (!console.Load()) continue;
    for (int step = 0; step < 12; ++step) {
      if (random.Below(8) == 0) file.clear();
      if (random.Below(9) == 0) file = file.substr(0, file.size() / 2);
      more(random.Below(6));
      console.SetFile(file);
      if (!console.Follow()) break;  // a line without a date ends the process, in both
      ++reached;
    }
  }
  EXPECT_GT(reached, 500);
}

}  // namespace
}  // namespace zendrix::test
