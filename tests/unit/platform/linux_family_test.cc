#include "platform/linux/linux_family.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "platform/memory/memory_family.h"
#include "support/environment.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

std::string LibraryFolder(const std::string& kind) {
  return ZENDRIX_TEST_LIBRARIES "/" + kind;
}

std::string UpToNul(const std::string& buffer) {
  return buffer.substr(0, buffer.find('\0'));
}

QuarantineEvent Named(const std::string& description) {
  return {"Running Processes", description, "17", "42"};
}

TEST(LinuxFamilyTest, MissingLibraryRefusesEveryCallOfIt) {
  const test::TemporaryFolder empty;
  LinuxFamily family(empty.path());
  std::string message(256, ' ');
  EXPECT_EQ(family.QuarantineExport(Named("x"), message).error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(family.UnquarantineExport(Named("x"), message).error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(family.GetHostIDExport("Zendrix").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(message, std::string(256, ' '));
}

TEST(LinuxFamilyTest, MissingLibraryLeavesTheLinkedOnesAtWork) {
  LinuxFamily family("/nonexistent");
  EXPECT_EQ(family.HashBytes(""), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(family.ToUTC(family.FromUTC(1100000000)), 1100000000);
}

TEST(LinuxFamilyTest, MissingFunctionIsNotFound) {
  LinuxFamily family(LibraryFolder("partial"));
  std::string message(256, ' ');
  EXPECT_EQ(family.GetHostIDExport("Zendrix").error().kind, ErrorKind::kNotFound);
  ASSERT_TRUE(family.QuarantineExport(Named("x"), message).ok());
  EXPECT_EQ(UpToNul(message), "partial");
  EXPECT_EQ(family.UnquarantineExport(Named("x"), message).error().kind, ErrorKind::kNotFound);
}

TEST(LinuxFamilyTest, CallsReachTheLibraryWithTheirBuffers) {
  LinuxFamily family(LibraryFolder("whole"));
  std::string message(256, ' ');
  ASSERT_TRUE(family.QuarantineExport(Named("notepad.exe"), message).ok());
  EXPECT_EQ(message.size(), 256U);
  EXPECT_EQ(UpToNul(message), "quarantined notepad.exe (256) of Running Processes at 17 for 42");
  ASSERT_TRUE(family.UnquarantineExport(Named("notepad.exe"), message).ok());
  EXPECT_EQ(UpToNul(message), "released notepad.exe (256)");
  EXPECT_EQ(family.GetHostIDExport("Zendrix").value(), "Zendrix-5120-blank");
}

TEST(LinuxFamilyTest, AnEventThatThePageDoesNotShowIsHandedOnAsSuch) {
  LinuxFamily family(LibraryFolder("whole"));
  std::string message;
  QuarantineEvent event = Named("x");
  event.shown = false;
  ASSERT_TRUE(family.QuarantineExport(event, message).ok());
  EXPECT_EQ(UpToNul(message), "quarantined x (256) of Running Processes at 17 for 42, not shown");
}

TEST(LinuxFamilyTest, ListIsReadWholeAndLinesThatAreNoEntriesAreLeftOut) {
  LinuxFamily family(LibraryFolder("whole"));
  const QuarantineEntry first{std::string(32, 'a'), "/a b\n%a", 7,   std::string(64, 'c'),
                              1795225500,           1000,       "42"};
  const QuarantineEntry second{
      std::string(32, 'b'), "/" + std::string(300, 'p'), 0, std::string(64, 'd'), -1, 0, ""};
  EXPECT_EQ(family.QuarantineList().value(), (std::vector<QuarantineEntry>{first, second}));
  EXPECT_EQ(family.QuarantineListOf("42").value(), std::vector<QuarantineEntry>{first});
  EXPECT_EQ(LinuxFamily(LibraryFolder("silent")).QuarantineList().value(), std::vector<QuarantineEntry>{});
  EXPECT_EQ(LinuxFamily(LibraryFolder("partial")).QuarantineListOf("42").error().kind, ErrorKind::kNotFound);
}

TEST(LinuxFamilyTest, RestoreSaysWhetherTheEntryWentBack) {
  LinuxFamily family(LibraryFolder("whole"));
  std::string message;
  EXPECT_TRUE(family.RestoreExport("abc", message).value());
  EXPECT_EQ(UpToNul(message), "asked for abc");
  EXPECT_EQ(message.size(), 256U);
  EXPECT_FALSE(family.RestoreExport("xyz", message).value());
  EXPECT_EQ(LinuxFamily("/nonexistent").RestoreExport("abc", message).error().kind, ErrorKind::kNotFound);
}

TEST(LinuxFamilyTest, BufferOfAnotherSizeIsMadeToFit) {
  LinuxFamily family(LibraryFolder("whole"));
  std::string message;
  ASSERT_TRUE(family.QuarantineExport(Named(std::string(4000, 'x')), message).ok());
  EXPECT_EQ(message.size(), 256U);
  EXPECT_EQ(UpToNul(message).size(), 255U);
}

TEST(LinuxFamilyTest, SilentLibraryLeavesBlanksAndGivesNoHostIdentifier) {
  LinuxFamily family(LibraryFolder("silent"));
  std::string message(256, ' ');
  ASSERT_TRUE(family.QuarantineExport(Named("x"), message).ok());
  EXPECT_EQ(message, std::string(256, ' '));
  EXPECT_FALSE(family.GetHostIDExport("Zendrix").ok());
}

TEST(LinuxFamilyTest, LibraryThatArrivesLaterIsFoundAtTheNextCall) {
  const test::TemporaryFolder folder;
  LinuxFamily family(folder.path());
  ASSERT_FALSE(family.GetHostIDExport("Zendrix").ok());
  std::filesystem::copy(LibraryFolder("whole") + "/libKorvessaIntermediateTypes.so", folder.path());
  EXPECT_TRUE(family.GetHostIDExport("Zendrix").ok());
}

TEST(MemoryFamilyTest, AgreesWithTheRealCalendar) {
  const test::EnvironmentVariable zone("TZ", "UTC0");
  LinuxFamily real("/nonexistent");
  MemoryFamily twin;
  for (std::int64_t t = -2147483648LL; t <= 2147483647LL; t += 1234567) {
    const auto seconds = static_cast<std::int32_t>(t);
    const LocalTime a = real.FromUTC(seconds);
    const LocalTime b = twin.FromUTC(seconds);
    ASSERT_EQ(std::tie(a.day, a.month, a.year, a.hour, a.minute, a.second),
              std::tie(b.day, b.month, b.year, b.hour, b.minute, b.second));
    ASSERT_EQ(twin.ToUTC(b), seconds);
  }
}

TEST(MemoryFamilyTest, LocalTimeStandsAtItsOffset) {
  MemoryFamily twin;
  twin.offset_seconds = 3600;
  const LocalTime local = twin.FromUTC(0);
  EXPECT_EQ(local.hour, 1);
  EXPECT_EQ(twin.ToUTC(local), 0);
  EXPECT_EQ(twin.HashBytes("abc"), "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
}

TEST(MemoryFamilyTest, QuarantineIsWrittenDownAndAnswersFromTheScript) {
  MemoryFamily twin;
  twin.ScriptMessage("done");
  std::string message(256, ' ');
  ASSERT_TRUE(twin.QuarantineExport(Named("a"), message).ok());
  EXPECT_EQ(message, "done" + std::string(1, '\0') + std::string(251, ' '));
  message.assign(256, ' ');
  ASSERT_TRUE(twin.UnquarantineExport(Named("b"), message).ok());
  EXPECT_EQ(message, std::string(256, ' '));
  twin.library_missing = true;
  EXPECT_EQ(twin.QuarantineExport(Named("c"), message).error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(twin.GetHostIDExport("Zendrix").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(twin.QuarantineList().error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(twin.QuarantineListOf("42").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(twin.RestoreExport("a", message).error().kind, ErrorKind::kNotFound);
  ASSERT_EQ(twin.quarantine_events.size(), 2U);
  EXPECT_EQ(twin.quarantine_events[0].alert, "42");
  EXPECT_EQ(twin.quarantine_calls, (std::vector<MemoryFamily::QuarantineCall>{{true, "a"}, {false, "b"}}));
}

TEST(MemoryFamilyTest, RestoreTakesTheEntryOffTheList) {
  MemoryFamily twin;
  twin.quarantine_entries = {{"a", "/a", 1, "", 5, 0, "42"}, {"b", "/b", 1, "", 4, 0, "43"}};
  EXPECT_EQ(twin.QuarantineListOf("43").value().at(0).name, "b");
  std::string message;
  EXPECT_FALSE(twin.RestoreExport("c", message).value());
  EXPECT_TRUE(twin.RestoreExport("a", message).value());
  EXPECT_EQ(twin.restore_calls, (std::vector<std::string>{"c", "a"}));
  EXPECT_EQ(twin.QuarantineList().value().size(), 1U);
}

}  // namespace
}  // namespace zendrix::platform
