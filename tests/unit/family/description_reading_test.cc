// What a description says, read once for the page and for the quarantine.
#include "family/description_reading.h"

#include <gtest/gtest.h>

namespace zendrix::family {
namespace {

TEST(DescriptionReadingTest, ARunningProcessIsAPathAndANumber) {
  const auto reading = ReadRunningProcess("/opt/a:b/tool:4711");
  EXPECT_EQ(reading.path, "/opt/a:b/tool");
  EXPECT_EQ(reading.process, "4711");
  EXPECT_EQ(reading.behind_colon, "4711");
  EXPECT_EQ(reading.program, "/opt/a:b/tool:4711") << "without a backslash the page names it whole";
}

TEST(DescriptionReadingTest, WithoutANumberTheWholeIsThePath) {
  EXPECT_EQ(ReadRunningProcess("/opt/tool").path, "/opt/tool");
  EXPECT_FALSE(ReadRunningProcess("/opt/tool").behind_colon.has_value());
  for (const char* text : {"/opt/tool:", "/opt/tool:x", "/opt/tool:4x"}) {
    EXPECT_EQ(ReadRunningProcess(text).path, text);
    EXPECT_EQ(ReadRunningProcess(text).process, "");
    EXPECT_TRUE(ReadRunningProcess(text).behind_colon.has_value());
  }
}

TEST(DescriptionReadingTest, ThePageNamesAProgramByWhatStandsBehindItsLastBackslash) {
  EXPECT_EQ(ReadRunningProcess("C:\\Tools\\server.exe:1234").program, "server.exe");
  EXPECT_EQ(ReadRunningProcess("C:\\Tools\\server.exe").program, "server.exe");
}

TEST(DescriptionReadingTest, AListeningPortIsAPortAndAPath) {
  const auto reading = ReadListeningPort("8080:/opt/a:b");
  EXPECT_EQ(reading.port, "8080");
  EXPECT_EQ(reading.path, "/opt/a:b");
  EXPECT_EQ(ReadListeningPort("8080").path, "");
  EXPECT_EQ(ReadListeningPort("8080").port, "");
}

TEST(DescriptionReadingTest, AConnectionIsAnAddressAPortAndAPath) {
  const auto reading = ReadConnection("10.0.0.7:443:/opt/a:b");
  EXPECT_EQ(reading.address, "10.0.0.7");
  EXPECT_EQ(reading.port, "443");
  EXPECT_EQ(reading.path, "/opt/a:b");
  EXPECT_EQ(ReadConnection("10.0.0.7:443").port, "443");
  EXPECT_EQ(ReadConnection("10.0.0.7:443").path, "");
  EXPECT_EQ(ReadConnection("10.0.0.7").address, "");
}

TEST(DescriptionReadingTest, EmptyPortOfAConnectionIsNotReadOutOfThePath) {
  const auto reading = ReadConnection("10.0.0.7::/opt/a:b");
  EXPECT_EQ(reading.address, "10.0.0.7");
  EXPECT_EQ(reading.port, "");
  EXPECT_EQ(reading.path, "/opt/a:b");
}

TEST(DescriptionReadingTest, AnAutostartEntryIsItsOwnPathNeverThatOfItsCommand) {
  const auto reading = ReadAutostartEntry("/home/u/x.desktop=/opt/tool --a=b");
  EXPECT_EQ(reading.path, "/home/u/x.desktop");
  EXPECT_EQ(reading.command, "/opt/tool --a=b");
  EXPECT_EQ(ReadAutostartEntry("/home/u/x").path, "/home/u/x");
  EXPECT_EQ(ReadAutostartEntry("/home/u/x").command, "");
}

TEST(DescriptionReadingTest, EachMonitorHasItsKindAndOthersNameNoFile) {
  EXPECT_EQ(KindOfMonitor("Running Processes"), DescriptionKind::kRunningProcess);
  EXPECT_EQ(KindOfMonitor("Listening Ports"), DescriptionKind::kListeningPort);
  EXPECT_EQ(KindOfMonitor("TCP Connections"), DescriptionKind::kConnection);
  EXPECT_EQ(KindOfMonitor("Autorun Registry"), DescriptionKind::kAutostartEntry);
  EXPECT_EQ(KindOfMonitor("Windows Folder"), DescriptionKind::kFolderEntry);
  for (const char* other : {"", "System Users", "Logged-On Users", "running processes", "Memory Utilization"})
    EXPECT_EQ(KindOfMonitor(other), std::nullopt) << other;
}

TEST(DescriptionReadingTest, EachKindIsReadByItsOwnFunction) {
  const char* text = "a:5:/b=c:7";
  EXPECT_EQ(ReadDescription(DescriptionKind::kRunningProcess, text).path, "a:5:/b=c");
  EXPECT_EQ(ReadDescription(DescriptionKind::kListeningPort, text).path, "5:/b=c:7");
  EXPECT_EQ(ReadDescription(DescriptionKind::kConnection, text).path, "/b=c:7");
  EXPECT_EQ(ReadDescription(DescriptionKind::kAutostartEntry, text).path, "a:5:/b");
  EXPECT_EQ(ReadDescription(DescriptionKind::kFolderEntry, text).path, text);
}

}  // namespace
}  // namespace zendrix::family
