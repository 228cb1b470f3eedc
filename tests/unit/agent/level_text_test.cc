#include "agent/level_text.h"

#include <gmock/gmock.h>

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

const std::vector<WatchLevel> kLevels = {
    {"Running Processes", {Level::kEvents, "BPF", ""}},
    {"Windows Folder", {Level::kNotices, "inotify", ""}},
    {"System Users", {Level::kPolling, "a look every 5 s", "no inotify: too many, refused"}},
    {"Logged-On Users", {Level::kPolling, "a look every 5 s", "no inotify: too many, refused"}},
    {"System (failed logins)", {Level::kNone, "", "the record cannot be seen"}},
};

TEST(LevelText, SaysEachLevelInWordsThatCanStandInALine) {
  EXPECT_EQ(LevelText(kLevels[0]), "Running Processes - every event is told by BPF");
  EXPECT_EQ(LevelText(kLevels[1]), "Windows Folder - every change is told by inotify");
  EXPECT_EQ(LevelText(kLevels[2]), "System Users - a look every 5 s - no inotify - too many - refused");
  EXPECT_EQ(LevelText(kLevels[4]), "System (failed logins) - not watched - the record cannot be seen");
}

TEST(LevelText, WhatIsWatchedAlikeSharesALine) {
  const auto texts = LevelTexts(kLevels);
  ASSERT_EQ(texts.size(), 4U);
  EXPECT_THAT(texts[2], HasSubstr("System Users and Logged-On Users - a look every 5 s"));
}

TEST(LevelText, SummarySaysWhatIsSeenAndWhatIsNot) {
  EXPECT_EQ(Summary(kLevels),
            "It is told at once of Running Processes and Windows Folder. By a look every 5 s it sees System "
            "Users and Logged-On Users, but not what comes and goes in between. It cannot see System (failed "
            "logins). Why not more: no inotify: too many, refused and the record cannot be seen.");
  EXPECT_EQ(Summary({}), "");
}

TEST(LevelText, DurationsAreForAPerson) {
  EXPECT_EQ(DurationText(119), "119 s");
  EXPECT_EQ(DurationText(120), "2 min");
  EXPECT_EQ(DurationText(3600), "1 h");
  EXPECT_EQ(DurationText(11130), "3 h 5 min");
}

TEST(StatusJson, ReadsBackItsSignOfLifeAndItsSentence) {
  Status status;
  status.running = true;
  status.process = 7;
  status.alive = 1700000123;
  status.levels = {{"a\"b\\c\xE9\n", {Level::kNone, "", "'"}}};
  status.minute.lost = 3;
  const std::string text = StatusJson(status);
  EXPECT_EQ(AliveIn(text), 1700000123);
  EXPECT_EQ(SummaryIn(text), "It cannot see a'b'c??. Why not more: '.");
  EXPECT_THAT(text,
              HasSubstr("{\"watched\": \"a'b'c??\", \"level\": \"none\", \"how\": \"\", \"reason\": \"'\"}"));
  EXPECT_THAT(text, HasSubstr("\"lost\": 3}"));
  for (const char byte : text) EXPECT_TRUE(byte == '\n' || (byte >= ' ' && byte <= '~')) << text;
}

TEST(StatusJson, DamagedTextGivesNothing) {
  for (const char* text : {"", "{", "\n  \"alive\": ", "\n  \"alive\": x", "\n  \"alive\": 99999999999,"}) {
    EXPECT_EQ(AliveIn(text), 0) << text;
    EXPECT_EQ(SummaryIn(text), "") << text;
  }
}

}  // namespace
}  // namespace zendrix::agent
