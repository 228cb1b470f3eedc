// What the helper finds in a monitoring file is what the Agent writes into it.
#include "act/alert_search.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include "act/agent_word.h"
#include "agent/record/lines.h"
#include "support/temporary_folder.h"

namespace zendrix::act {
namespace {

agent::Item ItemOf(std::string_view monitor, const std::string& description) {
  agent::Item item;
  item.monitor = monitor;
  item.description = description;
  item.subject = "x";
  return item;
}

// A batch at second 100 in which a program came, opened a port and put itself into an autostart folder.
std::string Written(const std::string& change = "0.98") {
  const std::vector<agent::Item> items = {
      ItemOf("Running Processes", "/tmp/dropper:4711"), ItemOf("Running Processes", "/tmp/other:9"),
      ItemOf("Listening Ports", "4444:/tmp/dropper"),
      ItemOf("Autorun Registry", "/home/a/.config/autostart/x.desktop=/tmp/dropper")};
  agent::Batch batch;
  batch.begins_session = true;
  for (const auto& item : items) batch.events.push_back(agent::CameEvent(item));
  agent::Alert alert;
  alert.subject = "x";
  alert.risk = 0.98;
  alert.code = "AG,0123456789ABCDEF01234567";
  alert.change = change;
  alert.members = items;
  alert.has_forerunner = true;
  batch.alerts = {alert};
  return agent::RenderBatch(agent::Form::kHome, {100, "host", "1"}, batch).bytes;
}

bool Finds(const std::string& text, const ShownEvent& event, std::size_t block = 4096) {
  AlertSearch search(event);
  for (std::size_t i = 0; i < text.size(); i += block) search.Take(std::string_view(text).substr(i, block));
  return search.Found();
}

const ShownEvent kDropper{"Running Processes", "/tmp/dropper:4711", 100, 100};

TEST(AlertSearchTest, EveryMemberOfAnAlertThatTheAgentWroteIsFound) {
  const std::string text = Written();
  EXPECT_TRUE(Finds(text, kDropper)) << text;
  EXPECT_TRUE(Finds(text, {"Running Processes", "/tmp/other:9", 100, 100}));
  EXPECT_TRUE(Finds(text, {"Listening Ports", "4444:/tmp/dropper", 100, 100}));
  EXPECT_TRUE(
      Finds(text, {"Autorun Registry", "/home/a/.config/autostart/x.desktop=/tmp/dropper", 100, 100}));
}

TEST(AlertSearchTest, HoweverTheFileIsCutIntoBlocks) {
  const std::string text = Written();
  for (const std::size_t block : {1U, 2U, 7U, 100U}) EXPECT_TRUE(Finds(text, kDropper, block)) << block;
}

TEST(AlertSearchTest, AnotherSecondMonitorOrDescriptionIsNotFound) {
  const std::string text = Written();
  EXPECT_FALSE(Finds(text, {"Running Processes", "/tmp/dropper:4711", 101, 100}));
  EXPECT_FALSE(Finds(text, {"Running Processes", "/tmp/dropper:4711", 100, 101}));
  EXPECT_FALSE(Finds(text, {"Listening Ports", "/tmp/dropper:4711", 100, 100}));
  EXPECT_FALSE(Finds(text, {"Running Processes", "/tmp/dropper:471", 100, 100}));
  EXPECT_FALSE(Finds(text, {"Running Processes", "", 100, 100}));
  EXPECT_FALSE(Finds(text, {"", "", 100, 100}));
}

TEST(AlertSearchTest, AnEventWithoutAnAlertIsNoReasonToAct) {
  const std::string text = Written();
  const std::string events = text.substr(0, text.find(",Aggregation|"));
  EXPECT_FALSE(Finds(events + "\r\n", kDropper));
}

TEST(AlertSearchTest, AnAlertWithoutItsEventInFrontIsNoReasonToAct) {
  const std::string text = Written();
  const auto alert = text.rfind("\r\n", text.find(",Aggregation|")) + 2;
  EXPECT_FALSE(Finds(text.substr(alert), kDropper));
  EXPECT_FALSE(Finds(text.substr(alert) + text.substr(0, alert), kDropper));
}

TEST(AlertSearchTest, WhatIsStoredAndNoAlertIsNoReasonToAct) {
  EXPECT_FALSE(Finds(Written("-0.98"), kDropper));
}

TEST(AlertSearchTest, ARowWithoutItsEndIsNotBelieved) {
  std::string text = Written();
  text.resize(text.find(",Aggregation|"));
  text += ",Aggregation|0|0.9|Running Processes=/tmp/dropper:4711;|none|AG,1|0";
  EXPECT_FALSE(Finds(text, kDropper));
  EXPECT_TRUE(Finds(text + "\n", kDropper));
}

TEST(AlertSearchTest, ARowBeyondAllBoundsIsPassedOverAndTheNextOneRead) {
  const std::string text = std::string(AlertSearch::kLongestRow + 1, 'x') + "\n" + Written();
  EXPECT_TRUE(Finds(text, kDropper));
  const std::string row = "100,h,1,Running Processes|0|1|/tmp/dropper:4711|" +
                          std::string(AlertSearch::kLongestRow, 'x') + "|RP,1|0\n";
  const std::string alert = "100,h,1,Aggregation|0|0.9|Running Processes=/tmp/dropper:4711;|none|AG,1|0\n";
  EXPECT_FALSE(Finds(row + alert, kDropper));
}

class AgentFileTest : public testing::Test {
 protected:
  AgentFileTest() {
    folder_.Write("file", Written());
    chmod(path_.c_str(), 0640);
  }
  Told Tells(const std::string& path) const { return AgentFile(path, geteuid()).Tells(kDropper); }

  const test::TemporaryFolder folder_;
  const std::string path_ = folder_.Path("file");
};

TEST_F(AgentFileTest, TheAgentsOwnFileIsBelieved) {
  EXPECT_EQ(Tells(path_), Told::kYes);
  EXPECT_EQ(AgentFile(path_, geteuid()).Tells({"Running Processes", "/tmp/no", 100, 100}), Told::kNo);
}

TEST_F(AgentFileTest, AMissingFileALinkAPipeAndAFolderAreNotBelieved) {
  EXPECT_EQ(Tells(folder_.Path("none")), Told::kUnreadable);
  ASSERT_EQ(symlink(path_.c_str(), folder_.Path("link").c_str()), 0);
  EXPECT_EQ(Tells(folder_.Path("link")), Told::kUnreadable);
  ASSERT_EQ(mkfifo(folder_.Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(Tells(folder_.Path("pipe")), Told::kUnreadable);
  EXPECT_EQ(Tells(folder_.path()), Told::kUnreadable);
}

TEST_F(AgentFileTest, AFileThatOthersMayWriteToIsNotBelieved) {
  for (const mode_t mode : {0620, 0602}) {
    chmod(path_.c_str(), mode);
    EXPECT_EQ(Tells(path_), Told::kUnreadable);
  }
}

TEST_F(AgentFileTest, AFileOfAnotherUserIsNotBelieved) {
  if (geteuid() != 0) GTEST_SKIP() << "only the superuser can give a file away";
  ASSERT_EQ(chown(path_.c_str(), 1234, 1234), 0);
  EXPECT_EQ(Tells(path_), Told::kUnreadable);
  EXPECT_EQ(AgentFile(path_, 1234).Tells(kDropper), Told::kYes);
  ASSERT_EQ(chown(path_.c_str(), 0, 0), 0);
  EXPECT_EQ(AgentFile(path_, 1234).Tells(kDropper), Told::kYes);
}

// The description of the alert with this code; "-" when there is none.
std::string FindsCode(const std::string& text, const ShownAlert& alert) {
  CodeSearch search(alert);
  for (const char byte : text) search.Take(std::string_view(&byte, 1));
  return search.Found() ? search.description() : "-";
}

TEST(CodeSearchTest, AnAlertIsFoundByItsSecondAndItsCode) {
  const ShownAlert alert{100, "AG,0123456789ABCDEF01234567"};
  EXPECT_NE(FindsCode(Written(), alert).find("Running Processes=/tmp/dropper:4711"), std::string::npos);
  EXPECT_EQ(FindsCode(Written(), {101, alert.code}), "-");
  EXPECT_EQ(FindsCode(Written(), {100, "AG,0123456789ABCDEF01234568"}), "-");
  EXPECT_EQ(FindsCode(Written(), {100, "AG,0123456789ABCDEF0123456"}), "-");
  EXPECT_EQ(FindsCode(Written(), {100, ""}), "-");
}

TEST(CodeSearchTest, WhatIsStoredAndIsNoAlertIsNotFound) {
  EXPECT_EQ(FindsCode(Written("-0.4"), {100, "AG,0123456789ABCDEF01234567"}), "-");
}

TEST(CodeSearchTest, AnotherMonitorsRowIsNoAlert) {
  const std::string row = "100,h,1,Running Processes|1|1|x||AG,0123456789ABCDEF01234567,1|0\r\n";
  EXPECT_EQ(FindsCode(row, {100, "AG,0123456789ABCDEF01234567"}), "-");
}

}  // namespace
}  // namespace zendrix::act
