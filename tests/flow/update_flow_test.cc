// A new version, from the file in the program folder to the greeting of its first run.
#include "core/message_window.h"
#include "core/version.h"
#include "flow_fixture.h"
#include "support/pe_file.h"

namespace zendrix::flow {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UpdateFlow : public FlowTest {
 protected:
  UpdateFlow() { Write(Alert(0, "/opt/tool")); }

  void HaveUpdate(const std::string& bytes) { world_.platform.files.Put(Path("Zendrix Update.exe"), bytes); }
  std::vector<std::string> Offers() {
    std::vector<std::string> offers;
    for (const auto& shown : world_.host.shown)
      if (shown.name == "frmNewUpdate") offers.push_back(shown.name);
    return offers;
  }
  bool UpdateIsThere() { return world_.platform.files.Has(Path("Zendrix Update.exe")); }
};

TEST_F(UpdateFlow, FirstRunNamesTheVersionOfTheInstallerAndTakesItAway) {
  HaveUpdate(zendrix::testing::PeFile{{3, 4, 0, 5}}.Bytes());
  std::string greeting;
  world_.host.WhileOpen("frmMsg", [&](widgets::Form& form) {
    greeting = dynamic_cast<core::frmMsg&>(form).lblMsg.caption.Get();
    EXPECT_FALSE(UpdateIsThere());
  });
  Start("-ns -nv");
  EXPECT_EQ(greeting, "Congratulations! Korvessa Zendrix has been successfully updated to version 3.4.0.5");
}

TEST_F(UpdateFlow, FirstRunOfAnInstallerWithoutAVersionNamesNone) {
  HaveUpdate("#!/bin/sh\n");
  std::string greeting;
  world_.host.WhileOpen("frmMsg", [&](widgets::Form& form) {
    greeting = dynamic_cast<core::frmMsg&>(form).lblMsg.caption.Get();
  });
  Start("-ns -nv");
  EXPECT_EQ(greeting, "Congratulations! Korvessa Zendrix has been successfully updated.");
  EXPECT_FALSE(UpdateIsThere());
}

TEST_F(UpdateFlow, FileOfTheRunningVersionGoesAtTheFirstCheckWithoutAQuestion) {
  HaveUpdate(zendrix::testing::PeFile{{core::kVersionMajor, core::kVersionMinor, 0, core::kVersionRevision}}
                 .Bytes());
  Start();
  Seconds(900);
  EXPECT_TRUE(UpdateIsThere());
  Seconds(1);
  EXPECT_FALSE(UpdateIsThere());
  EXPECT_THAT(Offers(), IsEmpty());
  EXPECT_THAT(Boxes().Texts(), IsEmpty());
  world_.quiet.Take();
}

TEST_F(UpdateFlow, NewVersionIsOfferedEveryQuarterOfAnHourUntilItIsTaken) {
  HaveUpdate(zendrix::testing::PeFile{{9, 0, 0, 1}}.Bytes());
  Start();
  Seconds(901);
  EXPECT_THAT(Offers(), ElementsAre("frmNewUpdate"));
  console_->update()->offer()->lblNo.clicked.Raise();
  Seconds(901);
  EXPECT_THAT(Offers(), ElementsAre("frmNewUpdate", "frmNewUpdate"));
  world_.quiet.Take();
  EXPECT_EQ(world_.EndOf([&] { console_->update()->offer()->lblYes.clicked.Raise(); }), 0);
  EXPECT_FALSE(Home().loaded());
  EXPECT_THAT(world_.platform.shell.installers, ::testing::SizeIs(1));
  EXPECT_THAT(world_.quiet.Take(), ::testing::Contains("'QueryUnload': Stop UI."));
}

TEST_F(UpdateFlow, NewVersionInstallsItselfAndTheConsoleEnds) {
  settings::RegIni(world_.state, world_.log).SaveSettingHashed("Misc", "DontAsk", "1");
  HaveUpdate(zendrix::testing::PeFile{{9, 0, 0, 1}}.Bytes());
  Start();
  EXPECT_EQ(world_.EndOf([&] { Seconds(901); }), 0);
  EXPECT_THAT(Offers(), IsEmpty());
  EXPECT_EQ(world_.platform.services.At("ZENDRIX").state, "Stopped");
  EXPECT_THAT(world_.platform.shell.installers, ::testing::SizeIs(1));
  world_.quiet.Take();
}

TEST_F(UpdateFlow, FailedStartLeavesTheAgentStoppedAndTheConsoleRunning) {
  settings::RegIni(world_.state, world_.log).SaveSettingHashed("Misc", "DontAsk", "1");
  HaveUpdate("#!/bin/sh\n");
  Start();
  world_.platform.shell.fail = platform::ErrorKind::kPermissionDenied;
  // The box stays open for longer than it is to the next check.
  Boxes().StayOpenFor(1000 * 1000);
  Seconds(901);
  EXPECT_EQ(Boxes().shown.size(), 1U);
  EXPECT_EQ(world_.platform.services.At("ZENDRIX").state, "Stopped");
  EXPECT_TRUE(Home().loaded());
  Append(Alert(20, "/opt/new"));
  Tick();
  EXPECT_EQ(Rows().front(), "K5 Intrusion") << "it goes on reading";
  EXPECT_EQ(world_.platform.services.At("ZENDRIX").state, "Stopped") << "nobody starts it again";
  world_.quiet.Take();
}

// The offer was open when the user quit.
TEST_F(UpdateFlow, OfferEndsWithTheConsole) {
  HaveUpdate(zendrix::testing::PeFile{{9, 0, 0, 1}}.Bytes());
  Start();
  Seconds(901);
  SayYes();
  EXPECT_EQ(world_.EndOf([&] { Home().mPopExit.clicked.Raise(); }), 0);
  EXPECT_FALSE(console_->update()->offer()->loaded());
  EXPECT_THAT(world_.platform.shell.installers, IsEmpty());
  world_.quiet.Take();
}

TEST_F(UpdateFlow, AdministratorEditionOffersNothing) {
  world_.state.ProductEdition = "Administrator";
  HaveUpdate(zendrix::testing::PeFile{{9, 0, 0, 1}}.Bytes());
  Start();
  Seconds(1000);
  EXPECT_THAT(Offers(), IsEmpty());
  EXPECT_EQ(console_->update(), nullptr);
}

}  // namespace
}  // namespace zendrix::flow
