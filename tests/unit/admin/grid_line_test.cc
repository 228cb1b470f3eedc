#include "admin/grid_line.h"

#include <gtest/gtest.h>

#include <string>

namespace zendrix::admin {
namespace {

TEST(GridLineTest, FiveFieldsAreTakenAndACommaEndsTheDescription) {
  const auto fields = SplitGridLine("1,host,mon,A,one,two");
  ASSERT_TRUE(fields);
  EXPECT_EQ(fields->time, "1");
  EXPECT_EQ(fields->host, "host");
  EXPECT_EQ(fields->monitor, "mon");
  EXPECT_EQ(fields->code, "A");
  EXPECT_EQ(fields->description, "one");
  EXPECT_EQ(fields->source, "host,mon,A");
}

TEST(GridLineTest, FewerThanFiveFieldsAreNoRow) {
  EXPECT_FALSE(SplitGridLine("1,host,mon,A"));
  EXPECT_FALSE(SplitGridLine(""));
  EXPECT_TRUE(SplitGridLine(",,,,"));
  EXPECT_EQ(SplitGridLine(",,,,")->source, ",,");
}

TEST(GridLineTest, EveryControlCharacterAndNoOtherBecomesABlank) {
  for (int code = 0; code < 256; ++code)
    for (const std::size_t at : {1u, 7u, 8u, 15u, 17u}) {
      std::string line(19, 'x');
      line[at] = static_cast<char>(code);
      std::string expected = line;
      if (code < 32) expected[at] = ' ';
      EXPECT_EQ(CleanGridLine(line), expected) << code << " at " << at;
    }
}

TEST(GridLineTest, BlanksAtTheEndsGoAlsoThoseThatWereControlCharacters) {
  std::string line = " \t\r a\tb \x01 ";
  EXPECT_EQ(CleanGridLine(line), "a b");
  std::string blanks = " \t ";
  EXPECT_EQ(CleanGridLine(blanks), "");
  EXPECT_EQ(CleanGridLine({}), "");
}

}  // namespace
}  // namespace zendrix::admin
