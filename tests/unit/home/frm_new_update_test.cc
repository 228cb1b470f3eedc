#include "home/frm_new_update.h"

#include "update_fixture.h"

namespace zendrix::home {
namespace {

using platform::ErrorKind;
using platform::FileOp;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::Pair;
using widgets::UnloadCause;

constexpr char kRest[] =
    "This update may contain security and bug fixes, in addition to new functionality. "
    "For this reason it is recommended you upgrade.";

class NewUpdateTest : public UpdateFixture {
 protected:
  frmNewUpdate& Open() {
    form_ = std::make_unique<frmNewUpdate>(needs_);
    world_.state.host().Show(*form_);
    // What the window shows whenever it is told to paint itself.
    form_->repaint.ConnectForever(
        [this] { painted_.push_back(form_->lblMsg.caption.Get() + "|" + form_->lblMsg2.caption.Get()); });
    return *form_;
  }
  void ExpectStart() { world_.quiet.Expect("'frmNewUpdate': About to install new version 9.1.0.2"); }

  std::unique_ptr<frmNewUpdate> form_;
  std::vector<std::string> painted_;
};

TEST_F(NewUpdateTest, OpensTickedAndNamesTheVersion) {
  HaveVersion({9, 1, 0, 2});
  Open();
  EXPECT_TRUE(form_->chkDontAsk.checked);
  EXPECT_EQ(form_->lblMsg.caption.Get(),
            std::string("Version 9.1.0.2 is now available for installation. ") + kRest);
  EXPECT_THAT(
      form_->lblMsg2.caption.Get(),
      ::testing::StartsWith("Click 'Install now' to install this upgrade now, or 'Postpone' to install "
                            "later. You will be reminded"));
  EXPECT_EQ(form_->lblYes.caption.Get(), "Install now");
  EXPECT_EQ(form_->lblNo.caption.Get(), "Postpone");
  EXPECT_EQ(form_->chkDontAsk.caption.Get(), "next time, install automatically");
  EXPECT_EQ(form_->title.Get(), "Korvessa Zendrix Home Edition");
}

TEST_F(NewUpdateTest, NoVersionAndAVersionOfZerosAreNotNamed) {
  for (const std::string& bytes : {std::string("x"), zendrix::testing::PeFile{{0, 0, 0, 0}}.Bytes()}) {
    HaveFile(bytes);
    Open();
    EXPECT_EQ(form_->lblMsg.caption.Get(),
              std::string("A new update for Zendrix is available for installation. ") + kRest);
    form_.reset();
  }
}

TEST_F(NewUpdateTest, PostponeStoresNothingAndClosesTheWindow) {
  HaveVersion({9, 1, 0, 2});
  Open();
  form_->lblNo.clicked.Raise();
  EXPECT_FALSE(form_->loaded());
  EXPECT_FALSE(world_.state.settings.DontAsk);
  EXPECT_EQ(Saved("DontAsk"), "0");
  EXPECT_THAT(Started(), IsEmpty());
  EXPECT_EQ(AgentState(), "Running");
}

TEST_F(NewUpdateTest, CloseBoxPostponesToo) {
  HaveVersion({9, 1, 0, 2});
  Open();
  EXPECT_TRUE(form_->Unload(UnloadCause::kCloseBox));
  EXPECT_EQ(Saved("DontAsk"), "0");
}

TEST_F(NewUpdateTest, YesStoresTheTickStopsTheAgentStartsTheInstallerAndEnds) {
  HaveVersion({9, 1, 0, 2});
  Open();
  ExpectStart();
  world_.platform.shell.on_installer = [this] { EXPECT_EQ(AgentState(), "Stopped"); };
  form_->lblYes.clicked.Raise();
  EXPECT_TRUE(world_.state.settings.DontAsk);
  EXPECT_EQ(Saved("DontAsk"), "1");
  EXPECT_THAT(Started(), ElementsAre(Pair(kInstaller, kInstallerParameters)));
  EXPECT_THAT(painted_, ElementsAre("Wait a moment please. Zendrix is preparing to install.|",
                                    "Starting the Installer.|", "Closing Korvessa Zendrix Home Edition.|"));
  EXPECT_FALSE(main_.loaded());
  EXPECT_FALSE(form_->loaded());
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

TEST_F(NewUpdateTest, YesWithoutTheTickStoresThatToo) {
  HaveVersion({9, 1, 0, 2});
  misc_.Set(&core::Settings::DontAsk, true);
  Open();
  form_->chkDontAsk.checked = false;
  ExpectStart();
  form_->lblYes.clicked.Raise();
  EXPECT_EQ(Saved("DontAsk"), "0");
  EXPECT_FALSE(world_.state.settings.DontAsk);
}

TEST_F(NewUpdateTest, FailedStartClosesTheWindowAndTheConsoleGoesOnWithTheAgentStopped) {
  HaveVersion({9, 1, 0, 2});
  Open();
  ExpectStart();
  world_.platform.shell.fail = ErrorKind::kPermissionDenied;
  world_.quiet.Expect("'frmNewUpdate': Unable to load Installer.");
  Boxes().while_open = [this](const auto&) { EXPECT_TRUE(form_->loaded()) << "told over the window"; };
  form_->lblYes.clicked.Raise();
  EXPECT_THAT(Boxes().Texts(), ElementsAre(std::string("Unable to load Installer.\r\n") + kInstaller));
  EXPECT_FALSE(form_->loaded());
  EXPECT_TRUE(main_.loaded());
  EXPECT_EQ(AgentState(), "Stopped");
}

TEST_F(NewUpdateTest, TickThatCannotBeSavedDoesNotKeepTheInstaller) {
  HaveVersion({9, 1, 0, 2});
  Open();
  world_.platform.files.FailNext(FileOp::kWriteAll, "*", ErrorKind::kNoSpace, platform::MemoryFiles::kAlways);
  form_->lblYes.clicked.Raise();
  world_.quiet.Take();
  EXPECT_EQ(Saved("DontAsk"), "0");
  EXPECT_EQ(Started().size(), 1U);
}

// A second click and the close box came in while the box of the failure was open.
TEST_F(NewUpdateTest, NothingElseCountsWhileTheInstallerIsBeingStarted) {
  HaveVersion({9, 1, 0, 2});
  Open();
  ExpectStart();
  world_.platform.shell.fail = ErrorKind::kOther;
  world_.quiet.Expect("'frmNewUpdate': Unable to load Installer.");
  Boxes().while_open = [this](const auto&) {
    EXPECT_TRUE(form_->Installing());
    EXPECT_FALSE(form_->lblYes.enabled || form_->lblNo.enabled);
    form_->lblYes.clicked.Raise();
    form_->lblNo.clicked.Raise();
    EXPECT_FALSE(form_->Unload(UnloadCause::kCloseBox));
    EXPECT_TRUE(form_->loaded());
  };
  form_->lblYes.clicked.Raise();
  EXPECT_EQ(Started().size(), 1U);
  EXPECT_EQ(Boxes().shown.size(), 1U);
  EXPECT_FALSE(form_->loaded());
}

TEST_F(NewUpdateTest, EndOfTheConsoleIsNotRefused) {
  HaveVersion({9, 1, 0, 2});
  Open();
  ExpectStart();
  world_.platform.shell.on_installer = [this] {
    EXPECT_TRUE(form_->Unload(UnloadCause::kCode));
    EXPECT_FALSE(form_->loaded());
  };
  form_->lblYes.clicked.Raise();
  EXPECT_FALSE(main_.loaded());
}

TEST_F(NewUpdateTest, ClickInAWindowThatHasGoneStartsNothing) {
  HaveVersion({9, 1, 0, 2});
  Open();
  form_->Unload();
  form_->lblYes_Click();
  EXPECT_THAT(Started(), IsEmpty());
}

}  // namespace
}  // namespace zendrix::home
