#include "agent/host/parse_processes.h"

namespace zendrix::agent {
namespace {

constexpr const char* kStat =
    "7561 (cat) R 7532 7532 4098 0 -1 4194304 101 0 0 0 0 0 0 0 20 0 1 0 102153 3133440 390 "
    "18446744073709551615\n";

TEST(ParseProcessStat, ReadsNameParentAndStart) {
  const auto stat = ParseProcessStat(kStat);
  ASSERT_TRUE(stat);
  EXPECT_EQ(stat->pid, 7561U);
  EXPECT_EQ(stat->name, "cat");
  EXPECT_EQ(stat->parent, 7532U);
  EXPECT_EQ(stat->start_ticks, 102153U);
  EXPECT_FALSE(stat->kernel_thread);
}

TEST(ParseProcessStat, NameMayHoldParenthesesBlanksAndLineEnds) {
  const auto stat = ParseProcessStat("9 (a) S 1 (\n) S 1 9 9 0 -1 4194304 0 0 0 0 0 0 0 0 20 0 1 0 55 0 0\n");
  ASSERT_TRUE(stat);
  EXPECT_EQ(stat->name, "a) S 1 (\n");
  EXPECT_EQ(stat->start_ticks, 55U);
}

TEST(ParseProcessStat, TellsAKernelThreadByItsFlag) {
  const auto stat = ParseProcessStat("2 (kthreadd) S 0 0 0 0 -1 2129984 0 0 0 0 0 0 0 0 20 0 1 0 1 0 0\n");
  ASSERT_TRUE(stat);
  EXPECT_TRUE(stat->kernel_thread);
}

TEST(ParseProcessStat, TellsAnEndedProcessByItsState) {
  const auto stat = ParseProcessStat("9 (sh) Z 1 9 9 0 -1 4194304 0 0 0 0 0 0 0 0 20 0 1 0 55 0 0\n");
  ASSERT_TRUE(stat);
  EXPECT_TRUE(stat->ended);
}

TEST(ParseProcessStat, TellsAProcessThatIsAboutToEndByItsFlag) {
  const auto stat = ParseProcessStat("9 (sh) R 1 9 9 0 -1 4194308 0 0 0 0 0 0 0 0 20 0 1 0 55 0 0\n");
  ASSERT_TRUE(stat);
  EXPECT_TRUE(stat->ended);
}

TEST(ParseProcessStat, DamagedTextGivesNothing) {
  for (const char* text : {"", "7561", "7561 (cat", "7561 cat) R", ")7561(", "7561 (cat) R 1 2 3",
                           "x (cat) R 7532 7532 4098 0 -1 4194304 101 0 0 0 0 0 0 0 20 0 1 0 102153",
                           "7561 (cat) R -1 7532 4098 0 -1 4194304 101 0 0 0 0 0 0 0 20 0 1 0 102153"}) {
    EXPECT_FALSE(ParseProcessStat(text)) << text;
  }
}

TEST(ParseResidentKb, ReadsItsLine) {
  EXPECT_EQ(ParseResidentKb("Name:\tcat\nVmRSS:\t    1700 kB\nVmSize: 3 kB\n"), 1700U);
}

TEST(ParseResidentKb, MissingOrDamagedLineGivesNothing) {
  EXPECT_FALSE(ParseResidentKb(""));
  EXPECT_FALSE(ParseResidentKb("VmRSS:\n"));
  EXPECT_FALSE(ParseResidentKb("VmRSS:\tmany kB\n"));
}

TEST(ParseProgramFile, PlainPath) {
  const auto file = ParseProgramFile("/usr/bin/cat");
  EXPECT_EQ(file.path, "/usr/bin/cat");
  EXPECT_FALSE(file.deleted);
  EXPECT_FALSE(file.in_memory);
}

TEST(ParseProgramFile, DeletedFileLosesTheMark) {
  const auto file = ParseProgramFile("/tmp/x (deleted)");
  EXPECT_EQ(file.path, "/tmp/x");
  EXPECT_TRUE(file.deleted);
}

TEST(ParseProgramFile, AnonymousMemoryFile) {
  EXPECT_TRUE(ParseProgramFile("/memfd:a (deleted)").in_memory);
}

TEST(ParseSocketInode, ReadsOnlySockets) {
  EXPECT_EQ(ParseSocketInode("socket:[1599]"), 1599U);
  for (const char* text : {"pipe:[1599]", "socket:[]", "socket:[1", "socket:", "/dev/null", ""}) {
    EXPECT_FALSE(ParseSocketInode(text)) << text;
  }
}

}  // namespace
}  // namespace zendrix::agent
