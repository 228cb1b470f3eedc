#include "alerts/checked_alerts.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/guards.h"
#include "core/run_time_error.h"

namespace zendrix::alerts {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

std::vector<std::string> Listed(const CheckedAlerts& checked) {
  std::vector<std::string> entries;
  for (const auto& entry : checked.entries()) entries.push_back(entry.key + "=" + entry.value);
  return entries;
}

TEST(CheckedAlertsTest, KeysAreFoundInAnyLetterCaseAndKeptInTheOrderOfAdding) {
  CheckedAlerts checked;
  checked.Add("b", "1");
  checked.Add("A", "2");
  EXPECT_THAT(Listed(checked), ElementsAre("b=1", "A=2"));
  EXPECT_EQ(checked.Find("B"), "1");
  EXPECT_EQ(checked.Find("a"), "2");
  EXPECT_EQ(checked.Find("c"), std::nullopt);
}

TEST(CheckedAlertsTest, SecondAddOfAKeyRaises457AndKeepsTheFirst) {
  CheckedAlerts checked;
  checked.Add("a", "1");
  const auto error = core::ErrorOf([&] { checked.Add("A", "2"); });
  ASSERT_TRUE(error.has_value());
  EXPECT_EQ(error->number, 457);
  EXPECT_THAT(Listed(checked), ElementsAre("a=1"));
  EXPECT_EQ(checked.Find("a"), "1");
}

TEST(CheckedAlertsTest, RemovedKeyIsGoneAndCanBeAddedAgain) {
  CheckedAlerts checked;
  checked.Add("a", "1");
  checked.Add("b", "2");
  checked.Remove("A");
  EXPECT_EQ(checked.Find("a"), std::nullopt);
  EXPECT_THAT(Listed(checked), ElementsAre("b=2"));
  checked.Add("a", "3");
  EXPECT_THAT(Listed(checked), ElementsAre("b=2", "a=3"));
}

TEST(CheckedAlertsTest, RemovingAKeyThatIsNotThereRaises5) {
  CheckedAlerts checked;
  checked.Add("a", "1");
  const auto error = core::ErrorOf([&] { checked.Remove("b"); });
  ASSERT_TRUE(error.has_value());
  EXPECT_EQ(error->number, 5);
  EXPECT_THAT(Listed(checked), ElementsAre("a=1"));
}

TEST(CheckedAlertsTest, ClearedCollectionKnowsNoKeyAndTakesThemAgain) {
  CheckedAlerts checked;
  checked.Add("a", "1");
  checked.Clear();
  EXPECT_EQ(checked.Find("a"), std::nullopt);
  EXPECT_THAT(Listed(checked), IsEmpty());
  checked.Add("a", "2");
  EXPECT_THAT(Listed(checked), ElementsAre("a=2"));
}

TEST(CheckedAlertsTest, LaterDecisionTakesThePlaceOfTheEarlierOne) {
  CheckedAlerts checked;
  checked.MarkAllowed("100");
  EXPECT_THAT(Listed(checked), ElementsAre("100=100"));
  checked.MarkBlocked("100");
  EXPECT_THAT(Listed(checked), ElementsAre("100=100A"));
  checked.MarkAllowed("100");
  EXPECT_THAT(Listed(checked), ElementsAre("100=100"));
}

TEST(CheckedAlertsTest, OnlyATextThatEndsInTheMarkMeansBlocked) {
  EXPECT_TRUE(IsBlocked("100A"));
  EXPECT_TRUE(IsBlocked("A"));
  EXPECT_FALSE(IsBlocked("100"));
  EXPECT_FALSE(IsBlocked("A100"));
  EXPECT_FALSE(IsBlocked("100a"));
  EXPECT_FALSE(IsBlocked(""));
}

}  // namespace
}  // namespace zendrix::alerts
