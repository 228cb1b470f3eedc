// The Options and Advanced panes under everything that may happen while a box or a pane is open.
#include "flow_fixture.h"
#include "settings/smtp.h"

namespace zendrix::flow {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::StartsWith;

class OptionsFlow : public FlowTest {
 protected:
  void OpenOptions(int tab = home::kMailTab) {
    Home().ViewItems[home::kOptionsView]->clicked.Raise();
    Options().etbOptionSel[static_cast<std::size_t>(tab)].clicked.Raise();
  }
  home::OptionsPane& Options() { return Home().options; }
  home::LogsPane& Logs() { return Home().logs; }
  // A user types an address that is none into the field that has the keyboard.
  void TypeBadAddress() {
    Options().eEnable.checked = true;
    Options().eEnable.clicked.Raise();
    Options().mail.Email.Enter();
    Options().mail.Email.Type("nobody");
  }
  void StartAgain(const std::string& command_line = "-ns") {
    page_.reset();
    console_.reset();
    Start(command_line);
  }
  std::vector<std::string> Messages() {
    std::vector<std::string> texts;
    for (std::size_t i = 0; i < Logs().alvAgErrLog.size(); ++i)
      texts.push_back(Logs().alvAgErrLog.at(i).sub_items.at(1).text);
    return texts;
  }
};

TEST_F(OptionsFlow, AlertsArriveUnderTheBoxOfABadAddressAndTheFieldStaysAsItIs) {
  Write(Alert(0, "/opt/tool"));
  Start();
  OpenOptions();
  TypeBadAddress();
  int kept = 0;
  const auto link = Options().mail.Email.focus.Connect([&] { ++kept; });
  Boxes().while_open = [&](const platform::BoxRequest&) {
    EXPECT_FALSE(Home().enabled);
    Append(Alert(60, "/opt/other"));
    Seconds(10);
    EXPECT_THAT(Rows(), ElementsAre("K5 Intrusion", "K2 Intrusion"));
  };
  EXPECT_FALSE(Options().mail.Email.Leave());
  EXPECT_EQ(Boxes().Texts().size(), 1u);
  EXPECT_EQ(kept, 1);
  EXPECT_EQ(Options().mail.Email.text.Get(), "nobody");
  EXPECT_TRUE(Options().mail.Email.enabled);
}

TEST_F(OptionsFlow, ReplacedFileUnderThatBoxRebuildsTheListAndTheFieldStaysAsItIs) {
  Write(Alert(0, "/opt/tool"));
  Start();
  OpenOptions();
  TypeBadAddress();
  Boxes().while_open = [&](const platform::BoxRequest&) {
    Write(Line(0, "System", "s"));
    Tick();
    EXPECT_THAT(Rows(), IsEmpty());
  };
  EXPECT_FALSE(Options().mail.Email.Leave());
  EXPECT_EQ(Options().mail.Email.text.Get(), "nobody");
}

// Going to the box takes the keyboard from the field once more.
TEST_F(OptionsFlow, SecondLeavingUnderThatBoxOpensNoOther) {
  Write(Alert(0, "/opt/tool"));
  Start();
  OpenOptions();
  TypeBadAddress();
  Boxes().while_open = [&](const platform::BoxRequest&) {
    Options().mail.Email.Leave();
    Options().eSave.clicked.Raise();
  };
  EXPECT_FALSE(Options().mail.Email.Leave());
  EXPECT_EQ(Boxes().Texts().size(), 1u);
}

TEST_F(OptionsFlow, ConsoleEndsUnderThatBox) {
  Write(Alert(0, "/opt/tool"));
  Start();
  OpenOptions();
  TypeBadAddress();
  Boxes().while_open = [&](const platform::BoxRequest&) { console_->End(); };
  EXPECT_EQ(world_.EndOf([&] { Options().mail.Email.Leave(); }), 0);
  world_.quiet.Take();
}

TEST_F(OptionsFlow, WhatIsSavedOnEachTabIsReadAtTheNextStart) {
  Write(Alert(0, "/opt/tool"));
  Start();
  OpenOptions();
  Options().eEnable.checked = true;
  Options().eEnable.clicked.Raise();
  Options().mail.Email.Edit("user@example.org");
  Options().mail.Server.Edit("mail.example.org");
  Options().mail.Port.Edit("587");
  Options().eSave.clicked.Raise();
  Options().etbOptionSel[home::kAlertTab].clicked.Raise();
  Options().eSbSensitivity.value = 200;
  Options().eSbRiskLevel.value = 75;
  Options().eSave.clicked.Raise();
  Options().etbOptionSel[home::kPropertiesTab].clicked.Raise();
  Options().echkOrigHigh.checked = true;
  Options().eSave.clicked.Raise();
  StartAgain();
  EXPECT_THAT(Boxes().Texts(), IsEmpty()) << "all that was written verifies";
  const core::Settings& settings = world_.state.settings;
  EXPECT_EQ(settings.enblAlr, "1");
  EXPECT_EQ(settings.Sensitivity, 2.0F);
  EXPECT_EQ(settings.NormalTop, 50.0F);
  EXPECT_EQ(settings.ShRskLvl, 75.0F);
  EXPECT_FALSE(settings.PopOrigHigh);
  EXPECT_FALSE(Home().mPopOrigHigh.checked);
  OpenOptions();
  EXPECT_EQ(Options().mail.Email.text.Get(), "user@example.org");
  EXPECT_EQ(Options().mail.Server.text.Get(), "mail.example.org");
  EXPECT_EQ(Options().mail.Port.text.Get(), "587");
  EXPECT_EQ(Options().eSbSensitivity.value.Get(), 200);
  EXPECT_TRUE(Options().echkOrigHigh.checked);
}

TEST_F(OptionsFlow, FirstStartOfAllShowsTheDefaultsOfTheSliders) {
  world_.platform.files.Vanish(Path("zendrix.ini"));
  world_.platform.files.Vanish(Path("zendrix.kvh"));
  Write(Alert(0, "/opt/tool"));
  Start();
  StartAgain();
  OpenOptions(home::kAlertTab);
  EXPECT_EQ(Options().eAlertsToShow.caption.Get(), "Only Suspicious and Intrusion alerts");
  EXPECT_EQ(Options().eSensitivity.caption.Get(), "1.1");
}

TEST_F(OptionsFlow, SettingOfTheMenuIsShownOnTheOpenPaneAndSavedFromThere) {
  Write(Alert(0, "/opt/tool"));
  Start();
  OpenOptions(home::kPropertiesTab);
  Options().echkDontAsk.checked = true;
  Home().mPopOrigHigh.clicked.Raise();
  EXPECT_TRUE(Options().echkOrigHigh.checked);
  EXPECT_TRUE(Options().echkDontAsk.checked) << "a tick that waits to be saved";
  Options().eSave.clicked.Raise();
  EXPECT_FALSE(world_.state.settings.PopOrigHigh);
  EXPECT_TRUE(world_.state.settings.DontAsk);
  EXPECT_FALSE(Home().mPopOrigHigh.checked);
}

// The list is built anew while the page of its first row is awaited, and an alert arrives meanwhile.
TEST_F(OptionsFlow, AlertThatArrivesWhileASavedSensitivityRebuildsTheListIsThereBehindIt) {
  Write(Alert(0, "/opt/tool"));
  Start();
  OpenOptions(home::kAlertTab);
  int navigations = 0;
  page_->on_navigate = [&] {
    if (++navigations != 2) return;  // the first is the opening text's, which nobody waits for
    Append(Alert(60, "/opt/other"));
    Tick();
    EXPECT_TRUE(Home().ListBusy);
  };
  Options().eSbSensitivity.value = 300;
  Options().eSave.clicked.Raise();
  EXPECT_GE(navigations, 2);
  EXPECT_THAT(Rows(), ElementsAre("K5 Intrusion", "K2 Intrusion"));
  EXPECT_FALSE(Home().ListBusy);
}

TEST_F(OptionsFlow, LogReplacedUnderTheListShowsWhatIsListedUntilItIsLoadedFromEmpty) {
  Write(Alert(0, "/opt/tool"));
  const std::string log = Path("KorvessaEventLog.kvl");
  world_.platform.files.Put(log, Tag(0) + ",HOST,7,old one\r\n" + Tag(1) + ",HOST,7,old two\r\n");
  Start();
  Home().ViewItems[home::kAdvancedView]->clicked.Raise();
  world_.platform.files.Put(log, Tag(9) + ",HOST,7,new one\r\n");
  Logs().alvAgErrLog.Click(*Logs().alvAgErrLog.Find("K1"));
  EXPECT_TRUE(Logs().aDesc.caption.Get().ends_with("old one"));
  Logs().aUIError.Click();
  EXPECT_THAT(Messages(), ::testing::Contains(StartsWith("'Load': UI started.")));
  Logs().aAgStatus.Click();
  EXPECT_THAT(Messages(), ElementsAre("new one"));
}

TEST_F(OptionsFlow, ClearedLogStaysClearedAtTheNextStart) {
  Write(Alert(0, "/opt/tool"));
  world_.platform.files.Put(Path("KorvessaEventLog.kvl"), Tag(0) + ",HOST,7,one\r\n");
  Start();
  Home().ViewItems[home::kAdvancedView]->clicked.Raise();
  Logs().aClearAll.clicked.Raise();
  StartAgain();
  world_.platform.files.PutMore(Path("KorvessaEventLog.kvl"), Tag(5) + ",HOST,7,two\r\n");
  Home().ViewItems[home::kAdvancedView]->clicked.Raise();
  EXPECT_THAT(Messages(), ElementsAre("two"));
  Logs().aShowAll.clicked.Raise();
  EXPECT_THAT(Messages(), ElementsAre("one", "two"));
  EXPECT_TRUE(Logs().alvAgErrLog.at(0).ghosted);
}

// A tick under the message of a start finds out that it failed, and the pane follows when the box has gone.
TEST_F(OptionsFlow, AgentIsCheckedUnderTheMessageOfAStart) {
  Write(Alert(0, "/opt/tool"));
  world_.platform.services.SetStopped("ZENDRIX");
  Start();
  Home().ViewItems[home::kAdvancedView]->clicked.Raise();
  Boxes().StayOpenFor(150'000);
  Home().agent.aClick.clicked.Raise();
  EXPECT_EQ(Boxes().Texts(), (std::vector<std::string>{"Zendrix Monitoring started."}));
  EXPECT_EQ(Home().AgentLevel, 1);
  EXPECT_EQ(Home().agent.aClick.caption.Get(), "[Disable]");
}

}  // namespace
}  // namespace zendrix::flow
