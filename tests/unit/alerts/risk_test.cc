#include "alerts/risk.h"

#include <gtest/gtest.h>

#include "settings/reg_ini.h"

namespace zendrix::alerts {
namespace {

class RiskTest : public ::testing::Test {
 protected:
  void Sensitivity(float value) {
    settings_.Sensitivity = value;
    settings::DeriveThresholds(settings_);
  }
  RiskTest() { Sensitivity(1.1F); }
  std::string Level(std::string_view value) { return GetRiskName(value, settings_, locale_); }
  bool Shown(std::string_view change) { return ReachesShownRisk(change, settings_, locale_); }

  core::Settings settings_;
  platform::LocaleInfo locale_;
};

TEST_F(RiskTest, ZeroIsNormal) {
  EXPECT_EQ(Level("0"), "Normal");
}
TEST_F(RiskTest, FullRiskIsAnIntrusion) {
  EXPECT_EQ(Level("0.99"), "Intrusion");
}
TEST_F(RiskTest, NegativeValueIsAnIntrusionNotNormal) {
  EXPECT_EQ(Level("-1"), "Intrusion");
}
TEST_F(RiskTest, SmallNegativeValueThatRoundsToZeroIsNormal) {
  EXPECT_EQ(Level("-0.001"), "Normal");
}
TEST_F(RiskTest, TextIsUnknown) {
  EXPECT_EQ(Level("N/A"), "Unknown");
}
TEST_F(RiskTest, EmptyTextIsUnknown) {
  EXPECT_EQ(Level(""), "Unknown");
}
TEST_F(RiskTest, BandsOfTheDefaultSensitivity) {
  EXPECT_EQ(Level("0.9"), "Normal");       // 91 per cent
  EXPECT_EQ(Level("0.91"), "Suspicious");  // 92
  EXPECT_EQ(Level("0.94"), "Suspicious");  // 95
  EXPECT_EQ(Level("0.95"), "Intrusion");   // 96
}
TEST_F(RiskTest, StoredFormWithSixteenDecimalsIsRead) {
  EXPECT_EQ(Level("0.9100000000000000"), "Suspicious");
}
TEST_F(RiskTest, NumberBeyondEveryRangeIsAnIntrusion) {
  EXPECT_EQ(Level("1e300"), "Intrusion");
}

TEST_F(RiskTest, SensitivityOfOneJumpsTo96And98) {
  Sensitivity(1.0F);
  EXPECT_EQ(settings_.NormalTop, 96.0F);
  EXPECT_EQ(settings_.SuspiciousTop, 98.0F);
  EXPECT_EQ(Level("0.9504"), "Normal");      // 96
  EXPECT_EQ(Level("0.9603"), "Suspicious");  // 97
  EXPECT_EQ(Level("0.9702"), "Suspicious");  // 98
  EXPECT_EQ(Level("0.9801"), "Intrusion");   // 99
}

TEST_F(RiskTest, NormalCeilingOnAHalfLeavesNoPercentWithoutALevel) {
  settings_.NormalTop = 90.5F;
  settings_.SuspiciousTop = 95.25F;
  EXPECT_EQ(Level("0.891"), "Normal");       // 90
  EXPECT_EQ(Level("0.9009"), "Suspicious");  // 91
}

TEST_F(RiskTest, PercentOnAHalfRoundsToEven) {
  settings_.NormalTop = 2;
  settings_.SuspiciousTop = 98;
  EXPECT_EQ(Level("0.02475"), "Normal");  // 2.5 becomes 2
}

TEST_F(RiskTest, LocaleWithACommaReadsItsOwnNumbers) {
  locale_.decimal = ",";
  locale_.thousands = ".";
  EXPECT_EQ(Level("0,9900000000000000"), "Intrusion");
  EXPECT_DOUBLE_EQ(RiskPercent("0,9900000000000000", locale_), 100);
}

TEST_F(RiskTest, FullRiskIsAHundredPercent) {
  EXPECT_DOUBLE_EQ(RiskPercent("0.99", locale_), 100);
}

TEST_F(RiskTest, RowAtTheShownRiskIsShown) {
  settings_.ShRskLvl = 0;
  EXPECT_TRUE(Shown("0"));
  settings_.ShRskLvl = 100;
  EXPECT_TRUE(Shown("0.99"));
  EXPECT_FALSE(Shown("0.98"));
}

TEST_F(RiskTest, TextCountsAsZeroForTheShownRisk) {
  settings_.ShRskLvl = 0;
  EXPECT_TRUE(Shown("N/A"));
  settings_.ShRskLvl = 1;
  EXPECT_FALSE(Shown("N/A"));
}

}  // namespace
}  // namespace zendrix::alerts
