#include "agent/options.h"

namespace zendrix::agent {
namespace {

TEST(ParseOptions, NothingGivenTakesTheDefaults) {
  const auto parsed = ParseOptions({});
  EXPECT_EQ(parsed.error, "");
  EXPECT_FALSE(parsed.options.once);
  EXPECT_EQ(parsed.options.interval_seconds, 5);
  EXPECT_FALSE(parsed.options.for_seconds);
  EXPECT_EQ(parsed.options.folder, "");
  EXPECT_EQ(parsed.options.form, Form::kHome);
}

TEST(ParseOptions, TakesEveryOption) {
  const auto parsed =
      ParseOptions({"--for", "6", "--interval", "1", "--folder", "/x", "--form", "admin", "--help"});
  EXPECT_EQ(parsed.error, "");
  EXPECT_EQ(parsed.options.for_seconds, 6);
  EXPECT_EQ(parsed.options.interval_seconds, 1);
  EXPECT_EQ(parsed.options.folder, "/x");
  EXPECT_EQ(parsed.options.form, Form::kAdmin);
  EXPECT_TRUE(parsed.options.help);
}

TEST(ParseOptions, StartAndStopAreTasksOfTheirOwn) {
  EXPECT_EQ(ParseOptions({}).options.task, Task::kRecord);
  EXPECT_EQ(ParseOptions({"--start", "--interval", "3"}).options.task, Task::kStart);
  EXPECT_EQ(ParseOptions({"--stop"}).options.task, Task::kStop);
  EXPECT_EQ(ParseOptions({"--stop"}).error, "");
}

TEST(ParseOptions, StateStandsInPlaceOfTheFolder) {
  const auto parsed = ParseOptions({"--state", "/s", "--status", "--plain"});
  EXPECT_EQ(parsed.error, "");
  EXPECT_EQ(parsed.options.state, "/s");
  EXPECT_EQ(parsed.options.task, Task::kStatus);
  EXPECT_TRUE(parsed.options.plain);
  EXPECT_FALSE(ParseOptions({}).options.plain);
}

TEST(ParseOptions, ValueMayStandBehindAnEqualsSign) {
  const auto parsed = ParseOptions({"--interval=3", "--folder=/a=b", "--once"});
  EXPECT_EQ(parsed.error, "");
  EXPECT_EQ(parsed.options.interval_seconds, 3);
  EXPECT_EQ(parsed.options.folder, "/a=b");
  EXPECT_TRUE(parsed.options.once);
}

TEST(ParseOptions, WrongUsageIsNamedInOneLine) {
  const std::vector<std::pair<std::vector<std::string>, std::string>> cases = {
      {{"--interval", "0"}, "--interval needs a number of seconds from 1 to 3600"},
      {{"--interval", "3601"}, "--interval needs a number of seconds from 1 to 3600"},
      {{"--interval", "1.5"}, "--interval needs a number of seconds from 1 to 3600"},
      {{"--interval"}, "--interval needs a value"},
      {{"--for", "-1"}, "--for needs a number of seconds, at least 1"},
      {{"--for", ""}, "--for needs a number of seconds, at least 1"},
      {{"--folder", ""}, "--folder needs a folder"},
      {{"--folder"}, "--folder needs a value"},
      {{"--form", "Home"}, "--form needs home or admin"},
      {{"--once", "--for", "6"}, "--once, --for, --start, --stop, --status and explain exclude each other"},
      {{"--start", "--stop"}, "--once, --for, --start, --stop, --status and explain exclude each other"},
      {{"--stop", "--once"}, "--once, --for, --start, --stop, --status and explain exclude each other"},
      {{"--status", "--once"}, "--once, --for, --start, --stop, --status and explain exclude each other"},
      {{"--state", ""}, "--state needs a folder"},
      {{"--state", "/s", "--folder", "/x"}, "--state goes with neither --folder nor --start nor --stop"},
      {{"--stop", "--state", "/s"}, "--state goes with neither --folder nor --start nor --stop"},
      {{"--once=1"}, "unknown argument --once_1"},
      {{"folder"}, "unknown argument folder"},
      {{"-h\n"}, "unknown argument -h_"},
      {{""}, "unknown argument _"},
  };
  for (const auto& [arguments, error] : cases) EXPECT_EQ(ParseOptions(arguments).error, error);
}

TEST(Options, ExplainTakesAnAlertOrNone) {
  const auto all = ParseOptions({"explain", "--folder", "/z"});
  EXPECT_EQ(all.error, "");
  EXPECT_EQ(all.options.task, Task::kExplain);
  EXPECT_EQ(all.options.alert, "");
  EXPECT_EQ(ParseOptions({"explain", "AG,01"}).options.alert, "AG,01");
  EXPECT_EQ(ParseOptions({"explain", "1", "2"}).error, "unknown argument 2");
  EXPECT_EQ(ParseOptions({"1", "explain"}).error, "unknown argument 1");
}

}  // namespace
}  // namespace zendrix::agent
