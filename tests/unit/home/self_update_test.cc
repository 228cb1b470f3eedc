#include "home/self_update.h"

#include "update_fixture.h"

namespace zendrix::home {
namespace {

using platform::ErrorKind;
using platform::FileOp;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;

class SelfUpdateTest : public UpdateFixture {
 protected:
  void HaveRunningVersion() {
    HaveVersion({core::kVersionMajor, core::kVersionMinor, 0, core::kVersionRevision});
  }
  void ExpectDeleted() {
    world_.quiet.Expect("'CheckUpdate': Version to install (" + RunningVersion() +
                        ") is currently running, deleting /opt/zendrix\\Zendrix Update.exe");
  }
  SelfUpdate update_{needs_};
};

TEST_F(SelfUpdateTest, WithoutAFileThereIsNothingToDo) {
  update_.CheckUpdate();
  EXPECT_THAT(world_.host.shown, IsEmpty());
  EXPECT_EQ(update_.offer(), nullptr);
}

TEST_F(SelfUpdateTest, AnInstalledConsoleLeavesNewVersionsToThePackageManagerAndSaysSoOnce) {
  world_.state.Installed = true;
  HaveVersion({9, 1, 0, 2});
  world_.state.settings.DontAsk = true;
  world_.quiet.Expect("'CheckUpdate': New versions of this program come with the system's package manager.");
  update_.CheckUpdate();
  update_.CheckUpdate();
  EXPECT_TRUE(FileIsThere());
  EXPECT_THAT(world_.host.shown, IsEmpty());
  EXPECT_THAT(Started(), IsEmpty());
  EXPECT_EQ(AgentState(), "Running");
}

TEST_F(SelfUpdateTest, FileOfTheRunningVersionIsDeletedWithoutAQuestion) {
  HaveRunningVersion();
  ExpectDeleted();
  update_.CheckUpdate();
  EXPECT_FALSE(FileIsThere());
  EXPECT_THAT(world_.host.shown, IsEmpty());
  EXPECT_THAT(Boxes().shown, IsEmpty());
  EXPECT_THAT(Started(), IsEmpty());
}

TEST_F(SelfUpdateTest, FileThatCannotBeDeletedIsToleratedAndTriedAgain) {
  HaveRunningVersion();
  world_.platform.files.FailNext(FileOp::kRemove, kInstaller, ErrorKind::kPermissionDenied);
  ExpectDeleted();
  update_.CheckUpdate();
  EXPECT_TRUE(FileIsThere());
  ExpectDeleted();
  update_.CheckUpdate();
  EXPECT_FALSE(FileIsThere());
}

TEST_F(SelfUpdateTest, OtherVersionIsOfferedAboveAllWindows) {
  HaveVersion({9, 1, 0, 2});
  world_.quiet.Expect("'CheckUpdate': New version available 9.1.0.2");
  update_.CheckUpdate();
  EXPECT_THAT(world_.host.shown,
              ElementsAre(widgets::ScriptedFormHost::Shown{"frmNewUpdate", "", true, true, false}));
  EXPECT_TRUE(update_.offer()->visible);
  EXPECT_TRUE(FileIsThere());
  EXPECT_EQ(AgentState(), "Running");
}

TEST_F(SelfUpdateTest, OlderVersionCountsAsNewToo) {
  HaveVersion({0, 0, 0, 1});
  world_.quiet.Expect("'CheckUpdate': New version available 0.0.0.1");
  update_.CheckUpdate();
  EXPECT_TRUE(update_.offer()->visible);
}

TEST_F(SelfUpdateTest, FileWithoutAVersionIsOfferedWithTheGeneralText) {
  HaveFile("no program");
  world_.quiet.Expect("'CheckUpdate': New version available ");
  update_.CheckUpdate();
  EXPECT_EQ(update_.offer()->lblMsg.caption.Get().substr(0, 59),
            "A new update for Zendrix is available for installation. Thi");
}

TEST_F(SelfUpdateTest, FileThatCannotBeReadIsOfferedToo) {
  HaveVersion({9, 1, 0, 2});
  world_.platform.files.FailNext(FileOp::kOpen, kInstaller, ErrorKind::kPermissionDenied, 2);
  world_.quiet.Expect("'CheckUpdate': New version available ");
  update_.CheckUpdate();
  EXPECT_TRUE(update_.offer()->visible);
}

TEST_F(SelfUpdateTest, OfferThatIsOpenIsNotMadeTwice) {
  HaveVersion({9, 1, 0, 2});
  update_.CheckUpdate();
  frmNewUpdate* const first = update_.offer();
  first->chkDontAsk.checked = false;
  update_.CheckUpdate();
  EXPECT_EQ(update_.offer(), first);
  EXPECT_FALSE(first->chkDontAsk.checked) << "the user's tick stays";
  world_.quiet.Take();
}

TEST_F(SelfUpdateTest, OfferComesAgainAfterItWasPostponed) {
  HaveVersion({9, 1, 0, 2});
  update_.CheckUpdate();
  update_.offer()->lblNo.clicked.Raise();
  ASSERT_FALSE(update_.offer()->loaded());
  HaveVersion({9, 1, 0, 3});
  update_.CheckUpdate();
  ASSERT_TRUE(update_.offer()->loaded());
  EXPECT_TRUE(update_.offer()->visible);
  EXPECT_EQ(update_.offer()->lblMsg.caption.Get().substr(0, 15), "Version 9.1.0.3");
  world_.quiet.Take();
}

// A mark that stayed behind would keep every later check from looking at the file.
TEST_F(SelfUpdateTest, OfferWhoseInstallerDidNotStartComesAgainAtTheNextCheckButNotUnderItsBox) {
  HaveVersion({9, 1, 0, 2});
  world_.quiet.Expect("'CheckUpdate': New version available 9.1.0.2");
  update_.CheckUpdate();
  update_.offer()->chkDontAsk.checked = false;
  world_.platform.shell.fail = ErrorKind::kNotFound;
  world_.quiet.Expect("'frmNewUpdate': About to install new version 9.1.0.2");
  world_.quiet.Expect("'frmNewUpdate': Unable to load Installer.");
  Boxes().while_open = [this](const auto&) { update_.CheckUpdate(); };
  update_.offer()->lblYes.clicked.Raise();
  ASSERT_FALSE(update_.offer()->loaded());
  EXPECT_EQ(world_.host.shown.size(), 1U);
  world_.quiet.Expect("'CheckUpdate': New version available 9.1.0.2");
  update_.CheckUpdate();
  EXPECT_TRUE(update_.offer()->loaded());
  EXPECT_EQ(world_.host.shown.size(), 2U);
}

class AutomaticUpdateTest : public SelfUpdateTest {
 protected:
  AutomaticUpdateTest() {
    misc_.Set(&core::Settings::DontAsk, true);
    HaveVersion({9, 1, 0, 2});
    world_.quiet.Expect("'CheckUpdate': New version available 9.1.0.2");
    world_.quiet.Expect("'CheckUpdate': About to automatically install new version 9.1.0.2");
  }
};

TEST_F(AutomaticUpdateTest, AgentIsStoppedTheInstallerStartedAndTheConsoleEnds) {
  world_.platform.shell.on_installer = [this] {
    EXPECT_EQ(AgentState(), "Stopped") << "before the installer starts";
    EXPECT_TRUE(main_.loaded());
  };
  update_.CheckUpdate();
  EXPECT_THAT(Started(), ElementsAre(Pair(kInstaller, kInstallerParameters)));
  EXPECT_FALSE(main_.loaded());
  EXPECT_THAT(world_.host.shown, IsEmpty());
  EXPECT_THAT(Boxes().shown, IsEmpty()) << "silently";
}

TEST_F(AutomaticUpdateTest, FailedStartIsToldAndLeavesTheAgentStoppedAndTheConsoleRunning) {
  world_.platform.shell.fail = ErrorKind::kPermissionDenied;
  world_.quiet.Expect("'frmNewUpdate': Unable to load Installer.");
  update_.CheckUpdate();
  ASSERT_THAT(Boxes().shown, ::testing::SizeIs(1));
  EXPECT_EQ(Boxes().shown[0].text, std::string("Unable to load Installer.\r\n") + kInstaller);
  EXPECT_EQ(Boxes().shown[0].title, "Korvessa Zendrix Home Edition");
  EXPECT_EQ(Boxes().shown[0].icon, platform::BoxIcon::kStop);
  EXPECT_EQ(AgentState(), "Stopped");
  EXPECT_TRUE(main_.loaded());
}

TEST_F(AutomaticUpdateTest, RunTimeErrorAtTheStartIsToldWithItsNumberAndThePath) {
  world_.platform.shell.on_installer = [] { core::Raise(core::kInvalidProcedureCall); };
  const std::string text =
      std::string("Unable to load Installer. Error 5: Invalid procedure call or argument. cmd: ") +
      kInstaller;
  world_.quiet.Expect("'frmNewUpdate': " + text);
  update_.CheckUpdate();
  EXPECT_THAT(Boxes().Texts(), ElementsAre(text + "\r\n" + kInstaller));
  EXPECT_TRUE(main_.loaded());
}

TEST_F(AutomaticUpdateTest, AgentThatCannotBeStoppedDoesNotKeepTheInstaller) {
  world_.platform.services.unavailable = true;
  update_.CheckUpdate();
  EXPECT_EQ(Started().size(), 1U);
  EXPECT_FALSE(main_.loaded());
}

// The box of the failure serves the event loop; the next check found the file again and stopped the Agent,
// and so on, one box over the other.
TEST_F(AutomaticUpdateTest, CheckUnderTheBoxOfAFailureDoesNothing) {
  world_.platform.shell.fail = ErrorKind::kNotFound;
  world_.quiet.Expect("'frmNewUpdate': Unable to load Installer.");
  Boxes().while_open = [this](const auto&) { update_.CheckUpdate(); };
  update_.CheckUpdate();
  EXPECT_EQ(Boxes().shown.size(), 1U);
  EXPECT_EQ(Started().size(), 1U);
}

TEST_F(AutomaticUpdateTest, FailedStartIsTriedAgainAtTheNextCheck) {
  world_.platform.shell.fail = ErrorKind::kNotFound;
  update_.CheckUpdate();
  world_.platform.shell.fail.reset();
  update_.CheckUpdate();
  EXPECT_EQ(Started().size(), 2U);
  EXPECT_FALSE(main_.loaded());
  world_.quiet.Take();
}

}  // namespace
}  // namespace zendrix::home
