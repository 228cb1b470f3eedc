#include "admin/file_commands.h"

#include <algorithm>

#include "frm_main_fixture.h"

namespace zendrix::admin {
namespace {

using platform::BoxAnswer;
using platform::ServiceMethod;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr char kOther[] = "/else/other.kvl";

class FileCommandsTest : public FrmMainFixture {
 protected:
  FileCommandsTest() { world_.platform.services.SetRunning("ZENDRIX"); }

  FileCommands& Files() { return form_->files; }
  platform::ScriptedFileDialogs& Dialogs() { return world_.platform.file_dialogs; }
  std::string Saved(const std::string& path = kOther) const { return world_.platform.files.Get(path); }
  std::ptrdiff_t SavedLines() const {
    const std::string bytes = Saved();
    return std::count(bytes.begin(), bytes.end(), '\n');
  }
  std::vector<ServiceMethod> Runs() const {
    std::vector<ServiceMethod> methods;
    for (const auto& [service, method] : world_.platform.services.runs) {
      EXPECT_EQ(service, "ZENDRIX");
      methods.push_back(method);
    }
    return methods;
  }
  void SayYes() { Boxes().Answer(BoxAnswer::kYes); }
  // What the panel Msg shows from now on, and when, in milliseconds from now.
  void ListenToMsg() {
    const std::int64_t start = world_.platform.clock.MonotonicMs();
    listening_ = form_->Msg.text.changed.Connect([this, start] {
      told_.push_back(std::to_string(world_.platform.clock.MonotonicMs() - start) + " " +
                      form_->Msg.text.Get());
    });
  }
  std::vector<std::string> EightLines() const {
    std::vector<std::string> lines;
    for (int i = 1; i <= 8; ++i) lines.push_back(Line(100 + i, "tcp port", "event " + std::to_string(i)));
    return lines;
  }

  std::vector<std::string> told_;
  widgets::Connection listening_;
};

// Open.

TEST_F(FileCommandsTest, OpenAsksForAFileThatIsThereAndLoadsIt) {
  OpenOn({Line(1, "system")});
  world_.platform.files.Put(kOther, Bytes({Line(5, "tcp port", "elsewhere")}));
  for (widgets::MenuItem* item : {&Files().MnFOpen, &Files().TbarOpen}) {
    form_->GridFilePath = Path();
    Dialogs().Choose(kOther);
    item->clicked.Raise();
    EXPECT_EQ(Dialogs().shown.back().filter, "kvl Files (*.kvl)|*.kvl");
    EXPECT_EQ(Dialogs().shown.back().filter_index, 2);
    EXPECT_FALSE(Dialogs().shown.back().saving);
    EXPECT_EQ(form_->GridFilePath, kOther);
    EXPECT_THAT(Column(kColWhole), ElementsAre("elsewhere"));
    EXPECT_EQ(form_->Msg.text.Get(), kOther);
  }
}

TEST_F(FileCommandsTest, CheckFollowsTheChosenFileAndNotTheAgents) {
  OpenOn({Line(1, "system")});
  world_.platform.files.Put(kOther, Bytes({Line(5, "tcp port")}));
  Dialogs().Choose(kOther);
  Files().MnFOpen.clicked.Raise();
  AppendLine(Line(2, "system"));
  Tick();
  EXPECT_THAT(IDs(), ElementsAre("1"));
  world_.platform.files.PutMore(kOther, Line(6, "tcp port") + "\r\n");
  Tick();
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
}

TEST_F(FileCommandsTest, OpenDialogThatIsCancelledChangesNothingAndTheCheckGoesOn) {
  OpenOn({Line(1, "system")});
  form_->EventList.Row = 1;
  Files().MnFOpen.clicked.Raise();
  EXPECT_EQ(form_->GridFilePath, Path());
  EXPECT_FALSE(Files().OpenBusy);
  EXPECT_EQ(form_->EventList.Row, 1) << "nothing was loaded anew";
  EXPECT_TRUE(form_->Timer1->Running());
}

TEST_F(FileCommandsTest, CheckRestsWhileADialogIsOpen) {
  OpenOn({Line(1, "system")});
  for (widgets::MenuItem* item : {&Files().MnFOpen, &Files().MnFSaveAs}) {
    const int before = form_->EventList.DataRows();
    Dialogs().while_open = [&] {
      EXPECT_EQ(Files().OpenBusy, item == &Files().MnFOpen);
      AppendLine(Line(2, "system"));
      Tick();
      EXPECT_EQ(form_->EventList.DataRows(), before);
    };
    item->clicked.Raise();
    Tick();
    EXPECT_EQ(form_->EventList.DataRows(), before + 1);
  }
}

TEST_F(FileCommandsTest, NoDialogOpensWhileALoadRuns) {
  OpenOn({Line(1, "system")});
  for (bool frmMain::*busy : {&frmMain::UpdateBusy, &frmMain::RefreshBusy}) {
    form_.get()->*busy = true;
    for (widgets::MenuItem* item :
         {&Files().MnFOpen, &Files().TbarOpen, &Files().MnFSaveAs, &Files().TbarSave})
      item->clicked.Raise();
    form_.get()->*busy = false;
  }
  EXPECT_THAT(Dialogs().shown, IsEmpty());
}

// Clicks that were on their way when the dialog opened.
TEST_F(FileCommandsTest, NoSecondCommandBeginsUnderAnOpenDialog) {
  OpenOn({Line(1, "system")});
  for (widgets::MenuItem* first : {&Files().MnFOpen, &Files().MnFSaveAs}) {
    Dialogs().shown.clear();
    Dialogs().while_open = [&] {
      for (widgets::MenuItem* item : {&Files().MnFOpen, &Files().MnFSaveAs, &Files().MnFDelete,
                                      &Files().TbarDisable, &form_->MnVRefresh, &form_->MnHAbout})
        item->clicked.Raise();
    };
    first->clicked.Raise();
    EXPECT_THAT(Dialogs().shown, SizeIs(1));
  }
  EXPECT_THAT(Runs(), IsEmpty());
  EXPECT_THAT(world_.host.shown, IsEmpty());
}

TEST_F(FileCommandsTest, FileThatIsGoneWhenItIsLoadedIsToldAndTheCheckGoesOn) {
  OpenOn({Line(1, "system")});
  Dialogs().Choose("/else/gone.kvl");
  Files().MnFOpen.clicked.Raise();
  EXPECT_THAT(Boxes().Texts(), ElementsAre("File /else/gone.kvl not found."));
  EXPECT_TRUE(form_->Timer1->Running());
  EXPECT_FALSE(Files().OpenBusy);
}

TEST_F(FileCommandsTest, EndOfTheProgramUnderADialogLoadsAndSavesNothing) {
  for (const bool save : {false, true}) {
    OpenOn({Line(1, "system")});
    Dialogs().while_open = [&] { form_->Unload(); };
    Dialogs().Choose(kOther);
    auto& item = save ? Files().MnFSaveAs : Files().MnFOpen;
    EXPECT_EQ(world_.EndOf([&] { item.clicked.Raise(); }), 0);
    EXPECT_EQ(form_->GridFilePath, Path());
    EXPECT_FALSE(world_.platform.files.Has(kOther));
  }
}

// Save As.

TEST_F(FileCommandsTest, WholeRowsFiveToSevenAreSavedRowSevenFirst) {
  OpenOn(EightLines());
  form_->EventList.Select(5, kColEventID, 7, kColDescription);
  Dialogs().Choose(kOther);
  Files().MnFSaveAs.clicked.Raise();
  EXPECT_EQ(Dialogs().shown.back().filter, "All Files (*.*)|*.*|kvl Files (*.kvl)|*.kvl");
  EXPECT_EQ(Dialogs().shown.back().filter_index, 2);
  EXPECT_TRUE(Dialogs().shown.back().saving);
  EXPECT_EQ(Saved(),
            "102,HOST,     Tcp Port,A,event 2\r\n"
            "103,HOST,     Tcp Port,A,event 3\r\n"
            "104,HOST,     Tcp Port,A,event 4\r\n");
}

TEST_F(FileCommandsTest, SelectionMadeUpwardSavesTheSameLines) {
  OpenOn(EightLines());
  form_->EventList.Select(7, kColEventID, 5, kColDescription);
  Dialogs().Choose(kOther);
  Files().TbarSave.clicked.Raise();
  const std::string upward = Saved();
  form_->EventList.Select(5, kColEventID, 7, kColDescription);
  Dialogs().Choose(kOther);
  Files().TbarSave.clicked.Raise();
  EXPECT_EQ(upward, Saved());
  EXPECT_EQ(SavedLines(), 3);
}

TEST_F(FileCommandsTest, OneSelectedCellSavesAllRows) {
  OpenOn(EightLines());
  form_->EventList.Row = 3;
  Dialogs().Choose(kOther);
  Files().MnFSaveAs.clicked.Raise();
  EXPECT_EQ(SavedLines(), 8);
  EXPECT_THAT(Saved(), ::testing::StartsWith("101,HOST,"));
}

TEST_F(FileCommandsTest, GridWithOnlyItsHeaderIsSavedAsAnEmptyFile) {
  Open();
  Dialogs().Choose(kOther);
  Files().MnFSaveAs.clicked.Raise();
  EXPECT_TRUE(world_.platform.files.Has(kOther));
  EXPECT_EQ(Saved(), "");
}

TEST_F(FileCommandsTest, SavedFileIsOpenedAgainWithEqualRows) {
  std::vector<std::string> lines = EightLines();
  lines.push_back("soon,H2,custom SENSOR,N,text that ends here");
  OpenOn(lines);
  std::vector<std::vector<std::string>> before;
  for (const int col : {kColHostname, kColMonitor, kColCode, kColWhole, kColTimeKey, kColDescription})
    before.push_back(Column(col));
  Dialogs().Choose(kOther);
  Files().MnFSaveAs.clicked.Raise();
  Dialogs().Choose(kOther);
  Files().MnFOpen.clicked.Raise();
  std::vector<std::vector<std::string>> after;
  for (const int col : {kColHostname, kColMonitor, kColCode, kColWhole, kColTimeKey, kColDescription})
    after.push_back(Column(col));
  EXPECT_EQ(after, before);
}

TEST_F(FileCommandsTest, RowsAreSavedInTheOrderInWhichTheyStand) {
  OpenOn({"1,beta,system,A,x", "2,alpha,system,A,y"});
  form_->EventList.header_clicked.Raise(kColHostname);  // descending: beta on top
  EXPECT_EQ(Files().SaveRows(1, 2, kOther), 2);
  EXPECT_EQ(Saved(), "2,alpha,     System,A,y\r\n1,beta,     System,A,x\r\n");
}

TEST_F(FileCommandsTest, RowsThatAreNotThereArePassedOver) {
  OpenOn({Line(1, "system"), Line(2, "system")});
  EXPECT_EQ(Files().SaveRows(-5, 900, kOther), 2);
  EXPECT_EQ(Files().SaveRows(3, 9, kOther), 0);
  EXPECT_EQ(Saved(), "");
  EXPECT_EQ(Files().SaveRows(0, 0, kOther), 0);
}

TEST_F(FileCommandsTest, FileThatCannotBeWrittenIsToldAndStaysAsItWas) {
  OpenOn(EightLines());
  world_.platform.files.Put(kOther, "old");
  world_.platform.files.FailNext(platform::FileOp::kWriteAll, kOther, platform::ErrorKind::kPermissionDenied);
  world_.quiet.Expect("'frmMain : MnFSaveAs_Click': 70: Permission denied");
  Dialogs().Choose(kOther);
  Files().MnFSaveAs.clicked.Raise();
  ASSERT_THAT(Boxes().shown, SizeIs(1));
  EXPECT_EQ(Boxes().shown[0].icon, platform::BoxIcon::kExclamation);
  EXPECT_EQ(Boxes().shown[0].title, "Korvessa Zendrix Administrator");
  EXPECT_EQ(Boxes().shown[0].text, "Unable to write the file /else/other.kvl.");
  EXPECT_EQ(Saved(), "old");
  EXPECT_TRUE(form_->Timer1->Running());
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
}

// The rows may have gone under the dialog.
TEST_F(FileCommandsTest, SelectionThatIsGoneWhenTheNameIsChosenSavesWhatIsLeft) {
  OpenOn(EightLines());
  form_->EventList.Select(5, kColEventID, 7, kColDescription);
  Dialogs().Choose(kOther);
  Dialogs().while_open = [&] {
    Put({Line(1, "system")});
    form_->ResetClick();
  };
  Files().MnFSaveAs.clicked.Raise();
  EXPECT_LE(SavedLines(), 1);
}

// Delete.

TEST_F(FileCommandsTest, DeleteStopsTheAgentTakesItsFileAwayAndStartsIt) {
  OpenOn({Line(1, "system")});
  ListenToMsg();
  SayYes();
  Files().MnFDelete.clicked.Raise();
  ASSERT_THAT(Boxes().shown, SizeIs(1));
  EXPECT_EQ(Boxes().shown[0].title, "Korvessa Zendrix Administrator");
  EXPECT_EQ(Boxes().shown[0].text,
            "This will delete your .kvl Monitoring File.\r\nAre you sure You want to do it?");
  EXPECT_EQ(Boxes().shown[0].icon, platform::BoxIcon::kExclamation);
  EXPECT_FALSE(world_.platform.files.Has(Path()));
  EXPECT_THAT(Runs(), ElementsAre(ServiceMethod::kStop, ServiceMethod::kStart));
  EXPECT_THAT(told_, ElementsAre("0 Stopping the Korvessa Service...",
                                 "1000 Starting the Korvessa Service...", "1500 " + Path()));
}

TEST_F(FileCommandsTest, DeletePutsTheReplaysCursorOnTheNewestRow) {
  OpenOn(EightLines());
  form_->EventList.row_clicked.Raise(5);
  SayYes();
  Files().MnFDelete.clicked.Raise();
  EXPECT_EQ(form_->replay.CurrentRow, 1);
}

TEST_F(FileCommandsTest, DeleteAnsweredNoOnlyEmptiesThePanel) {
  OpenOn({Line(1, "system")});
  Boxes().Answer(BoxAnswer::kNo);
  Files().MnFDelete.clicked.Raise();
  EXPECT_EQ(form_->Msg.text.Get(), "");
  EXPECT_TRUE(world_.platform.files.Has(Path()));
  EXPECT_THAT(Runs(), IsEmpty());
}

TEST_F(FileCommandsTest, DeleteWhileAnotherFileIsOpenTakesTheAgentsAndLeavesTheView) {
  OpenOn({Line(1, "system")});
  world_.platform.files.Put(kOther, Bytes({Line(5, "tcp port", "elsewhere")}));
  Dialogs().Choose(kOther);
  Files().MnFOpen.clicked.Raise();
  SayYes();
  Files().MnFDelete.clicked.Raise();
  Tick();
  EXPECT_FALSE(world_.platform.files.Has(Path()));
  EXPECT_TRUE(world_.platform.files.Has(kOther));
  EXPECT_EQ(form_->GridFilePath, kOther);
  EXPECT_THAT(Column(kColWhole), ElementsAre("elsewhere"));
}

TEST_F(FileCommandsTest, FileThatCannotBeDeletedIsToldForASecondAndTheStepsGoOn) {
  OpenOn({Line(1, "system")});
  world_.platform.files.FailNext(platform::FileOp::kRemove, Path(), platform::ErrorKind::kPermissionDenied);
  ListenToMsg();
  SayYes();
  Files().MnFDelete.clicked.Raise();
  EXPECT_THAT(told_, ElementsAre("0 Stopping the Korvessa Service...",
                                 "1000 Unable to delete the Monitoring file. Please try again later.",
                                 "2000 Starting the Korvessa Service...", "2500 " + Path()));
  EXPECT_THAT(Runs(), ElementsAre(ServiceMethod::kStop, ServiceMethod::kStart));
}

TEST_F(FileCommandsTest, OutcomeOfStopAndStartIsNotLookedAt) {
  OpenOn({Line(1, "system")});
  world_.platform.services.unavailable = true;
  SayYes();
  Files().MnFDelete.clicked.Raise();
  EXPECT_FALSE(world_.platform.files.Has(Path()));
  EXPECT_THAT(Boxes().shown, SizeIs(1)) << "only the question";
  world_.platform.services.unavailable = false;
  world_.platform.services.Script(ServiceMethod::kStop, 5);
  SayYes();
  Files().MnFDelete.clicked.Raise();
  EXPECT_THAT(Boxes().shown, SizeIs(2)) << "nothing but another question";
}

TEST_F(FileCommandsTest, GridReloadsWhenTheAgentHasBegunItsFileAnew) {
  std::vector<std::string> lines;
  for (int i = 0; i < 60; ++i) lines.push_back(Line(i, "system"));
  OpenOn(lines);
  SayYes();
  Files().MnFDelete.clicked.Raise();
  EXPECT_THAT(IDs(), SizeIs(60)) << "the grid itself is not touched";
  std::vector<std::string> counts;
  const auto link = form_->RecCnt.text.changed.Connect([&] { counts.push_back(form_->RecCnt.text); });
  lines.resize(55);
  Put(lines);
  Tick();
  EXPECT_THAT(IDs(), SizeIs(55));
  EXPECT_THAT(counts, ::testing::Contains("Event View is full, Reloading..."));
}

TEST_F(FileCommandsTest, SecondDeleteUnderTheQuestionOrAWaitDoesNothing) {
  OpenOn({Line(1, "system")});
  SayYes();
  Boxes().while_open = [&](const auto&) { Files().MnFDelete.clicked.Raise(); };
  const auto again = form_->Msg.text.changed.Connect([&] { Files().MnFDelete.clicked.Raise(); });
  const auto timer = world_.platform.timers.MakeTimer([&] { Files().MnFDelete.clicked.Raise(); });
  timer->Start(300);
  Files().MnFDelete.clicked.Raise();
  EXPECT_THAT(Boxes().shown, SizeIs(1));
  EXPECT_THAT(Runs(), SizeIs(2));
}

TEST_F(FileCommandsTest, FileIsNotMissedByATickWhileTheAgentRests) {
  OpenOn({Line(1, "system")});
  world_.platform.timers.Advance(kTimer1Ms - 1200);
  SayYes();
  Files().MnFDelete.clicked.Raise();
  EXPECT_THAT(Boxes().shown, SizeIs(1)) << "no message about a missing file";
  EXPECT_THAT(IDs(), ElementsAre("1"));
}

TEST_F(FileCommandsTest, ResizedPanelKeepsWhatDeleteTells) {
  OpenOn({Line(1, "system")});
  const auto timer = world_.platform.timers.MakeTimer([&] { form_->Msg.width = 5000; });
  timer->StartOnce(300);
  ListenToMsg();
  SayYes();
  Files().MnFDelete.clicked.Raise();
  EXPECT_THAT(told_, SizeIs(3));
  form_->Msg.width = 4000;
  EXPECT_THAT(form_->Msg.text.Get(), HasSubstr("KorvessaMonitoring.kvl"));
}

TEST_F(FileCommandsTest, DeleteWorksWhileALoadRuns) {
  OpenOn({Line(1, "system")});
  form_->UpdateBusy = true;
  SayYes();
  Files().MnFDelete.clicked.Raise();
  form_->UpdateBusy = false;
  EXPECT_FALSE(world_.platform.files.Has(Path()));
}

// The Agent stayed stopped when its console was ended in the middle.
TEST_F(FileCommandsTest, EndOfTheProgramWhileTheAgentRestsStartsItFirst) {
  OpenOn({Line(1, "system")});
  const auto timer = world_.platform.timers.MakeTimer([&] { form_->Unload(); });
  timer->StartOnce(300);
  SayYes();
  EXPECT_EQ(world_.EndOf([&] { Files().MnFDelete.clicked.Raise(); }), 0);
  EXPECT_THAT(Runs(), ElementsAre(ServiceMethod::kStop, ServiceMethod::kStart));
  EXPECT_TRUE(world_.platform.files.Has(Path()));
  EXPECT_THAT(Boxes().shown, SizeIs(1)) << "nothing is told at the end";
}

TEST_F(FileCommandsTest, WindowThatGoesWhileTheAgentRestsLeavesItsFileAndStartsItOnce) {
  Put({Line(1, "system")});
  widgets::Form window(world_.state.forms, "window");
  GridFrame frame({world_.state, world_.log, reg_ini_, screen_, {}}, window);
  FileCommands files(frame, {[] {}});
  const auto timer = world_.platform.timers.MakeTimer([&] { window.Unload(); });
  timer->StartOnce(300);
  SayYes();
  files.MnFDelete_Click();
  EXPECT_TRUE(world_.platform.files.Has(Path()));
  EXPECT_THAT(Runs(), ElementsAre(ServiceMethod::kStop));
  files.Form_Unload();
  files.Form_Unload();
  EXPECT_THAT(Runs(), ElementsAre(ServiceMethod::kStop, ServiceMethod::kStart));
}

TEST_F(FileCommandsTest, EndOfTheProgramUnderTheQuestionDeletesNothing) {
  OpenOn({Line(1, "system")});
  SayYes();
  Boxes().while_open = [&](const auto&) { form_->Unload(); };
  EXPECT_EQ(world_.EndOf([&] { Files().MnFDelete.clicked.Raise(); }), 0);
  EXPECT_TRUE(world_.platform.files.Has(Path()));
  EXPECT_THAT(Runs(), IsEmpty());
}

// Disable.

TEST_F(FileCommandsTest, DisableStopsTheAgentWhenItGoesDownAndStartsItWhenItComesUp) {
  OpenOn({Line(1, "system")});
  widgets::MenuItem& disable = Files().TbarDisable;
  EXPECT_TRUE(disable.checkable);
  EXPECT_EQ(disable.caption.Get(), "Disable Zendrix Monitoring");
  disable.clicked.Raise();
  EXPECT_TRUE(disable.checked);
  EXPECT_EQ(disable.caption.Get(), "Enable Zendrix Monitoring");
  EXPECT_THAT(Runs(), ElementsAre(ServiceMethod::kStop));
  disable.clicked.Raise();
  EXPECT_FALSE(disable.checked);
  EXPECT_EQ(disable.caption.Get(), "Disable Zendrix Monitoring");
  EXPECT_THAT(Runs(), ElementsAre(ServiceMethod::kStop, ServiceMethod::kStart));
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

TEST_F(FileCommandsTest, DisableNeitherAsksTheServiceNorLooksAtItsAnswer) {
  world_.platform.services.SetStopped("ZENDRIX");
  OpenOn({Line(1, "system")});
  EXPECT_FALSE(Files().TbarDisable.checked);
  Files().TbarDisable.clicked.Raise();
  EXPECT_TRUE(Files().TbarDisable.checked);
  world_.platform.services.unavailable = true;
  Files().TbarDisable.clicked.Raise();
  EXPECT_FALSE(Files().TbarDisable.checked);
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

TEST_F(FileCommandsTest, DisableIsIgnoredWhileALoadRuns) {
  OpenOn({Line(1, "system")});
  form_->RefreshBusy = true;
  Files().TbarDisable.clicked.Raise();
  form_->RefreshBusy = false;
  EXPECT_FALSE(Files().TbarDisable.checked);
  EXPECT_THAT(Runs(), IsEmpty());
}

}  // namespace
}  // namespace zendrix::admin
