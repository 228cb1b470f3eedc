#include "store/line_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <span>
#include <string>
#include <vector>

#include "core/run_time_error.h"
#include "platform/memory/memory_files.h"

namespace zendrix::store {
namespace {

using ::testing::ElementsAre;

constexpr std::size_t kBlock = 128 * 1024;

class LinesOfAFileTest : public ::testing::Test {
 protected:
  std::vector<std::string> Lines(const std::string& bytes, std::int64_t skip = 0) {
    files_.Put("/f", bytes);
    const auto stream = core::ValueOrRaise(files_.Open("/f"));
    LineReader lines(*stream);
    if (skip > 0) lines.Skip(skip);
    std::vector<std::string> all;
    offsets_.clear();
    while (!lines.AtEnd()) {
      const auto line = lines.ReadLine();
      all.emplace_back(line.begin(), line.end());
      offsets_.push_back(static_cast<std::size_t>(lines.Offset()));
      open_ = lines.LineIsOpen();
    }
    return all;
  }
  platform::MemoryFiles files_;
  std::vector<std::size_t> offsets_;  // behind each line
  bool open_ = false;
};

TEST_F(LinesOfAFileTest, LineEndsOfEitherKindAndALastLineWithoutOne) {
  EXPECT_THAT(Lines("a\r\nb\nc"), ElementsAre("a", "b", "c"));
  EXPECT_THAT(offsets_, ElementsAre(3, 5, 6));
  EXPECT_TRUE(open_);
  EXPECT_THAT(Lines("a\r\n\r\n"), ElementsAre("a", ""));
  EXPECT_THAT(offsets_, ElementsAre(3, 5));
  EXPECT_FALSE(open_);
  EXPECT_THAT(Lines(""), ElementsAre());
}

TEST_F(LinesOfAFileTest, CarriageReturnInsideALineStays) {
  EXPECT_THAT(Lines("a\rb\r\n\r"), ElementsAre("a\rb", "\r"));
}

TEST_F(LinesOfAFileTest, LineThatEndsExactlyWithABlock) {
  for (const std::size_t size : {kBlock - 2, kBlock - 1, kBlock, kBlock + 1}) {
    const std::string block(size, 'x');
    EXPECT_THAT(Lines(block + "\nend\n"), ElementsAre(block, "end"));
    EXPECT_THAT(offsets_, ElementsAre(size + 1, size + 5));
    EXPECT_THAT(Lines(block + "\r\nend\r\n"), ElementsAre(block, "end"));
    EXPECT_THAT(offsets_, ElementsAre(size + 2, size + 7));
  }
}

TEST_F(LinesOfAFileTest, LinesLongerThanABlockComeWhole) {
  const std::string big(600'000, 'x');
  EXPECT_THAT(Lines(big + "\r\nend\r\n"), ElementsAre(big, "end"));
  EXPECT_THAT(offsets_, ElementsAre(600'002, 600'007));
}

TEST_F(LinesOfAFileTest, ReadingBeginsAtTheByteThatWasAskedFor) {
  EXPECT_THAT(Lines("one\r\ntwo\r\nthree", 5), ElementsAre("two", "three"));
  EXPECT_THAT(offsets_, ElementsAre(10, 15));
  EXPECT_THAT(Lines("one\n", 100), ElementsAre());
}

TEST_F(LinesOfAFileTest, SeveralLinesAtOnceAreThoseThatLieInTheBuffer) {
  std::string bytes;
  std::vector<std::string> expected;
  for (int i = 0; i < 9000; ++i) {  // several blocks
    expected.push_back("line " + std::to_string(i) + std::string(static_cast<std::size_t>(i % 90), 'x'));
    bytes += expected.back() + (i % 3 == 0 ? "\n" : "\r\n");
  }
  expected.emplace_back("the last");
  files_.Put("/f", bytes + "the last");
  const auto stream = core::ValueOrRaise(files_.Open("/f"));
  LineReader lines(*stream);
  std::vector<std::string> all;
  std::array<std::span<char>, 32> read;
  while (!lines.AtEnd()) {
    const std::size_t count = lines.ReadLines(read);
    ASSERT_GE(count, 1u);
    for (std::size_t i = 0; i < count; ++i) all.emplace_back(read[i].begin(), read[i].end());
  }
  EXPECT_EQ(all, expected);
  EXPECT_TRUE(lines.LineIsOpen());
  EXPECT_EQ(lines.Offset(), static_cast<std::int64_t>(bytes.size() + 8));
}

TEST_F(LinesOfAFileTest, ReadingBehindTheEndIsAnError) {
  files_.Put("/f", "a\n");
  const auto stream = core::ValueOrRaise(files_.Open("/f"));
  LineReader lines(*stream);
  (void)lines.ReadLine();
  EXPECT_THROW((void)lines.ReadLine(), core::RunTimeError);
}

}  // namespace
}  // namespace zendrix::store
