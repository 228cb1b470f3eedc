#include <functional>

#include "home_fixture.h"
#include "settings/ini_file.h"
#include "settings/smtp.h"

namespace zendrix::home {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class OptionsPaneTest : public HomeFixture {
 protected:
  OptionsPane& Options() { return form_->options; }
  // The form with one event, on its Options pane and this tab.
  void OpenPane(int tab = kMailTab) {
    Open(Line(1, "System", "0"));
    form_->ViewItems[kOptionsView]->clicked.Raise();
    Options().etbOptionSel[static_cast<std::size_t>(tab)].clicked.Raise();
  }
  void SelectAgain() { form_->ViewItems[kOptionsView]->clicked.Raise(); }
  void Save() { Options().eSave.clicked.Raise(); }
  void HaveMail(const std::string& address, const std::string& server, const std::string& port) {
    settings::SaveSMTPData(state_, world_.log, {address, server, port});
  }
  void MailIsOn(bool on) { state_.settings.enblAlr = on ? "1" : "0"; }
  std::string MailFile() { return world_.platform.files.Get(world_.InFolder("KorvessaSMTPConfig.kvl")); }
  std::vector<std::string> Fields() {
    return {Options().mail.Email.text, Options().mail.Server.text, Options().mail.Port.text};
  }
  std::string Saved(const std::string& key) {
    const std::string ini = world_.platform.files.Get(world_.InFolder("zendrix.ini"));
    return settings::IniFile(ini).GetString("Misc", key, "(none)", 100);
  }
  void Tick(widgets::CheckBox& box, bool checked) {
    box.checked = checked;
    box.clicked.Raise();
  }
  std::vector<int> ShownTabs() {
    std::vector<int> shown;
    for (int i = 0; i < kOptionTabs; ++i) {
      const auto at = static_cast<std::size_t>(i);
      const widgets::Frame& page = Options().efrOption[at];
      EXPECT_EQ(page.visible.Get(), page.enabled.Get());
      EXPECT_EQ(page.visible.Get(), Options().etbOptionSel[at].bordered.Get());
      EXPECT_EQ(Options().etbOptionSel[at].back_colour.Get(), 0xFFFFFFu);
      if (page.visible) shown.push_back(i);
    }
    return shown;
  }
};

TEST_F(OptionsPaneTest, MailWithoutAServerIsYellowAndWarnsOnce) {
  state_.settings.enblAlr = "1";
  settings::SaveSMTPData(state_, world_.log, {"a@b.c", "", "25"});
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->summary.OSFlag.picture.Get(), "FlagY");
  EXPECT_FALSE(form_->summary.icMore.visible);
  EXPECT_EQ(form_->options.eTitleDesc.caption.Get(), "Mail is incomplete.");
  EXPECT_TRUE(form_->AttentionPending);
  form_->AttentionPending = false;
  form_->CheckRiskLevel();
  EXPECT_FALSE(form_->AttentionPending);
}

TEST_F(OptionsPaneTest, MailWithoutAPortIsComplete) {
  state_.settings.enblAlr = "1";
  settings::SaveSMTPData(state_, world_.log, {"a@b.c", "mail.b.c", ""});
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->options.CheckEmlSta(), 1);
}

TEST_F(OptionsPaneTest, FlagOfTheOptionsFollowsTheMailSettings) {
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->summary.options_row.Flag.picture.Get(), "FlagG");
  EXPECT_EQ(form_->options.StaImg.picture.Get(), "FlagG");
  state_.settings.enblAlr = "1";
  form_->options.CheckEmlSta();
  EXPECT_EQ(form_->summary.options_row.Flag.picture.Get(), "FlagY");
  EXPECT_EQ(form_->options.StaImg.picture.Get(), "FlagY");
}

TEST_F(OptionsPaneTest, ClickOnOptionsChecksTheMailSettingsAgain) {
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->options.eTitleDesc.caption.Get(), "Mail is fine.");
  state_.settings.enblAlr = "1";
  form_->ViewItems[kOptionsView]->clicked.Raise();
  EXPECT_EQ(form_->options.eTitleDesc.caption.Get(), "Mail is incomplete.");
  EXPECT_EQ(form_->summary.options_row.icDesc.caption.Get(), "Mail is incomplete.");
  settings::SaveSMTPData(state_, world_.log, {"a@b.c", "mail.b.c", "25"});
  form_->ViewItems[kOptionsView]->clicked.Raise();
  EXPECT_EQ(form_->options.eTitleDesc.caption.Get(), "Mail is fine.");
}

TEST_F(OptionsPaneTest, FirstTabIsOnShowAtTheStart) {
  Open(Line(1, "System", "0"));
  EXPECT_THAT(ShownTabs(), ElementsAre(kMailTab));
  EXPECT_EQ(Options().etbOptionSel[0].caption.Get(), "Email Alerts");
  EXPECT_EQ(Options().etbOptionSel[1].caption.Get(), "Alert Settings");
  EXPECT_EQ(Options().etbOptionSel[2].caption.Get(), "Properties");
}

TEST_F(OptionsPaneTest, TabShowsItsPageAloneInFront) {
  OpenPane();
  int front = 0;
  const auto link = Options().efrOption[2].to_front.Connect([&] { ++front; });
  Options().etbOptionSel[2].clicked.Raise();
  EXPECT_THAT(ShownTabs(), ElementsAre(kPropertiesTab));
  EXPECT_EQ(front, 1);
  Options().etbOptionSel[1].clicked.Raise();
  EXPECT_THAT(ShownTabs(), ElementsAre(kAlertTab));
}

TEST_F(OptionsPaneTest, LinkOfTheAlertListLeadsToTheAlertSettings) {
  Open(Line(1, "System", "0"));
  EXPECT_EQ(form_->alerts.sClick1.caption.Get(), "[ Adjust Sensitivity ]");
  form_->alerts.sClick1.clicked.Raise();
  EXPECT_EQ(form_->CurrentView, kOptionsView);
  EXPECT_THAT(ShownTabs(), ElementsAre(kAlertTab));
}

TEST_F(OptionsPaneTest, FieldsShowWhatIsStoredWhileMailIsOn) {
  HaveMail("user@example.org", "mail.example.org", "587");
  MailIsOn(true);
  OpenPane();
  EXPECT_TRUE(Options().eEnable.checked);
  EXPECT_THAT(Fields(), ElementsAre("user@example.org", "mail.example.org", "587"));
  EXPECT_FALSE(Options().mail.SmtpDirty);
  for (const widgets::Control* control : std::initializer_list<const widgets::Control*>{
           &Options().mail.Email, &Options().mail.Server, &Options().mail.Port, &Options().elabel1,
           &Options().elabel2, &Options().elabel3, &Options().elabel4, &Options().elabel5})
    EXPECT_TRUE(control->enabled) << control->name();
}

TEST_F(OptionsPaneTest, EmptyPortShowsTwentyFive) {
  HaveMail("user@example.org", "mail.example.org", "");
  MailIsOn(true);
  OpenPane();
  EXPECT_THAT(Fields(), ElementsAre("user@example.org", "mail.example.org", "25"));
}

// With mail off the fields are emptied behind the reading, and that counts as editing them.
TEST_F(OptionsPaneTest, MailOffEmptiesAndDisablesTheFieldsAndMarksThemDirty) {
  HaveMail("user@example.org", "mail.example.org", "587");
  OpenPane();
  EXPECT_THAT(Fields(), ElementsAre("", "", "25"));
  EXPECT_TRUE(Options().mail.SmtpDirty);
  for (const widgets::Control* control : std::initializer_list<const widgets::Control*>{
           &Options().mail.Email, &Options().mail.Server, &Options().mail.Port, &Options().elabel1,
           &Options().elabel2, &Options().elabel3, &Options().elabel4, &Options().elabel5})
    EXPECT_FALSE(control->enabled) << control->name();
  Save();
  EXPECT_EQ(MailFile(), "Send Alerts To=;SMTP Server=:25;");
}

TEST_F(OptionsPaneTest, UntouchedFieldsAreNotStored) {
  OpenPane();
  EXPECT_FALSE(Options().mail.SmtpDirty);
  Save();
  EXPECT_EQ(MailFile(), "");
  EXPECT_EQ(Saved("enblAlr"), "0");
}

TEST_F(OptionsPaneTest, UncheckedMailEmptiesWhatIsStoredAndTheStatusIsGood) {
  HaveMail("user@example.org", "mail.example.org", "25");
  MailIsOn(true);
  OpenPane();
  Tick(Options().eEnable, false);
  EXPECT_THAT(Fields(), ElementsAre("", "", "25"));
  Save();
  EXPECT_EQ(MailFile(), "Send Alerts To=;SMTP Server=:25;");
  EXPECT_EQ(state_.settings.enblAlr, "0");
  EXPECT_EQ(Options().CheckEmlSta(), 1);
}

TEST_F(OptionsPaneTest, EditedFieldsAreSavedAndComeBack) {
  OpenPane();
  Tick(Options().eEnable, true);
  Options().mail.Email.Edit("user@example.org");
  Options().mail.Server.Edit("mail.example.org");
  Options().mail.Port.Edit("587");
  Save();
  EXPECT_EQ(MailFile(), "Send Alerts To=user@example.org;SMTP Server=mail.example.org:587;");
  EXPECT_EQ(Saved("enblAlr"), "1");
  EXPECT_TRUE(Options().mail.SmtpDirty) << "only selecting the pane clears it";
  Options().mail.Email.Edit("not saved");
  SelectAgain();
  EXPECT_THAT(Fields(), ElementsAre("user@example.org", "mail.example.org", "587"));
  EXPECT_FALSE(Options().mail.SmtpDirty);
}

TEST_F(OptionsPaneTest, SavingIncompleteMailDrawsAttentionOnce) {
  OpenPane();
  form_->AttentionPending = false;
  Options().EmailJustSaved = false;
  Tick(Options().eEnable, true);
  Save();
  EXPECT_TRUE(Options().EmailJustSaved);
  form_->CheckRiskLevel();
  EXPECT_TRUE(form_->AttentionPending);
  EXPECT_FALSE(Options().EmailJustSaved);
}

TEST_F(OptionsPaneTest, KeyboardGoesToTheAddressOrToTheCheckBox) {
  OpenPane();
  std::vector<std::string> focused;
  const auto address = Options().mail.Email.focus.Connect([&] { focused.push_back("Email"); });
  const auto box = Options().eEnable.focus.Connect([&] { focused.push_back("eEnable"); });
  Save();
  Tick(Options().eEnable, true);
  Save();
  Options().etbOptionSel[2].clicked.Raise();
  Save();
  EXPECT_THAT(focused, ElementsAre("eEnable", "Email"));
}

TEST_F(OptionsPaneTest, PointerIsAnHourglassWhileItIsSaved) {
  OpenPane();
  std::vector<int> shapes;
  const auto link = screen_.MousePointer.changed.Connect([&] { shapes.push_back(screen_.MousePointer); });
  Save();
  EXPECT_THAT(shapes, ElementsAre(widgets::kPointerHourglass, widgets::kPointerDefault));
}

TEST_F(OptionsPaneTest, AddressThatIsNoneKeepsTheKeyboardBehindItsBox) {
  OpenPane();
  Tick(Options().eEnable, true);
  for (const char* bad :
       {"two@at@example.org", "user@example.", "first.last@host", "user name@a.b", "@a.b"}) {
    Boxes().shown.clear();
    Options().mail.Email.Edit(bad);
    EXPECT_FALSE(Options().mail.Email.Leave()) << bad;
    ASSERT_EQ(Boxes().shown.size(), 1u) << bad;
    EXPECT_EQ(Boxes().shown[0].text, "Not a valid email address.\r\nshould be as in: 'name@domain.ext'");
    EXPECT_EQ(Boxes().shown[0].icon, platform::BoxIcon::kStop);
    EXPECT_EQ(Boxes().shown[0].title, "Korvessa Zendrix Home Edition");
  }
  Boxes().shown.clear();
  for (const char* good : {"name@domain.ext", ""}) {
    Options().mail.Email.Edit(good);
    EXPECT_TRUE(Options().mail.Email.Leave()) << good;
  }
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

TEST_F(OptionsPaneTest, ServerNameNeedsTwoDots) {
  OpenPane();
  Tick(Options().eEnable, true);
  for (const char* bad : {"mail", "example.org"}) {
    Boxes().shown.clear();
    Options().mail.Server.Edit(bad);
    EXPECT_FALSE(Options().mail.Server.Leave()) << bad;
    ASSERT_EQ(Boxes().shown.size(), 1u);
    EXPECT_EQ(Boxes().shown[0].text, "Not a valid Server name.\r\nshould be as in: 'server.maildomain.ext'");
  }
  Boxes().shown.clear();
  for (const char* good : {"mail.example.org", "10.0.0.25", ""}) {
    Options().mail.Server.Edit(good);
    EXPECT_TRUE(Options().mail.Server.Leave()) << good;
  }
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

// The button can be pressed by its access key while a field has the keyboard.
TEST_F(OptionsPaneTest, NothingIsSavedWhileAFieldKeepsTheKeyboard) {
  OpenPane();
  Tick(Options().eEnable, true);
  Options().mail.Email.Enter();
  Options().mail.Email.Type("nobody");
  Save();
  EXPECT_EQ(MailFile(), "");
  EXPECT_EQ(Saved("enblAlr"), "(none)");
  EXPECT_EQ(Boxes().shown.size(), 1u);
  Options().mail.Email.Type("@example.org");
  Save();
  EXPECT_EQ(MailFile(), "Send Alerts To=nobody@example.org;SMTP Server=:25;");
  EXPECT_EQ(Boxes().shown.size(), 1u);
}

TEST_F(OptionsPaneTest, PortTakesDigitsAndBeepsAtOtherKeys) {
  OpenPane();
  Tick(Options().eEnable, true);
  int beeps = 0;
  const auto link = screen_.beep.Connect([&] { ++beeps; });
  Options().mail.Port.Type("\b\b58x7.-");
  EXPECT_EQ(Options().mail.Port.text.Get(), "587");
  EXPECT_EQ(beeps, 3);
  Options().mail.Email.Type("x");
  EXPECT_EQ(beeps, 3);
  Options().mail.Port.Type("09/:");  // the digits at the ends and their neighbours
  EXPECT_EQ(Options().mail.Port.text.Get(), "58709");
  EXPECT_EQ(beeps, 5);
}

TEST_F(OptionsPaneTest, SliderOfTheListStandsWhereTheFloorsAre) {
  state_.settings.ShRskLvl = state_.settings.SuspiciousFrom;
  OpenPane(kAlertTab);
  EXPECT_EQ(Options().eSbRiskLevel.value.Get(), 50);
  state_.settings.ShRskLvl = 0;
  SelectAgain();
  EXPECT_EQ(Options().eSbRiskLevel.value.Get(), 0);
  state_.settings.ShRskLvl = 70;
  SelectAgain();
  EXPECT_EQ(Options().eSbRiskLevel.value.Get(), 100);
}

TEST_F(OptionsPaneTest, DefaultOfTheShownRiskIsSuspicious) {
  world_.platform.files.Vanish(world_.InFolder("zendrix.ini"));
  reg_ini_.ReadRegInfo();
  reg_ini_.SaveSettingHashed("Misc", "DetSho", "1");
  reg_ini_.ReadRegInfo();
  Boxes().shown.clear();
  world_.quiet.Take();
  OpenPane(kAlertTab);
  EXPECT_EQ(Options().eAlertsToShow.caption.Get(), "Only Suspicious and Intrusion alerts");
  EXPECT_EQ(Options().eSbRiskLevel.value.Get(), 50);
}

TEST_F(OptionsPaneTest, SavedPlaceOfFiftyReadsBackAsAHundred) {
  OpenPane(kAlertTab);
  Options().eSbRiskLevel.value = 50;
  Save();
  EXPECT_EQ(Saved("ShRskLvl"), "50");
  EXPECT_EQ(state_.settings.ShRskLvl, 50.0F);
  EXPECT_EQ(Options().eSbRiskLevel.value.Get(), 50) << "until the pane is selected again";
  SelectAgain();
  EXPECT_EQ(Options().eSbRiskLevel.value.Get(), 100);
}

TEST_F(OptionsPaneTest, WordsOfTheSliderChangeBehindThirtyThreeAndSixtySix) {
  OpenPane(kAlertTab);
  struct Place {
    int value;
    const char *shown, *current;
  };
  for (const Place& place : {Place{33, "All", "Currently displaying All alerts"},
                             Place{34, "Only Suspicious and Intrusion alerts",
                                   "Currently displaying Suspicious and Intrusion alerts"},
                             Place{66, "Only Suspicious and Intrusion alerts",
                                   "Currently displaying Suspicious and Intrusion alerts"},
                             Place{67, "Only Intrusion alerts", "Currently displaying Intrusion alerts"},
                             Place{0, "All", "Currently displaying All alerts"}}) {
    Options().eSbRiskLevel.value = place.value;
    EXPECT_EQ(Options().eAlertsToShow.caption.Get(), place.shown) << place.value;
    EXPECT_EQ(form_->alerts.sCurrSens.caption.Get(), place.current) << place.value;
  }
}

TEST_F(OptionsPaneTest, WordsOfTheSliderAreThereFromTheStart) {
  state_.settings.ShRskLvl = 90.9F;
  Open(Line(1, "System", "0"));
  EXPECT_EQ(Options().eSbRiskLevel.value.Get(), 90);
  EXPECT_EQ(form_->alerts.sCurrSens.caption.Get(), "Currently displaying Intrusion alerts");
  state_.settings.ShRskLvl = 0;
  form_->ViewItems_Click(kOptionsView);
  EXPECT_EQ(form_->alerts.sCurrSens.caption.Get(), "Currently displaying All alerts");
}

// The number is shown as it is; the slider's own form takes its place when the slider moves.
TEST_F(OptionsPaneTest, SensitivityIsShownPlainUntilTheSliderMoves) {
  OpenPane(kAlertTab);
  EXPECT_EQ(Options().eSbSensitivity.value.Get(), 110);
  EXPECT_EQ(Options().eSensitivity.caption.Get(), "1.1");
  Options().eSbSensitivity.value = 150;
  EXPECT_EQ(Options().eSensitivity.caption.Get(), "1.50");
  state_.settings.Sensitivity = 2;
  SelectAgain();
  EXPECT_EQ(Options().eSbSensitivity.value.Get(), 200);
  EXPECT_EQ(Options().eSensitivity.caption.Get(), "2.00");
  SelectAgain();
  EXPECT_EQ(Options().eSensitivity.caption.Get(), "2");
}

TEST_F(OptionsPaneTest, SensitivityOutsideTheSliderStandsAtItsEnd) {
  state_.settings.Sensitivity = 0.5F;
  OpenPane(kAlertTab);
  EXPECT_EQ(Options().eSbSensitivity.value.Get(), 100);
  state_.settings.Sensitivity = 1e30F;
  SelectAgain();
  EXPECT_EQ(Options().eSbSensitivity.value.Get(), 1000);
}

// 1.05 is a little less in single precision, and the product is cut.
TEST_F(OptionsPaneTest, PlaceOfTheSensitivityIsTheCutProduct) {
  OpenPane(kAlertTab);
  for (const auto& [saved, shown] : {std::pair(100, 100), {105, 104}, {115, 115}, {150, 150}, {1000, 1000}}) {
    Options().eSbSensitivity.value = saved;
    Save();
    SelectAgain();
    EXPECT_EQ(Options().eSbSensitivity.value.Get(), shown);
  }
}

TEST_F(OptionsPaneTest, LowestSensitivityHasTheFixedCeilings) {
  OpenPane(kAlertTab);
  Options().eSbSensitivity.value = 100;
  Save();
  EXPECT_EQ(Saved("Se"), "1");
  EXPECT_EQ(Saved("No"), "96");
  EXPECT_EQ(Saved("Su"), "98");
  EXPECT_EQ(state_.settings.NormalFrom, 0.0F);
  EXPECT_EQ(state_.settings.SuspiciousFrom, 96.001F);
  EXPECT_EQ(state_.settings.IntrusionFrom, 98.001F);
}

TEST_F(OptionsPaneTest, HighestSensitivityLowersTheCeilings) {
  OpenPane(kAlertTab);
  Options().eSbSensitivity.value = 1000;
  Save();
  EXPECT_EQ(Saved("Se"), "10");
  EXPECT_EQ(Saved("No"), "10");
  EXPECT_EQ(Saved("Su"), "55");
}

TEST_F(OptionsPaneTest, NumbersAreSavedInTheUsersForm) {
  world_.platform.locale.info.decimal = ",";
  OpenPane(kAlertTab);
  Options().eSbSensitivity.value = 115;
  Save();
  EXPECT_EQ(Saved("Se"), "1,15");
}

TEST_F(OptionsPaneTest, SavedSensitivityRebuildsTheListAndTheCountsButNotTheLevel) {
  Open(Alert(1, "0.60"));
  form_->ViewItems_Click(kOptionsView);
  Options().etbOptionSel[1].clicked.Raise();
  EXPECT_THAT(Rows(), ElementsAre("K1 Normal:23"));
  Options().eSbSensitivity.value = 1000;
  Options().eSbRiskLevel.value = 60;
  Save();
  EXPECT_THAT(Rows(), ElementsAre("K1 Intrusion:18"));
  EXPECT_EQ(form_->summary.icAlertCount.caption.Get(), "Alerts: 1");
  EXPECT_EQ(form_->AlertLevel, 1) << "follows at the next event";
  Options().eSbRiskLevel.value = 100;
  Save();
  EXPECT_THAT(Rows(), IsEmpty());
}

TEST_F(OptionsPaneTest, OnlyTheTabOnShowIsSaved) {
  OpenPane(kPropertiesTab);
  Tick(Options().eEnable, true);
  Options().eSbRiskLevel.value = 70;
  Save();
  EXPECT_EQ(Saved("enblAlr"), "(none)");
  EXPECT_EQ(Saved("ShRskLvl"), "0");
  Options().etbOptionSel[1].clicked.Raise();
  Tick(Options().echkDontAsk, true);
  Save();
  EXPECT_EQ(Saved("ShRskLvl"), "70");
  EXPECT_EQ(Saved("enblAlr"), "(none)");
  EXPECT_EQ(Saved("DontAsk"), "0");
}

TEST_F(OptionsPaneTest, PropertiesAreShownFromTheSettingsButForTheNotice) {
  state_.settings.PopOrigHigh = false;
  state_.settings.PopNotifyMs = false;
  state_.settings.DontAsk = true;
  OpenPane(kPropertiesTab);
  EXPECT_TRUE(Options().echkOrigHigh.checked);
  EXPECT_FALSE(Options().echkNotifyMs.checked);
  EXPECT_TRUE(Options().echkDontAsk.checked);
  EXPECT_EQ(Options().echkNotifyMs.caption.Get(), "Don't show this message again.");
  EXPECT_EQ(Options().echkDontAsk.caption.Get(), "Install automatically");
}

TEST_F(OptionsPaneTest, SavingPropertiesWithoutItsTickTurnsTheNoticeOn) {
  state_.settings.PopNotifyMs = false;
  OpenPane(kPropertiesTab);
  Save();
  EXPECT_TRUE(state_.settings.PopNotifyMs);
  EXPECT_EQ(Saved("PopNotifyMs"), "1");
  EXPECT_EQ(Saved("PopOrigHigh"), "1");
  EXPECT_EQ(Saved("DontAsk"), "0");
}

TEST_F(OptionsPaneTest, TicksOfThePropertiesAreSavedTogether) {
  OpenPane(kPropertiesTab);
  Tick(Options().echkOrigHigh, true);
  Tick(Options().echkNotifyMs, true);
  Tick(Options().echkDontAsk, true);
  Save();
  EXPECT_EQ(Saved("PopOrigHigh"), "0");
  EXPECT_EQ(Saved("PopNotifyMs"), "0");
  EXPECT_EQ(Saved("DontAsk"), "1");
  EXPECT_FALSE(state_.settings.PopOrigHigh);
  SelectAgain();
  EXPECT_TRUE(Options().echkOrigHigh.checked);
  EXPECT_TRUE(Options().echkNotifyMs.checked) << "as the user left it";
}

TEST_F(OptionsPaneTest, CaptionOfThePopUpSettingComesFromItsDescription) {
  OpenPane();
  EXPECT_EQ(Options().echkOrigHigh.caption.Get(),
            "Only notify me when Zendrix is unable to block a suspicious event");
  state_.Desc[9].push_back("003,Tell me & others less");
  SelectAgain();
  EXPECT_EQ(Options().echkOrigHigh.caption.Get(), "Tell me & others less");
}

TEST_F(OptionsPaneTest, UnsavedTickStaysUntilThePaneIsSelectedAgain) {
  OpenPane(kPropertiesTab);
  Tick(Options().echkDontAsk, true);
  form_->ViewItems_Click(kSummaryView);
  EXPECT_TRUE(Options().echkDontAsk.checked);
  SelectAgain();
  EXPECT_FALSE(Options().echkDontAsk.checked);
}

TEST_F(OptionsPaneTest, FlagChangedElsewhereIsShownAndUnsavedTicksStay) {
  OpenPane(kPropertiesTab);
  Tick(Options().echkDontAsk, true);
  misc_.Set(&core::Settings::PopOrigHigh, false);
  EXPECT_TRUE(Options().echkOrigHigh.checked);
  EXPECT_TRUE(Options().echkDontAsk.checked) << "not the one that changed";
  misc_.Set(&core::Settings::PopNotifyMs, false);
  EXPECT_FALSE(Options().echkNotifyMs.checked);
}

TEST_F(OptionsPaneTest, AutomaticInstallationSetInTheUpdateWindowIsShown) {
  OpenPane(kPropertiesTab);
  misc_.Set(&core::Settings::DontAsk, true);
  EXPECT_TRUE(Options().echkDontAsk.checked);
  misc_.Set(&core::Settings::DontAsk, false);
  EXPECT_FALSE(Options().echkDontAsk.checked);
}

TEST_F(OptionsPaneTest, MenuMarksFollowTheSettings) {
  state_.settings.PopNotifyMs = false;
  Open(Line(1, "System", "0"));
  EXPECT_TRUE(form_->mPopOrigHigh.checked);
  EXPECT_FALSE(form_->mPopNotifyMs.checked);
  form_->mPopNotifyMs.clicked.Raise();
  EXPECT_EQ(Saved("PopNotifyMs"), "1");
  EXPECT_TRUE(form_->mPopNotifyMs.checked);
  form_->mPopOrigHigh.clicked.Raise();
  EXPECT_EQ(Saved("PopOrigHigh"), "0");
  EXPECT_FALSE(form_->mPopOrigHigh.checked);
  misc_.Set(&core::Settings::PopOrigHigh, true);
  EXPECT_TRUE(form_->mPopOrigHigh.checked);
}

TEST_F(OptionsPaneTest, MenuMarksRestUnderAnOpenBox) {
  Open(Line(1, "System", "0"));
  const widgets::ModalScope box(state_.forms);
  EXPECT_FALSE(form_->mPopOrigHigh.enabled);
  form_->mPopOrigHigh.clicked.Raise();
  EXPECT_TRUE(state_.settings.PopOrigHigh);
}

TEST_F(OptionsPaneTest, MenuMarksStandBehindALine) {
  Open(Line(1, "System", "0"));
  EXPECT_TRUE(form_->mPopOrigHigh.checkable && form_->mPopOrigHigh.begins_group);
  EXPECT_TRUE(form_->mPopNotifyMs.checkable && !form_->mPopNotifyMs.begins_group);
  EXPECT_FALSE(form_->mPopExit.checkable);
}

// The check looks at the file every three seconds, also under the box that tells of its damage: a second box
// came over the first one, and a third.
TEST_F(OptionsPaneTest, DamagedMailFileIsToldOnceHoweverLongTheBoxIsOpen) {
  HaveMail("user@example.org", "mail.example.org", "25");
  MailIsOn(true);
  Open(Line(1, "System", "0"));
  world_.platform.files.Put(world_.InFolder("KorvessaSMTPConfig.kvl"), "Send Alerts To=x;SMTP Server=y:1;");
  Boxes().StayOpenFor(10000);
  form_->ViewItems_Click(kOptionsView);
  ASSERT_EQ(Boxes().shown.size(), 1u);
  EXPECT_EQ(Boxes().shown[0].text, "Invalid SMTP configuration file. Loading default values");
  EXPECT_THAT(Fields(), ElementsAre("", "", "25"));
  EXPECT_EQ(Options().eTitleDesc.caption.Get(), "Mail is incomplete.");
}

// In a folder that the user may not write to the file stays: the box came back every three seconds, over
// whatever the user was about.
TEST_F(OptionsPaneTest, DamagedMailFileThatCannotBeDeletedIsToldOnceAndOnceMoreOnItsPane) {
  HaveMail("user@example.org", "mail.example.org", "25");
  const std::string good = MailFile();
  MailIsOn(true);
  Open(Line(1, "System", "0"));
  const std::string path = world_.InFolder("KorvessaSMTPConfig.kvl");
  auto& files = world_.platform.files;
  files.FailNext(platform::FileOp::kRemove, path, platform::ErrorKind::kPermissionDenied, files.kAlways);
  files.Put(path, "x");
  world_.quiet.Expect("'Utils : LoadSMTPData': 70: Permission denied");
  Seconds(10);
  EXPECT_EQ(Boxes().shown.size(), 1u);
  EXPECT_EQ(form_->options.CheckEmlSta(), kAttention);
  world_.quiet.Expect("'Utils : LoadSMTPData': 70: Permission denied");
  form_->ViewItems_Click(kOptionsView);
  EXPECT_EQ(Boxes().shown.size(), 2u);
  files.Put(path, good);
  EXPECT_EQ(form_->options.CheckEmlSta(), kGood) << "and it is looked at again";
  world_.quiet.Expect("'Utils : LoadSMTPData': 70: Permission denied");
  files.Put(path, "y");
  Seconds(10);
  EXPECT_EQ(Boxes().shown.size(), 3u) << "another damage";
}

TEST_F(OptionsPaneTest, PaneSelectedUnderThatBoxReadsNothingAgain) {
  HaveMail("user@example.org", "mail.example.org", "25");
  MailIsOn(true);
  Open(Line(1, "System", "0"));
  world_.platform.files.Put(world_.InFolder("KorvessaSMTPConfig.kvl"), "x");
  Boxes().while_open = [&](const platform::BoxRequest&) { Options().FillEmailFra(); };
  form_->ViewItems_Click(kOptionsView);
  EXPECT_EQ(Boxes().shown.size(), 1u);
}

}  // namespace
}  // namespace zendrix::home
