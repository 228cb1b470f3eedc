#include "admin/frm_options.h"

#include <memory>
#include <utility>

#include "settings/ini_file.h"
#include "settings/smtp.h"
#include "support/console_world.h"

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class FrmOptionsTest : public ::testing::Test {
 protected:
  FrmOptionsTest() {
    world_.state.ProductName = "Korvessa Zendrix Administrator";
    Have("[Monitors]\r\nSystem=1\r\nTcp Port=0\r\nMemory=1\r\n");
  }
  // The settings file with this text, and what follows from it already in it.
  void Have(const std::string& ini) {
    world_.platform.files.Put(reg_ini_.IniPath(), ini);
    reg_ini_.SaveSettingHashed("Misc", "TTour", "Y");
    reg_ini_.ReadRegInfo();
    reg_ini_.SaveSettingHashed("Misc", "TTour", "Y");
  }
  void HaveMail(const settings::SmtpData& data) { settings::SaveSMTPData(world_.state, world_.log, data); }
  void Met(const std::string& monitor) { met_.SetItemData(monitor, monitor); }

  OptionsNeeds Needs() {
    return {world_.state,
            world_.log,
            reg_ini_,
            screen_,
            met_,
            [this] { acts_.push_back("reset"); },
            [this] { acts_.push_back("colour " + std::to_string(world_.state.settings.SSColor)); }};
  }
  frmOptions& Open() {
    form_ = std::make_unique<frmOptions>(Needs());
    form_->Load();
    form_->visible = true;
    return *form_;
  }
  void Ok() { form_->cmdOK.clicked.Raise(); }
  // Closed and opened again by somebody else.
  frmOptions& Again() {
    form_.reset();
    return Open();
  }
  void Colour(widgets::Label& button, std::optional<std::uint32_t> colour) {
    world_.platform.colour_dialogs.Choose(colour);
    button.clicked.Raise();
  }
  std::string Saved(const std::string& section, const std::string& key) {
    return settings::IniFile(world_.platform.files.Get(reg_ini_.IniPath()))
        .GetString(section, key, "(none)", 100);
  }
  std::string MailFile() { return world_.platform.files.Get(world_.InFolder("KorvessaSMTPConfig.kvl")); }
  // The pages on show and in use.
  std::vector<int> Pages() {
    std::vector<int> shown;
    for (int i = 0; i < kOptionsPages; ++i) {
      const auto at = static_cast<std::size_t>(i);
      EXPECT_EQ(form_->picOptions[at].visible.Get(), form_->picOptions[at].enabled.Get());
      EXPECT_EQ(form_->picOptions[at].visible.Get(), form_->tbsOptions[at].bordered.Get());
      if (form_->picOptions[at].visible) shown.push_back(i);
    }
    return shown;
  }
  std::vector<std::string> Chosen() {
    std::vector<std::string> names;
    for (const widgets::OptionButton* button :
         {&form_->OpMinutes, &form_->OpHours, &form_->OpDays, &form_->OpWeeks, &form_->OpMonths,
          &form_->OpDelta, &form_->OpTotal})
      if (button->checked) names.push_back(button->name());
    return names;
  }
  platform::ScriptedBoxes& Boxes() { return world_.platform.message_boxes; }

  zendrix::testing::ConsoleWorld world_;
  settings::RegIni reg_ini_{world_.state, world_.log};
  widgets::Screen screen_;
  store::CUList met_;
  std::vector<std::string> acts_;
  std::unique_ptr<frmOptions> form_;
};

TEST_F(FrmOptionsTest, OpensInTheMiddleOfTheScreenOnItsFirstPage) {
  form_ = std::make_unique<frmOptions>(Needs());
  int centred = 0;
  const auto link = form_->centre.Connect([&] { ++centred; });
  form_->Load();
  EXPECT_EQ(centred, 1);
  EXPECT_EQ(form_->title.Get(), "Options");
  EXPECT_THAT(Pages(), ElementsAre(kMonitorsPage));
}

TEST_F(FrmOptionsTest, TabsHaveTheirCaptionsAndTips) {
  Open();
  std::vector<std::pair<std::string, std::string>> tabs;
  for (const widgets::Label& tab : form_->tbsOptions) tabs.emplace_back(tab.caption, tab.tip);
  EXPECT_THAT(tabs, ElementsAre(std::pair("Monitors", "Select Monitors to show"),
                                std::pair("Event view", "Set Options for the Event view"),
                                std::pair("TimeLine", "Change Options for TimeLine view"),
                                std::pair("Alerts", "Configure SMTP email alerts")));
}

TEST_F(FrmOptionsTest, SettingsAreReadAnewWhenItOpens) {
  reg_ini_.SaveSettingHashed("Tline", "Nslots", "12");
  EXPECT_EQ(world_.state.settings.NSlots, 30);
  EXPECT_EQ(Open().NSlot.text.Get(), "12");
}

TEST_F(FrmOptionsTest, MonitorsOfTheSettingsComeFirstThenThoseThatTheGridHasMet) {
  Met("Running Processes");
  Met("TCP PORT");
  Met("System");
  EXPECT_EQ(Open().Monitors.Print(), "[x] System\n[ ] Tcp Port\n[x] Memory\n[ ] Running Processes\n");
}

TEST_F(FrmOptionsTest, WithoutSavedMonitorsThoseOfTheGridAreAllChecked) {
  Have("");
  Met("System");
  Met("Memory");
  EXPECT_EQ(Open().Monitors.Print(), "[x] System\n[x] Memory\n");
}

// The settings keep no blanks in front of a name: the second one, unchecked, switched the first one off.
TEST_F(FrmOptionsTest, MonitorsOfAFileThatWasSavedFromTheGridAreThoseOfTheSettings) {
  Met("     System");
  Met("     New One");
  Open();
  std::vector<std::string> names;
  for (const auto& entry : form_->Monitors.entries()) names.push_back(entry.text);
  EXPECT_THAT(names, ElementsAre("System", "Tcp Port", "Memory", "New One"));
  Ok();
  EXPECT_EQ(Saved("Monitors", "System"), "1");
}

TEST_F(FrmOptionsTest, OnlyTheValueOneIsAChecked) {
  Have("[Monitors]\r\na=1\r\nb=2\r\nc=\r\nd=-1\r\n[Columns]\r\nHostname=2\r\nMonitor=1\r\n");
  Open();
  EXPECT_EQ(form_->Monitors.Print(), "[x] a\n[ ] b\n[ ] c\n[ ] d\n");
  EXPECT_EQ(form_->Cols.Print(), "[ ] Date/Time\n[ ] Hostname\n[x] Monitor\n[ ] Change\n[ ] Description\n");
}

TEST_F(FrmOptionsTest, WithoutSavedColumnsAllAreChecked) {
  EXPECT_EQ(Open().Cols.Print(), "[x] Date/Time\n[x] Hostname\n[x] Monitor\n[x] Change\n[x] Description\n");
}

TEST_F(FrmOptionsTest, ColoursAreThoseOfTheSettings) {
  Open();
  EXPECT_EQ(form_->SelC.colour.Get(), 0x8080FFu);
  EXPECT_EQ(form_->SSCol.colour.Get(), 0xFF8080u);
}

TEST_F(FrmOptionsTest, UnitAndKindOfTheTimelineAreThoseOfTheSettings) {
  const std::pair<const char*, const char*> units[] = {
      {"0", "OpMinutes"}, {"1", "OpMinutes"}, {"2", "OpHours"},   {"3", "OpDays"},
      {"4", "OpWeeks"},   {"5", "OpMonths"},  {"6", "OpMinutes"}, {"255", "OpMinutes"}};
  for (const auto& [saved, name] : units) {
    reg_ini_.SaveSettingHashed("Tline", "TSlots", saved);
    Again();
    EXPECT_THAT(Chosen(), ElementsAre(name, "OpDelta")) << saved;
  }
  const std::pair<const char*, const char*> kinds[] = {
      {"D", "OpDelta"}, {"T", "OpTotal"}, {"t", "OpDelta"}, {"x", "OpDelta"}};
  for (const auto& [saved, name] : kinds) {
    reg_ini_.SaveSettingHashed("Tline", "TCHart", saved);
    Again();
    EXPECT_THAT(Chosen(), ElementsAre("OpMinutes", name)) << saved;
  }
}

TEST_F(FrmOptionsTest, MailComesFromItsFileAndTheStandardPortFromNowhere) {
  EXPECT_EQ(Open().mail.Data(), (settings::SmtpData{"", "", "25"}));
  HaveMail({"me@b.c", "mail.b.c", "587"});
  EXPECT_EQ(Again().mail.Data(), (settings::SmtpData{"me@b.c", "mail.b.c", "587"}));
  HaveMail({"me@b.c", "mail.b.c", ""});
  EXPECT_EQ(Again().mail.Data(), (settings::SmtpData{"me@b.c", "mail.b.c", "25"}));
  EXPECT_FALSE(form_->mail.SmtpDirty);
}

TEST_F(FrmOptionsTest, DamagedMailFileIsToldAndTheFieldsAreEmpty) {
  HaveMail({"me@b.c", "mail.b.c", "587"});
  world_.platform.files.Put(world_.InFolder("KorvessaSMTPConfig.kvl"), "x");
  Open();
  EXPECT_THAT(Boxes().Texts(), ElementsAre("Invalid SMTP configuration file. Loading default values"));
  EXPECT_EQ(form_->mail.Data(), (settings::SmtpData{"", "", "25"}));
}

TEST_F(FrmOptionsTest, TabShowsItsPageAlone) {
  Open();
  for (int i = kOptionsPages; i-- > 0;) {
    form_->tbsOptions[static_cast<std::size_t>(i)].clicked.Raise();
    EXPECT_THAT(Pages(), ElementsAre(i));
  }
}

TEST_F(FrmOptionsTest, NextTabGoesRoundFromTheLastToTheFirst) {
  Open();
  for (const int page : {kEventViewPage, kTimeLinePage, kAlertsPage, kMonitorsPage}) {
    form_->NextTab();
    EXPECT_THAT(Pages(), ElementsAre(page));
  }
}

TEST_F(FrmOptionsTest, ColourButtonsBeginWithThePresentColourAndCancelLeavesIt) {
  Open();
  Colour(form_->Change, 0x112233);
  Colour(form_->Change2, 0x445566);
  EXPECT_EQ(form_->SelC.colour.Get(), 0x112233u);
  EXPECT_EQ(form_->SSCol.colour.Get(), 0x445566u);
  Colour(form_->Change, std::nullopt);
  Colour(form_->Change2, std::nullopt);
  EXPECT_EQ(form_->SelC.colour.Get(), 0x112233u);
  EXPECT_EQ(form_->SSCol.colour.Get(), 0x445566u);
  const auto& shown = world_.platform.colour_dialogs.shown;
  ASSERT_THAT(shown, SizeIs(4));
  EXPECT_EQ(shown[0].colour, 0x8080FFu);
  EXPECT_EQ(shown[1].colour, 0xFF8080u);
  EXPECT_EQ(shown[2].colour, 0x112233u);
  EXPECT_EQ(shown[2].title, "Filtered Color");
  EXPECT_EQ(shown[3].title, "Selected Color");
  EXPECT_EQ(world_.state.settings.SelColor, 0x8080FF) << "nothing is set before OK or Apply";
}

TEST_F(FrmOptionsTest, NothingElseCanBePressedUnderTheColourDialog) {
  Open();
  bool enabled = true;
  world_.platform.colour_dialogs.while_open = [&] { enabled = form_->enabled; };
  Colour(form_->Change, 1);
  EXPECT_FALSE(enabled);
  EXPECT_TRUE(form_->enabled);
}

TEST_F(FrmOptionsTest, NumberOfSlotsIsBetweenOneAndFifty) {
  Open();
  for (const char* bad : {"0", "51", "", "00", "256", "99999999999999999999"}) {
    Boxes().shown.clear();
    int kept = 0;
    const auto link = form_->NSlot.focus.Connect([&] { ++kept; });
    form_->NSlot.Edit(bad);
    EXPECT_FALSE(form_->NSlot.Leave()) << bad;
    ASSERT_THAT(Boxes().shown, SizeIs(1)) << bad;
    EXPECT_EQ(Boxes().shown[0].text, "Please type a number between 1 and 50");
    EXPECT_EQ(Boxes().shown[0].icon, platform::BoxIcon::kStop);
    EXPECT_EQ(Boxes().shown[0].title, "Korvessa Zendrix Administrator");
    EXPECT_EQ(kept, 1) << "it asks for the keyboard again";
  }
  Boxes().shown.clear();
  for (const char* good : {"1", "50", "007"}) {
    form_->NSlot.Edit(good);
    EXPECT_TRUE(form_->NSlot.Leave()) << good;
  }
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

TEST_F(FrmOptionsTest, NumbersTakeDigitsAndBeepAtOtherKeys) {
  Open();
  int beeps = 0;
  const auto link = screen_.beep.Connect([&] { ++beeps; });
  form_->NSlot.Type("\b\b4x2-");
  EXPECT_EQ(form_->NSlot.text.Get(), "42");
  EXPECT_EQ(beeps, 2);
  form_->mail.Port.Type("\b\b5 8.7");
  EXPECT_EQ(form_->mail.Port.text.Get(), "587");
  EXPECT_EQ(beeps, 4);
}

TEST_F(FrmOptionsTest, AddressAndServerThatAreNoneKeepTheKeyboard) {
  Open();
  form_->mail.Email.Edit("nobody");
  EXPECT_FALSE(form_->mail.Email.Leave());
  form_->mail.Server.Edit("example.org");
  EXPECT_FALSE(form_->mail.Server.Leave());
  EXPECT_THAT(Boxes().Texts(),
              ElementsAre("Not a valid email address.\r\nshould be as in: 'name@domain.ext'",
                          "Not a valid Server name.\r\nshould be as in: 'server.maildomain.ext'"));
  form_->mail.Email.Edit("");
  EXPECT_TRUE(form_->mail.Email.Leave());
  form_->mail.Server.Edit("mail.example.org");
  EXPECT_TRUE(form_->mail.Server.Leave());
}

TEST_F(FrmOptionsTest, FieldThatKeepsTheKeyboardKeepsItsPageAndNothingIsSaved) {
  Open();
  form_->tbsOptions[kTimeLinePage].clicked.Raise();
  form_->NSlot.Edit("51");
  form_->NextTab();
  form_->tbsOptions[kMonitorsPage].clicked.Raise();
  EXPECT_THAT(Pages(), ElementsAre(kTimeLinePage));
  const std::string before = world_.platform.files.Get(reg_ini_.IniPath());
  form_->cmdApply.clicked.Raise();
  Ok();
  EXPECT_TRUE(form_->loaded());
  EXPECT_EQ(world_.platform.files.Get(reg_ini_.IniPath()), before);
  EXPECT_THAT(Boxes().shown, SizeIs(4));
  form_->cmdCancel.clicked.Raise();
  EXPECT_FALSE(form_->loaded()) << "Cancel asks no field";
  EXPECT_THAT(Boxes().shown, SizeIs(4));
}

TEST_F(FrmOptionsTest, ApplySavesEverythingButTheMailAndStays) {
  Met("Registry");
  Open();
  form_->Monitors.Click(0);
  form_->Monitors.Click(3);
  form_->Cols.Click(1);
  Colour(form_->Change, 0x010203);
  Colour(form_->Change2, 0x040506);
  form_->OpWeeks.Click();
  form_->NSlot.Edit("50");
  form_->OpTotal.Click();
  form_->mail.Email.Edit("me@b.c");
  form_->cmdApply.clicked.Raise();
  EXPECT_TRUE(form_->loaded());
  EXPECT_THAT(acts_, IsEmpty()) << "the grid and its colours stay as they are";
  EXPECT_EQ(MailFile(), "");
  const std::string ini = world_.platform.files.Get(reg_ini_.IniPath());
  EXPECT_THAT(ini, HasSubstr("[Monitors]\r\nSystem=0\r\nTcp Port=0\r\nMemory=1\r\nRegistry=1\r\n"));
  EXPECT_THAT(ini, HasSubstr("Date/Time=1\r\nHostname=0\r\nMonitor=1\r\nChange=1\r\nDescription=1\r\n"));
  EXPECT_EQ(Saved("Grid", "SelColor"), "66051");
  EXPECT_EQ(Saved("Grid", "SSColor"), "263430");
  EXPECT_EQ(Saved("Tline", "NSlots"), "50");
  EXPECT_EQ(Saved("Tline", "TSlots"), "4");
  EXPECT_EQ(Saved("Tline", "TChart"), "T");
  EXPECT_EQ(world_.state.settings.MonitorStates.at(0), core::KeyValue("System", "0")) << "read again";
  EXPECT_EQ(world_.state.settings.SSColor, 0x040506);
  EXPECT_EQ(world_.state.settings.NSlots, 50);
  EXPECT_EQ(world_.state.settings.TSlots, 4);
  EXPECT_EQ(world_.state.settings.TChart, "T");
}

TEST_F(FrmOptionsTest, CancelKeepsWhatApplyHasSavedAndDropsTheRest) {
  Open();
  form_->NSlot.Edit("7");
  form_->cmdApply.clicked.Raise();
  form_->NSlot.Edit("8");
  form_->Monitors.Click(0);
  form_->mail.Email.Edit("me@b.c");
  form_->cmdCancel.clicked.Raise();
  EXPECT_FALSE(form_->loaded());
  EXPECT_EQ(Saved("Tline", "Nslots"), "7");
  EXPECT_EQ(Saved("Monitors", "System"), "1");
  EXPECT_EQ(MailFile(), "");
  EXPECT_THAT(acts_, IsEmpty());
  EXPECT_EQ(Again().NSlot.text.Get(), "7");
}

TEST_F(FrmOptionsTest, OkWithoutAChangeSavesAndRepaintsNothing) {
  Open();
  Ok();
  EXPECT_FALSE(form_->loaded());
  EXPECT_THAT(acts_, IsEmpty());
  EXPECT_EQ(MailFile(), "");
  EXPECT_EQ(Saved("Columns", "Hostname"), "1");
}

TEST_F(FrmOptionsTest, EveryOptionIsThereAgainAfterOk) {
  widgets::OptionButton frmOptions::*const units[] = {&frmOptions::OpMinutes, &frmOptions::OpHours,
                                                      &frmOptions::OpDays, &frmOptions::OpWeeks,
                                                      &frmOptions::OpMonths};
  widgets::OptionButton frmOptions::*const kinds[] = {&frmOptions::OpDelta, &frmOptions::OpTotal};
  for (const auto unit : units) {
    for (const auto kind : kinds) {
      Again();
      (form_.get()->*unit).Click();
      (form_.get()->*kind).Click();
      Ok();
      Again();
      EXPECT_THAT(Chosen(), ElementsAre((form_.get()->*unit).name(), (form_.get()->*kind).name()));
    }
  }
}

TEST_F(FrmOptionsTest, NoOptionChosenCountsAsTheFirst) {
  Open();
  form_->OpMinutes.checked = false;
  form_->OpDelta.checked = false;
  Ok();
  EXPECT_EQ(Saved("Tline", "TSlots"), "1");
  EXPECT_EQ(Saved("Tline", "TChart"), "D");
}

TEST_F(FrmOptionsTest, TouchedMailIsSavedByOk) {
  HaveMail({"me@b.c", "mail.b.c", "587"});
  const std::string third = MailFile() + "third=kept";
  world_.platform.files.Put(world_.InFolder("KorvessaSMTPConfig.kvl"), third);
  world_.platform.files.Put(world_.InFolder("KorvessaSMTPConfig.kvh"),
                            world_.platform.family.HashBytes(third) + "\r\n");
  Open();
  form_->mail.Server.Edit("smtp.b.c");
  Ok();
  EXPECT_EQ(MailFile(), "Send Alerts To=me@b.c;SMTP Server=smtp.b.c:587;third=kept");
}

TEST_F(FrmOptionsTest, EachMailFieldMarksItAsTouched) {
  for (widgets::TextBox settings::SmtpFields::*field :
       {&settings::SmtpFields::Email, &settings::SmtpFields::Server, &settings::SmtpFields::Port}) {
    Again();
    EXPECT_FALSE(form_->mail.SmtpDirty);
    (form_->mail.*field).Edit("1");
    EXPECT_TRUE(form_->mail.SmtpDirty);
  }
}

TEST_F(FrmOptionsTest, KeyThatThePortTakesTouchesItThoughNothingChanges) {
  Open();
  form_->mail.Port.text = "";
  form_->mail.SmtpDirty = false;
  form_->mail.Port.Type("x");
  EXPECT_FALSE(form_->mail.SmtpDirty);
  form_->mail.Port.Type("\b");
  EXPECT_TRUE(form_->mail.SmtpDirty);
}

TEST_F(FrmOptionsTest, NewSelectedColourIsPaintedWithOk) {
  Open();
  Colour(form_->Change2, 0x000001);
  form_->cmdApply.clicked.Raise();
  EXPECT_THAT(acts_, IsEmpty());
  Ok();
  EXPECT_THAT(acts_, ElementsAre("colour 1")) << "compared with the colour at the opening";
}

TEST_F(FrmOptionsTest, ColourThatIsAsItWasIsNotPainted) {
  Open();
  Colour(form_->Change2, 0x000001);
  Colour(form_->Change2, 0xFF8080);
  Ok();
  EXPECT_THAT(acts_, IsEmpty());
}

TEST_F(FrmOptionsTest, FilteredColourIsSavedAndPaintsNothing) {
  Open();
  Colour(form_->Change, 0x00FF00);
  Ok();
  EXPECT_EQ(Saved("Grid", "SelColor"), "65280");
  EXPECT_THAT(acts_, IsEmpty());
}

TEST_F(FrmOptionsTest, ColourOfTheDesktopKeepsItsNumber) {
  reg_ini_.SaveSettingHashed("Grid", "SSColor", "-2147483635");
  Open();
  EXPECT_EQ(form_->SSCol.colour.Get(), widgets::kSystemHighlight);
  Ok();
  EXPECT_EQ(Saved("Grid", "SSColor"), "-2147483635");
  EXPECT_THAT(acts_, IsEmpty());
}

TEST_F(FrmOptionsTest, OneMonitorMoreOrLessLoadsTheGridAnew) {
  Open();
  form_->Monitors.Click(1);
  Ok();
  EXPECT_THAT(acts_, ElementsAre("reset"));
  EXPECT_EQ(Saved("Monitors", "Tcp Port"), "1");
}

TEST_F(FrmOptionsTest, AsManyMonitorsAsBeforeButOthersLoadTheGridAnew) {
  Open();
  form_->Monitors.Click(0);
  form_->Monitors.Click(1);
  EXPECT_EQ(form_->Monitors.CheckedCount(), 2u);
  Ok();
  EXPECT_THAT(acts_, ElementsAre("reset"));
}

TEST_F(FrmOptionsTest, MonitorsTouchedBeforeApplyLoadTheGridWithOk) {
  Open();
  form_->Monitors.Click(0);
  form_->cmdApply.clicked.Raise();
  EXPECT_THAT(acts_, IsEmpty());
  Ok();
  EXPECT_THAT(acts_, ElementsAre("reset"));
}

TEST_F(FrmOptionsTest, ColumnsDoNotLoadTheGridAnew) {
  Open();
  form_->Cols.Click(0);
  Ok();
  EXPECT_THAT(acts_, IsEmpty());
  EXPECT_EQ(Saved("Columns", "Date/Time"), "0");
}

TEST_F(FrmOptionsTest, ColourIsPaintedBeforeTheGridIsLoaded) {
  Open();
  Colour(form_->Change2, 5);
  form_->Monitors.Click(0);
  form_->mail.Email.Edit("me@b.c");
  Ok();
  EXPECT_THAT(acts_, ElementsAre("colour 5", "reset"));
  EXPECT_THAT(MailFile(), HasSubstr("me@b.c"));
}

// Loading the grid serves messages while the dialog is open.
TEST_F(FrmOptionsTest, ButtonsRestWhileOkIsAtWork) {
  OptionsNeeds needs = Needs();
  needs.ResetClick = [this] {
    acts_.push_back("reset");
    Ok();
    form_->cmdApply.clicked.Raise();
    form_->cmdCancel.clicked.Raise();
    EXPECT_FALSE(form_->Unload(widgets::UnloadCause::kCloseBox));
    EXPECT_TRUE(form_->loaded());
  };
  form_ = std::make_unique<frmOptions>(std::move(needs));
  form_->Load();
  form_->Monitors.Click(0);
  Ok();
  EXPECT_THAT(acts_, ElementsAre("reset"));
  EXPECT_FALSE(form_->loaded());
}

TEST_F(FrmOptionsTest, EndOfTheProgramUnloadsItThoughOkIsAtWork) {
  OptionsNeeds needs = Needs();
  needs.ResetClick = [this] { EXPECT_TRUE(form_->Unload(widgets::UnloadCause::kCode)); };
  form_ = std::make_unique<frmOptions>(std::move(needs));
  form_->Load();
  form_->Monitors.Click(0);
  Ok();
  EXPECT_FALSE(form_->loaded());
}

TEST_F(FrmOptionsTest, NumberThatIsNoByteIsLoggedAndNothingIsSaved) {
  Open();
  form_->NSlot.text = "256";  // not by the keyboard, which would be asked
  const std::string before = world_.platform.files.Get(reg_ini_.IniPath());
  world_.quiet.Expect("'frmOptions : cmdOK_Click': 6: Overflow");
  Ok();
  EXPECT_TRUE(form_->loaded());
  world_.quiet.Expect("'frmOptions : cmdApply_Click': 6: Overflow");
  form_->cmdApply.clicked.Raise();
  EXPECT_EQ(world_.platform.files.Get(reg_ini_.IniPath()), before);
}

// Every line of a hostile file may name a monitor of its own.
TEST_F(FrmOptionsTest, MonitorsByTheThousandAreListedAndNotStored) {
  for (int i = 0; i < 20'000; ++i) Met("Monitor " + std::to_string(i));
  Open();
  EXPECT_THAT(form_->Monitors.entries(), SizeIs(20'003));
  form_->Monitors.Click(0);
  world_.quiet.Expect("'RegisterMonitors': 20000 new monitor names are more than 1000. They are not stored.");
  Ok();
  EXPECT_FALSE(form_->loaded());
  EXPECT_EQ(Saved("Monitors", "System"), "0");
  EXPECT_EQ(Saved("Monitors", "Monitor 7"), "(none)");
}

TEST_F(FrmOptionsTest, NamesAreShownAsTheyAre) {
  Met("<b>&x</b>");
  Open();
  EXPECT_EQ(form_->Monitors.entries().back().text, "<b>&x</b>");
  EXPECT_EQ(form_->lblEmailNote.caption.Get(), "(email account as in \"name@domain.ext\")");
  EXPECT_EQ(form_->lblServerNote.caption.Get(), "(SMTP server as in \"server.maildomain.ext\")");
}

}  // namespace
}  // namespace zendrix::admin
