#include "mail/options.h"

namespace zendrix::mail {
namespace {

TEST(ParseMailOptions, NothingGivenTakesTheDefaults) {
  const auto parsed = ParseOptions({});
  EXPECT_EQ(parsed.error, "");
  EXPECT_FALSE(parsed.options.once);
  EXPECT_FALSE(parsed.options.trial);
  EXPECT_FALSE(parsed.options.for_seconds);
  EXPECT_EQ(parsed.options.interval_seconds, 2);
  EXPECT_EQ(parsed.options.folder, "");
}

TEST(ParseMailOptions, TakesEveryOption) {
  const auto parsed = ParseOptions({"--for", "6", "--interval", "9", "--folder", "/f", "--settings", "/s",
                                    "--state", "/k", "--authorities", "/a", "--help"});
  EXPECT_EQ(parsed.error, "");
  EXPECT_EQ(parsed.options.for_seconds, 6);
  EXPECT_EQ(parsed.options.interval_seconds, 9);
  EXPECT_EQ(parsed.options.folder, "/f");
  EXPECT_EQ(parsed.options.settings, "/s");
  EXPECT_EQ(parsed.options.state, "/k");
  EXPECT_EQ(parsed.options.authorities, "/a");
  EXPECT_TRUE(parsed.options.help);
  EXPECT_TRUE(ParseOptions({"--once"}).options.once);
  EXPECT_TRUE(ParseOptions({"--try"}).options.trial);
}

TEST(ParseMailOptions, WrongOnesAreRefused) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"--password", "x"},
                                             {"x"},
                                             {""},
                                             {"--folder"},
                                             {"--folder", ""},
                                             {"--for", "0"},
                                             {"--for", "-1"},
                                             {"--for", "1x"},
                                             {"--interval", "3601"},
                                             {"--interval --for", "1"},
                                             {"--once", "--try"},
                                             {"--once", "--for", "5"}}) {
    EXPECT_NE(ParseOptions(arguments).error, "") << arguments.front();
  }
}

}  // namespace
}  // namespace zendrix::mail
