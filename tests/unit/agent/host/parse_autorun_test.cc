#include "agent/host/parse_autorun.h"

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(ParseDesktopCommands, ReadsTheEntrysOwnCommand) {
  EXPECT_THAT(ParseDesktopCommands("# c\n[Desktop Entry]\nName=x\nExec = /usr/bin/x --a=b\n"
                                   "[Desktop Action new]\nExec=/tmp/y\n")
                  .texts,
              ElementsAre("/usr/bin/x --a=b"));
}

TEST(ParseDesktopCommands, SwitchedOffEntryGivesNothing) {
  EXPECT_THAT(ParseDesktopCommands("[Desktop Entry]\nExec=x\nHidden=true\n").texts, IsEmpty());
}

// Of two keys one desktop takes the first and another the last, so both count.
TEST(ParseDesktopCommands, WhateverAnyDesktopWouldRunIsTold) {
  EXPECT_THAT(ParseDesktopCommands("[Desktop Entry]\nExec=/usr/bin/x\nExec=/tmp/evil\n").texts,
              ElementsAre("/usr/bin/x", "/tmp/evil"));
  EXPECT_THAT(ParseDesktopCommands("[Desktop Entry]\nHidden=true\nHidden=false\nExec=/tmp/evil\n").texts,
              ElementsAre("/tmp/evil"));
  EXPECT_THAT(ParseDesktopCommands("[Desktop Entry]\nExec[$e]=/tmp/evil\n").texts, ElementsAre("/tmp/evil"));
  EXPECT_THAT(ParseDesktopCommands("[Desktop Entry]\nTryExec=/usr/bin/x\n").texts, IsEmpty());
}

TEST(ParseDesktopCommands, OnlyHiddenTrueSwitchesOff) {
  EXPECT_THAT(ParseDesktopCommands("[Desktop Entry]\nHidden=false\nTerminal=true\nExec=x\n").texts,
              ElementsAre("x"));
}

TEST(ParseDesktopCommands, CommandOutsideTheEntryIsNone) {
  EXPECT_THAT(ParseDesktopCommands("Exec=/tmp/y\n[Other]\nExec=/tmp/z\n").texts, IsEmpty());
  EXPECT_THAT(ParseDesktopCommands("[Desktop Entry]\nExec=\n#Exec=/tmp/y\n").texts, IsEmpty());
  EXPECT_THAT(ParseDesktopCommands("").texts, IsEmpty());
}

TEST(ParseUnitCommands, ReadsEveryCommandWithoutItsPrefix) {
  EXPECT_THAT(ParseUnitCommands("[Service]\nExecStartPre=-/bin/a\nExecStart=@+!/bin/b c\nExecStart=\n").texts,
              ElementsAre("/bin/a", "/bin/b c"));
}

TEST(ParseUnitCommands, EveryTimeOfAUnitsLifeCounts) {
  for (const char* key : {"ExecStart", "ExecStartPre", "ExecStartPost", "ExecReload", "ExecStop",
                          "ExecStopPost", "ExecCondition"}) {
    EXPECT_THAT(ParseUnitCommands(std::string(key) + "=/tmp/x\n").texts, ElementsAre("/tmp/x")) << key;
  }
  EXPECT_THAT(ParseUnitCommands("ExecSearchPath=/tmp/x\n; ExecStart=/tmp/y\n").texts, IsEmpty());
}

TEST(ParseUnitCommands, LineGoesOnBehindABackslash) {
  EXPECT_THAT(ParseUnitCommands("ExecStart=/bin/a \\\n# a word\n  /tmp/x \\\n y\nExecStop=/bin/b\\").texts,
              ElementsAre("/bin/a  /tmp/x  y", "/bin/b"));
}

TEST(ParseUnitCommands, OfVeryManyTheFirstAreTakenAndTheOthersCounted) {
  std::string text;
  for (int i = 0; i < 20; ++i) text += "ExecStart=/bin/a" + std::to_string(i) + "\n";
  const Commands commands = ParseUnitCommands(text);
  EXPECT_EQ(commands.texts.size(), kMostCommands);
  EXPECT_EQ(commands.left_out, 20 - kMostCommands);
}

}  // namespace
}  // namespace zendrix::agent
