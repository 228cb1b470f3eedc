// wizard: the Alert Analysis wizard answered from the command line.
#include <gmock/gmock.h>

#include "cli/inspector.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class WizardCommandTest : public InspectorTest {
 protected:
  void SetUp() override {
    WriteSettings();
    WriteAlertHistory();
    WriteDescriptions();
    WriteHashed("KorvessaDesc6.kvl", "yesmsg,Normal.\r\nnomsg,Not normal.\r\ndknowmsg,Who knows.\r\n");
    events_ = Document({"alert", "6"})["NotableInfo"].size() - 1;
  }
  Arguments Answered(const std::string& answer, std::size_t count) const {
    Arguments words{"wizard", "6"};
    words.insert(words.end(), count, answer);
    return words;
  }
  std::size_t events_ = 0;
};

TEST_F(WizardCommandTest, PagesFromTheIntroductionToTheEnd) {
  ASSERT_GE(events_, 2U);
  const Json told = Document({"alert", "6"})["shown"]["GetMonitorDesc"];
  const Json document = Document(Answered("0", events_));
  EXPECT_THAT(KeysOf(document), ElementsAre("pages", "result", "messages", "log"));
  ASSERT_EQ(document["pages"].size(), events_ + 2);
  EXPECT_EQ(document["pages"][0], told[0]);
  for (std::size_t step = 1; step <= events_; ++step)
    EXPECT_EQ(document["pages"][step],
              "<h3><font color='#0052A5'>Korvessa Zendrix Alert Analisys Wizard - Step " +
                  std::to_string(step) + " of " + std::to_string(events_) + "</font></h3>" +
                  told[step].get<std::string>());
  EXPECT_EQ(document["pages"].back(), "Normal.");
  EXPECT_EQ(document["result"], 0);
  EXPECT_THAT(BoxTexts(document), IsEmpty());
}

TEST_F(WizardCommandTest, AnswersDecideTheEndAndTheResult) {
  Json document = Document(Answered("1", events_));
  EXPECT_EQ(document["pages"].back(), "Not normal.");
  EXPECT_EQ(document["result"], 1);
  document = Document(Answered("2", events_));
  EXPECT_EQ(document["pages"].back(), "Who knows.");
  EXPECT_EQ(document["result"], 1);
}

TEST_F(WizardCommandTest, AnalysisThatIsNotFinishedHasNoResult) {
  for (const char* answer : {"yes", "no"}) {
    const Json document = Document({"--answer", answer, "wizard", "6", "1"});
    EXPECT_EQ(document["pages"].size(), 3U);
    EXPECT_EQ(document["result"], nullptr);
    EXPECT_THAT(BoxTexts(document), ElementsAre(HasSubstr("without completing an analysis on this alert.")));
  }
}

TEST_F(WizardCommandTest, AnswersBehindTheEndAreNotAskedFor) {
  const Json document = Document(Answered("0", events_ + 3));
  EXPECT_EQ(document["pages"].size(), events_ + 2);
  EXPECT_EQ(document["result"], 0);
}

TEST_F(WizardCommandTest, AlertWithoutEventsIsNormal) {
  WriteHistory(Event(0, "Aggregation", "nothing", "0.99"));
  const Json document = Document({"wizard", "1"});
  EXPECT_EQ(document["pages"].size(), 2U);
  EXPECT_EQ(document["result"], 0);
}

TEST_F(WizardCommandTest, MissingEndTextsAreToldAndTheVerdictStands) {
  WriteHashed("KorvessaDesc6.kvl", "x\r\n");
  EXPECT_THAT(Document(Answered("0", events_))["pages"].back().get<std::string>(),
              HasSubstr("No message found in Descriptions file."));
  folder_.Write("KorvessaDesc6.kvh", "0000\r\n");
  const Json document = Document(Answered("0", events_));
  EXPECT_THAT(document["pages"].back().get<std::string>(), HasSubstr("A corrupted file was encountered."));
  EXPECT_EQ(document["result"], 0);
}

TEST_F(WizardCommandTest, NothingIsWritten) {
  const auto before = Listing(folder_.path());
  Document(Answered("1", events_));
  EXPECT_EQ(Listing(folder_.path()), before);
}

TEST_F(WizardCommandTest, OtherWordsAreWrongUsageAndOtherRowsAreNotFound) {
  for (const Arguments& words : {Arguments{"wizard"}, Arguments{"wizard", "6", "3"},
                                 Arguments{"wizard", "6", "yes"}, Arguments{"wizard", "6", "01"}}) {
    const Ended ended = Run(words);
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.out, "");
    EXPECT_THAT(ended.err, HasSubstr("usage: wizard ID [ANSWER...]"));
  }
  EXPECT_EQ(DocumentOf(3, {"wizard", "999"})["error"], "Row 999 not found.");
}

}  // namespace
}  // namespace zendrix::test
