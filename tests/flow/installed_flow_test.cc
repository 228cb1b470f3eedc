// The console as the package manager installs it: a user's own settings, the Agent's files of another user,
// and the helper between them.
#include "alerts/activations.h"
#include "alerts/checked_alerts.h"
#include "control/agent_sight.h"
#include "flow_fixture.h"
#include "platform/layered_files.h"
#include "settings/smtp.h"

namespace zendrix::flow {
namespace {

using platform::ErrorKind;
using platform::FileOp;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr char kMissing[] =
    "The Agent is not installed on this computer: an administrator has to install the package zendrix-agent.";
constexpr char kNotInGroup[] =
    "You may not see what the Agent writes: an administrator has to run \"adduser ann zendrix\", which takes "
    "effect when you log in again.";

class InstalledFlow : public FlowTest {
 protected:
  InstalledFlow() {
    world_.state.Installed = true;
    // A user who has never had settings.
    world_.state.FirstStart = true;
    for (const char* name : {"zendrix.ini", "zendrix.kvh"}) world_.platform.files.Vanish(Path(name));
    HaveDescription(1, "2,1,Agent watches.\r\n2,3,Agent rests.\r\n6,1,All is well.\r\n");
    HaveDescription(2, "Aggregation,N,<A href='do'><dotext></A> at <time>\r\n");
  }
  std::string StatusLine() { return Home().summary.icStatus.caption.Get(); }
  void Refuse(ErrorKind kind) {
    world_.platform.files.FailNext(FileOp::kOpen, Path(), kind, platform::MemoryFiles::kAlways);
  }
  std::vector<std::string>& Told() { return world_.platform.agent_link.told; }
  void BlockTheTool() {
    Write(Alert(0, "/opt/first", "failed", "FIRST,1") + Alert(10, "/opt/tool", "failed", "TOOL,2"));
    Start();
    Home().ViewItems_Click(home::kAlertsView);
    ClickRow("K5");
    ClickLink("about:do");
  }
};

TEST_F(InstalledFlow, EachFileOfTheConsoleHasItsLayer) {
  using platform::Layer;
  using platform::LayerOf;
  EXPECT_EQ(LayerOf(core::kMonitoringFileName), Layer::kAgent);
  EXPECT_EQ(LayerOf(alerts::kCheckedAlertsFile), Layer::kAgent);
  EXPECT_EQ(LayerOf(core::kUpdateFileName), Layer::kAgent);
  EXPECT_EQ(LayerOf(alerts::kActivationsFile), Layer::kState);
  EXPECT_EQ(LayerOf(core::kConsoleLogName), Layer::kState);
  for (const std::string& name : {std::string(settings::kSmtpFileName), world_.state.ExeName + ".ini"}) {
    EXPECT_EQ(LayerOf(name), Layer::kSettings);
    EXPECT_EQ(LayerOf(core::SideFilePath(name)), Layer::kSettings);
  }
}

TEST_F(InstalledFlow, WhatTheAgentTellsIsSeenAsEver) {
  Write(Line(0, "System", "0"));
  Start();
  EXPECT_THAT(Boxes().shown, IsEmpty());
  EXPECT_EQ(Home().AgentLevel, home::kGood);
  EXPECT_EQ(Home().agent.aTitleDesc.caption.Get(), "Agent watches.");
  EXPECT_FALSE(Home().agent.Unseen);
}

TEST_F(InstalledFlow, TheSecondStartFindsTheSettingsOfTheFirst) {
  Write(Line(0, "System", "0"));
  Start();
  const std::string settings = File("zendrix.ini");
  EXPECT_THAT(settings, HasSubstr("SelColor=8421631"));
  End();
  Start();
  EXPECT_EQ(File("zendrix.ini"), settings);
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

TEST_F(InstalledFlow, SettingsThatWereTamperedWithAreToldAtTheNextStart) {
  Write(Line(0, "System", "0"));
  Start();
  End();
  world_.platform.files.PutMore(Path("zendrix.ini"), "[Planted]\r\n");
  Start();
  EXPECT_THAT(Boxes().Texts(), ElementsAre("Invalid configuration file. Loading default values"));
}

TEST_F(InstalledFlow, AUserOutsideOfTheGroupIsToldWhatToDo) {
  Write(Line(0, "System", "0"));
  Refuse(ErrorKind::kPermissionDenied);
  Start();
  EXPECT_THAT(Boxes().shown, IsEmpty());
  EXPECT_EQ(Home().agent.aTitleDesc.caption.Get(), kNotInGroup);
  EXPECT_EQ(StatusLine(), kNotInGroup);
  EXPECT_EQ(Home().AgentLevel, home::kImmediate);
  EXPECT_EQ(Home().summary.OSFlag.picture.Get(), "FlagR");
  EXPECT_FALSE(Home().summary.icMore.visible);
  EXPECT_EQ(Home().agent.aStatus.caption.Get(), "Monitoring is Enabled");
  EXPECT_EQ(Home().agent.aClick.caption.Get(), "[Disable]");
}

TEST_F(InstalledFlow, AnAgentThatIsNotInstalledIsNamed) {
  world_.platform.services.SetMissing("ZENDRIX");
  Start();
  EXPECT_THAT(Boxes().shown, IsEmpty());
  EXPECT_EQ(StatusLine(), kMissing);
  EXPECT_FALSE(Home().summary.icMore.visible);
  EXPECT_EQ(Home().agent.aClick.caption.Get(), "[Enable]");
}

TEST_F(InstalledFlow, AStoppedAgentWithoutAFileIsToldAsStopped) {
  world_.platform.services.SetStopped("ZENDRIX");
  Start();
  world_.quiet.Take();
  EXPECT_EQ(Home().agent.aTitleDesc.caption.Get(), "Agent rests.");
  EXPECT_TRUE(Home().summary.icMore.visible);
}

TEST_F(InstalledFlow, AnAgentThatHasWrittenNothingIsNotGreen) {
  Start();
  EXPECT_EQ(StatusLine(), "The Agent is running but has not written anything yet.");
  EXPECT_EQ(Home().AgentLevel, home::kImmediate);
}

TEST_F(InstalledFlow, ANameThatIsNoWordForACommandIsNotShownAsOne) {
  Refuse(ErrorKind::kPermissionDenied);
  for (const char* name : {"", "-rf", "a; reboot", "a b", "x\ny", "\"q\""}) {
    world_.platform.host.user_name = name;
    EXPECT_THAT(control::WhyNothingIsSeen(world_.state), HasSubstr("\"adduser USER zendrix\"")) << name;
  }
  Write(Line(0, "System", "0"));
  world_.platform.files.ClearFaults();
  EXPECT_EQ(control::WhyNothingIsSeen(world_.state), "");
}

TEST_F(InstalledFlow, AConsoleWithAFolderOfItsOwnSaysWhatItAlwaysSaid) {
  world_.state.Installed = false;
  Refuse(ErrorKind::kPermissionDenied);
  EXPECT_EQ(control::WhyNothingIsSeen(world_.state), "");
}

TEST_F(InstalledFlow, TheAdministratorIsToldInABox) {
  world_.state.ProductEdition = "Administrator";
  world_.platform.services.SetMissing("ZENDRIX");
  Start();
  EXPECT_EQ(Boxes().Texts(), std::vector<std::string>{kMissing});
}

TEST_F(InstalledFlow, ADecisionIsToldToTheAgentBehindTheUsersOwnFile) {
  BlockTheTool();
  EXPECT_EQ(File("KorvessaActivations.kvl"), "FIRST,1\r\n");
  EXPECT_THAT(Told(), ElementsAre(Tag(11) + " FIRST block"));
}

TEST_F(InstalledFlow, ADecisionThatTheAgentDidNotHearStaysInTheUsersOwnFile) {
  world_.platform.agent_link.trouble = "The Agent was not told.";
  BlockTheTool();
  EXPECT_EQ(File("KorvessaActivations.kvl"), "FIRST,1\r\n");
  EXPECT_THAT(Boxes().Texts(), ::testing::Contains("The Agent was not told."));
  EXPECT_THAT(world_.quiet.Take(),
              ::testing::Contains("'EventUtils:UpdateActivations': The Agent was not told."));
}

TEST_F(InstalledFlow, ADecisionThatCouldNotBeFiledIsNotTold) {
  world_.platform.files.FailNext(FileOp::kWriteAll, Path("KorvessaActivations.kvl"), ErrorKind::kNoSpace);
  BlockTheTool();
  world_.quiet.Take();
  EXPECT_THAT(Told(), IsEmpty());
}

TEST_F(InstalledFlow, SavedMailSettingsAreToldAsTheyAreWritten) {
  settings::SaveSMTPData(world_.state, world_.log, {"a@b.example", "mail.example", "25"});
  EXPECT_THAT(Told(), ElementsAre("mail " + File("KorvessaSMTPConfig.kvl")));
}

TEST_F(InstalledFlow, MailThatIsSwitchedOffTakesTheSettingsFromTheService) {
  settings::SwitchMail(world_.state, world_.log, false);
  EXPECT_THAT(Told(), IsEmpty());  // there are none
  settings::SaveSMTPData(world_.state, world_.log, {"a@b.example", "mail.example", "25"}, false);
  settings::SwitchMail(world_.state, world_.log, true);
  settings::SwitchMail(world_.state, world_.log, false);
  EXPECT_THAT(Told(), ElementsAre("mail ", "mail " + File("KorvessaSMTPConfig.kvl"), "mail "));
}

TEST_F(InstalledFlow, MailSettingsThatCouldNotBeSavedAreNotTold) {
  world_.platform.files.FailNext(FileOp::kWriteAll, Path("KorvessaSMTPConfig.kvl"), ErrorKind::kNoSpace);
  settings::SaveSMTPData(world_.state, world_.log, {"a@b.example", "mail.example", "25"});
  EXPECT_EQ(world_.quiet.Take().size(), 1U);
  EXPECT_THAT(Told(), IsEmpty());
}

}  // namespace
}  // namespace zendrix::flow
