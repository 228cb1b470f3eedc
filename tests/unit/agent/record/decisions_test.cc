#include "agent/record/decisions.h"

#include <sys/stat.h>

#include "platform/linux/linux_files.h"
#include "platform/memory/memory_files.h"
#include "support/temporary_folder.h"
#include "unit/agent/score/scored_host.h"

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

const std::string kCode = "AG,0123456789ABCDEF01234567";

TEST(Activations, LineIsACodeAndWhatWasDecided) {
  const auto filed = ParseActivations(kCode + ",1\r\nAG,000000000000000000000000,0\r\n");
  ASSERT_THAT(filed, SizeIs(2));
  EXPECT_EQ(filed[0].code, kCode);
  EXPECT_TRUE(filed[0].block);
  EXPECT_EQ(filed[1].code, "AG,000000000000000000000000");
  EXPECT_FALSE(filed[1].block);
}

TEST(Activations, LineOfAnyOtherFormIsNoDecision) {
  const std::vector<std::string> lines = {kCode,
                                          kCode + ",",
                                          kCode + ",2",
                                          kCode + ",11",
                                          kCode + "0,1",
                                          "AG,1,1",
                                          ",1",
                                          "",
                                          "AG,0123456789abcdef01234567,1",
                                          " " + kCode + ",1",
                                          "XX,0123456789ABCDEF01234567,1"};
  for (const std::string& line : lines) {
    EXPECT_THAT(ParseActivations(line), IsEmpty()) << line;
  }
}

TEST(Activations, NoMoreThanSoManyAreTaken) {
  std::string text;
  for (std::size_t i = 0; i < kMostFiled + 100; ++i) text += kCode + ",1\n";
  EXPECT_THAT(ParseActivations(text), SizeIs(kMostFiled));
}

TEST(CheckedAlerts, EachSecondStandsOnceAndTheNewDecisionCounts) {
  EXPECT_EQ(
      CheckedAlertsText("5\r\n7A\r\n9 \r\nx\r\n7\r\n99999999999\r\n", {{9, true}, {3, false}, {5, true}}),
      "3\r\n5A\r\n7A\r\n9A\r\n");
  EXPECT_EQ(CheckedAlertsText("", {}), "");
}

class DecisionFilesTest : public testing::Test {
 protected:
  DecisionFilesTest() {
    files.Put("/z/zendrix.ini", "");
    pc.Account("toor", {Rule::kSecondRoot});
    pc.Wait(5);
    pc.Account("admin2", {Rule::kNoPassword});
    pc.Wait(5);
  }
  std::vector<std::string> Follow() {
    return decisions.Follow(pc.scorer(), now_ms += DecisionFiles::kEveryMs);
  }
  std::string Line(std::size_t alert, const char* action) {
    return pc.alerts.at(alert).alert.code + "," + action + "\r\n";
  }
  std::string Second(std::size_t alert) { return std::to_string(pc.alerts.at(alert).utc); }

  ScoredHost pc;
  platform::MemoryFiles files;
  DecisionFiles decisions{files, "/z", "/z"};
  std::int64_t now_ms = 0;
};

TEST_F(DecisionFilesTest, DecisionOutlivesTheConsole) {
  files.Put("/z/KorvessaActivations.kvl", Line(0, "1") + Line(1, "0"));
  EXPECT_THAT(Follow(), SizeIs(2));
  EXPECT_EQ(files.Get("/z/KorvessaAlr.kvl"), Second(0) + "A\r\n" + Second(1) + "\r\n");
  files.Put("/z/KorvessaActivations.kvl", Line(0, "0") + Line(1, "0"));
  EXPECT_THAT(Follow(), ElementsAre(HasSubstr("Allowed by the user")));
  EXPECT_EQ(files.Get("/z/KorvessaAlr.kvl"), Second(0) + "\r\n" + Second(1) + "\r\n");
}

TEST_F(DecisionFilesTest, NothingDecidedWritesNothing) {
  EXPECT_THAT(Follow(), IsEmpty());
  files.Put("/z/KorvessaActivations.kvl", kCode + ",1\r\nrubbish");
  EXPECT_THAT(Follow(), IsEmpty());
  EXPECT_FALSE(files.Has("/z/KorvessaAlr.kvl"));
}

TEST_F(DecisionFilesTest, AlertThatComesLaterIsNotDecidedByAnEarlierDecision) {
  files.Put("/z/KorvessaActivations.kvl", Line(0, "1"));
  Follow();
  pc.Wait(2 * ScoredHost::kDay);
  pc.Account("toor", {Rule::kSecondRoot, Rule::kNoPassword});
  pc.Wait(5);
  ASSERT_EQ(pc.alerts.size(), 3U);
  files.Put("/z/KorvessaActivations.kvl", Line(0, "1") + Line(1, "0"));
  Follow();
  EXPECT_EQ(files.Get("/z/KorvessaAlr.kvl"), Second(0) + "A\r\n" + Second(1) + "\r\n");
}

TEST_F(DecisionFilesTest, RefusedWriteIsToldOnceAndTriedAgain) {
  files.Put("/z/KorvessaActivations.kvl", Line(0, "1"));
  files.FailNext(platform::FileOp::kWriteAll, "/z/KorvessaAlr.kvl", platform::ErrorKind::kNoSpace, 2);
  EXPECT_THAT(Follow(), SizeIs(2));
  EXPECT_THAT(Follow(), IsEmpty());
  Follow();
  EXPECT_EQ(files.Get("/z/KorvessaAlr.kvl"), Second(0) + "A\r\n");
}

TEST_F(DecisionFilesTest, FileOfAnySizeIsNotRead) {
  files.Put("/z/KorvessaActivations.kvl", Line(0, "1") + std::string(2 << 20, '\n'));
  EXPECT_THAT(Follow(), ElementsAre(HasSubstr("too large")));
  EXPECT_THAT(Follow(), IsEmpty());
  EXPECT_FALSE(files.Has("/z/KorvessaAlr.kvl"));
}

TEST_F(DecisionFilesTest, LooksNoMoreOftenThanItShould) {
  Follow();
  files.Put("/z/KorvessaActivations.kvl", Line(0, "1"));
  EXPECT_THAT(decisions.Follow(pc.scorer(), now_ms + DecisionFiles::kEveryMs - 1), IsEmpty());
  EXPECT_THAT(decisions.Follow(pc.scorer(), now_ms + DecisionFiles::kEveryMs), SizeIs(1));
}

// Both were passed over in silence: no decision reached the Agent, and nobody was told.
TEST(DecisionFilesOnDisk, PipeOrFolderInTheirPlaceIsToldOnce) {
  for (const char* name : {kActivationsFile, kCheckedAlertsFile}) {
    for (const bool is_pipe : {true, false}) {
      const test::TemporaryFolder folder;
      const std::string path = folder.path() + "/" + name;
      ASSERT_EQ(is_pipe ? mkfifo(path.c_str(), 0600) : mkdir(path.c_str(), 0700), 0);
      platform::LinuxFiles files;
      ScoredHost pc;
      DecisionFiles decisions(files, folder.path(), folder.path());
      EXPECT_THAT(decisions.Follow(pc.scorer(), DecisionFiles::kEveryMs),
                  ElementsAre(HasSubstr("Decisions cannot be kept")))
          << path;
      EXPECT_THAT(decisions.Follow(pc.scorer(), 2 * DecisionFiles::kEveryMs), IsEmpty());
    }
  }
}

}  // namespace
}  // namespace zendrix::agent
