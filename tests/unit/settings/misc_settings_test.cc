#include "settings/misc_settings.h"

#include "settings_fixture.h"

namespace zendrix::settings {
namespace {

using core::Settings;

class MiscSettingsTest : public SettingsTest {
 protected:
  MiscSettings misc_{state_, reg_ini_};
};

TEST_F(MiscSettingsTest, AFlagIsHeldAndSavedAsADigit) {
  misc_.Set(&Settings::PopOrigHigh, true);
  EXPECT_TRUE(state_.settings.PopOrigHigh);
  EXPECT_EQ(Stored("Misc", "PopOrigHigh"), "1");
  misc_.Set(&Settings::PopOrigHigh, false);
  EXPECT_FALSE(state_.settings.PopOrigHigh);
  EXPECT_EQ(Stored("Misc", "PopOrigHigh"), "0");
  EXPECT_TRUE(Verifies());
}

TEST_F(MiscSettingsTest, EveryMemberGoesToItsOwnKey) {
  misc_.Set(&Settings::ShowDetailsOpen, true);
  misc_.Set(&Settings::PopNotifyMs, true);
  misc_.Set(&Settings::DontAsk, true);
  misc_.Set(&Settings::ldAlert, "1");
  misc_.Set(&Settings::ldErlog, "2");
  misc_.Set(&Settings::ldUIErlog, "3");
  misc_.Set(&Settings::enblAlr, "4");
  misc_.Set(&Settings::TSurv, "5");
  misc_.Set(&Settings::TTour, "6");
  misc_.Set(&Settings::ShRskLvl, 7.0F);
  misc_.Set(&Settings::Sensitivity, 1.1F);
  misc_.Set(&Settings::NormalTop, 90.90909F);
  misc_.Set(&Settings::SuspiciousTop, 95.45454F);
  EXPECT_EQ(Ini(),
            "[Misc]\r\nDetSho=1\r\nPopNotifyMs=1\r\nDontAsk=1\r\nldAlert=1\r\nldErlog=2\r\nldUIErlog=3\r\n"
            "enblAlr=4\r\nTSurv=5\r\nTTour=6\r\nShRskLvl=7\r\nSe=1.1\r\nNo=90.90909\r\nSu=95.45454\r\n");
}

TEST_F(MiscSettingsTest, ListenersFindTheNewValueHeldAndSaved) {
  std::string seen;
  const auto link =
      misc_.changed.Connect([&] { seen += state_.settings.TTour + Stored("Misc", "TTour") + ";"; });
  misc_.Set(&Settings::TTour, "Y");
  misc_.Set(&Settings::TTour, "Y");
  EXPECT_EQ(seen, "YY;YY;");
}

TEST_F(MiscSettingsTest, ListenersAreToldOfFlagsAndNumbersToo) {
  std::string seen;
  const auto link = misc_.changed.Connect([&] {
    seen +=
        Stored("Misc", "DontAsk") + (state_.settings.DontAsk ? "+" : "-") + Stored("Misc", "ShRskLvl") + ";";
  });
  misc_.Set(&Settings::DontAsk, true);
  EXPECT_EQ(seen, "1+(none);");
  misc_.Set(&Settings::ShRskLvl, 50.5F);
  EXPECT_EQ(seen, "1+(none);1+50.5;");
}

// A full disk must not leave the window showing what the user has just changed back.
TEST_F(MiscSettingsTest, AValueThatCannotBeSavedHoldsForThisRun) {
  PutIni("[Misc]\r\nTTour=N\r\n");
  platform_.files.FailNext(platform::FileOp::kWriteAll, kIni, platform::ErrorKind::kNoSpace);
  int told = 0;
  const auto link = misc_.changed.Connect([&] { ++told; });
  misc_.Set(&Settings::TTour, "Y");
  EXPECT_EQ(state_.settings.TTour, "Y");
  EXPECT_EQ(Stored("Misc", "TTour"), "N");
  EXPECT_EQ(told, 1);
}

TEST_F(MiscSettingsTest, AMemberThatIsNoKeyOfTheSectionIsAMistake) {
  EXPECT_THROW(misc_.Set(&Settings::NormalFrom, 1), std::logic_error);
  EXPECT_THROW(misc_.Set(&Settings::TChart, "D"), std::logic_error);
}

}  // namespace
}  // namespace zendrix::settings
