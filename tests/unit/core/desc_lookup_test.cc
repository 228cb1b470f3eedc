#include "core/desc_lookup.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/run_time_error.h"

namespace zendrix::core {
namespace {

TEST(DescLookup, TakesTheTextBehindTheKeyInTheFirstLineThatHoldsIt) {
  const DescArray lines = {"other", "x002,first", "002,second"};
  std::string text;
  EXPECT_TRUE(DescLookup(lines, "002,", text));
  EXPECT_EQ(text, "first");
}

TEST(DescLookup, IsCaseSensitive) {
  std::string text = "as it was";
  EXPECT_FALSE(DescLookup({"YesMsg,text"}, "yesmsg,", text));
  EXPECT_EQ(text, "as it was");
}

TEST(DescLookup, TrailingEmptyLineDoesNotDisturb) {
  std::string text;
  EXPECT_TRUE(DescLookup({"002,text", ""}, "002,", text));
  EXPECT_EQ(text, "text");
}

TEST(DescLookup, EmptyArrayHasNothing) {
  std::string text;
  EXPECT_FALSE(DescLookup({}, "002,", text));
}

TEST(DescAt, TakesTheTextBehindTheNumberOneLessAndAComma) {
  const DescArray lines = {"", "0,zero", "1,one", "9,wrong"};
  EXPECT_EQ(DescAt(lines, 1), "zero");
  EXPECT_EQ(DescAt(lines, 2), "one");
  EXPECT_EQ(DescAt(lines, 3), "");
}

TEST(DescAt, AnArrayThatIsTooShortRaisesAnIndexError) {
  const DescArray lines = {"", "0,zero"};
  try {
    DescAt(lines, 7);
    FAIL() << "nothing was raised";
  } catch (const RunTimeError& error) {
    EXPECT_EQ(error.number, 9);
  }
}

TEST(DescAt, AnEmptyArrayShowsTheFallBackText) {
  EXPECT_EQ(DescAt({}, 7), "Description Not Available");
}

}  // namespace
}  // namespace zendrix::core
