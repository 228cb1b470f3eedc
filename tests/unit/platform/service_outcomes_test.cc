#include "platform/linux/service_outcomes.h"

#include <gtest/gtest.h>

#include <map>

namespace zendrix::platform {
namespace {

TEST(RefusalOfTest, ErrorsOfTheBusHaveTheirNumbers) {
  const std::map<std::string, int> numbers = {{"DBus.Error.NotSupported", 1},
                                              {"DBus.Error.UnknownMethod", 1},
                                              {"DBus.Error.AccessDenied", 2},
                                              {"DBus.Error.AuthFailed", 2},
                                              {"DBus.Error.InteractiveAuthorizationRequired", 2},
                                              {"PolicyKit1.Error.NotAuthorized", 2},
                                              {"PolicyKit1.Error.Cancelled", 2},
                                              {"systemd1.JobTypeNotApplicable", 4},
                                              {"systemd1.OnlyByDependency", 4},
                                              {"systemd1.ShuttingDown", 5},
                                              {"systemd1.TransactionIsDestructive", 5},
                                              {"systemd1.TransactionJobsConflicting", 5},
                                              {"DBus.Error.NoReply", 7},
                                              {"DBus.Error.Timeout", 7},
                                              {"DBus.Error.TimedOut", 7},
                                              {"systemd1.LoadFailed", 8},
                                              {"systemd1.NoSuchUnit", 13},
                                              {"systemd1.UnitMasked", 14},
                                              {"systemd1.TransactionOrderIsCyclic", 18},
                                              {"systemd1.BadUnitSetting", 21},
                                              {"DBus.Error.InvalidArgs", 21}};
  for (const auto& [name, number] : numbers) {
    EXPECT_EQ(RefusalOf("org.freedesktop." + name, "").value(), number) << name;
  }
  EXPECT_EQ(RefusalOf("", "").value(), 8);
}

TEST(RefusalOfTest, NobodyThereIsAnError) {
  for (const char* name :
       {"org.freedesktop.DBus.Error.ServiceUnknown", "org.freedesktop.DBus.Error.Disconnected",
        "org.freedesktop.DBus.Error.Spawn.ChildExited", "System.Error.ECONNREFUSED"}) {
    const auto refusal = RefusalOf(name, "why");
    ASSERT_FALSE(refusal) << name;
    EXPECT_EQ(refusal.error().kind, ErrorKind::kUnavailable);
    EXPECT_EQ(refusal.error().text, std::string(name) + ": why");
  }
}

TEST(JobOutcomeTest, EveryEndOfAJobHasANumber) {
  const std::map<std::string, int> numbers = {
      {"done", 0},    {"unsupported", 1}, {"dependency", 3}, {"invalid", 4},   {"canceled", 5},
      {"skipped", 5}, {"assert", 5},      {"once", 5},       {"timeout", 7},   {"failed", 8},
      {"", 8},        {"new word", 8},    {"DONE", 8},       {"collected", 16}};
  for (const auto& [result, number] : numbers) EXPECT_EQ(JobOutcome(result), number) << result;
}

TEST(StartFailureTest, SaysWhatIsMissing) {
  EXPECT_EQ(StartFailure("timeout", 203), 7);
  EXPECT_EQ(StartFailure("start-limit-hit", 203), 5);
  EXPECT_EQ(StartFailure("exit-code", 203), 9);
  EXPECT_EQ(StartFailure("exit-code", 216), 22);
  EXPECT_EQ(StartFailure("exit-code", 217), 22);
  EXPECT_EQ(StartFailure("exit-code", 1), 8);
  EXPECT_EQ(StartFailure("success", 0), 8);
}

}  // namespace
}  // namespace zendrix::platform
