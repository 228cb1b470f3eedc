#include "agent/host/parse_autorun.h"

namespace zendrix::agent {
namespace {

TEST(ParseDesktopCommand, ReadsTheEntrysOwnCommand) {
  EXPECT_EQ(ParseDesktopCommand("# c\n[Desktop Entry]\nName=x\nExec = /usr/bin/x --a=b\n"
                                "[Desktop Action new]\nExec=/tmp/y\n"),
            "/usr/bin/x --a=b");
}

TEST(ParseDesktopCommand, SwitchedOffEntryGivesNothing) {
  EXPECT_FALSE(ParseDesktopCommand("[Desktop Entry]\nExec=x\nHidden=true\n"));
}

TEST(ParseDesktopCommand, OnlyHiddenTrueSwitchesOff) {
  EXPECT_EQ(ParseDesktopCommand("[Desktop Entry]\nHidden=false\nTerminal=true\nExec=x\n"), "x");
}

TEST(ParseDesktopCommand, CommandOutsideTheEntryIsNone) {
  EXPECT_FALSE(ParseDesktopCommand("Exec=/tmp/y\n[Other]\nExec=/tmp/z\n"));
  EXPECT_FALSE(ParseDesktopCommand("[Desktop Entry]\nExec=\n"));
  EXPECT_FALSE(ParseDesktopCommand(""));
}

TEST(ParseUnitCommands, ReadsEveryCommandWithoutItsPrefix) {
  EXPECT_THAT(ParseUnitCommands(
                  "[Service]\nExecStartPre=-/bin/a\nExecStart=@+!/bin/b c\nExecStop=/bin/d\nExecStart=\n"),
              ::testing::ElementsAre("/bin/a", "/bin/b c"));
}

TEST(ProgramOfCommand, IsTheFirstWord) {
  EXPECT_EQ(ProgramOfCommand("/usr/bin/x --y"), "/usr/bin/x");
  EXPECT_EQ(ProgramOfCommand("\"/opt/my app/x\" -z"), "/opt/my app/x");
  EXPECT_EQ(ProgramOfCommand("\"/opt/open"), "/opt/open");
  EXPECT_EQ(ProgramOfCommand("  "), "");
}

TEST(ProgramOfCommand, LooksBehindEnv) {
  EXPECT_EQ(ProgramOfCommand("env A=1 -i /tmp/x"), "/tmp/x");
  EXPECT_EQ(ProgramOfCommand("/usr/bin/env"), "");
}

}  // namespace
}  // namespace zendrix::agent
