// The frame of the window: its menus and toolbar, its panes, its way out.
#include "frm_main_fixture.h"

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr PaneRoom kRoom{15'000, 10'000, 600, 9'600};

class FrmMainFrameTest : public FrmMainFixture {
 protected:
  int Beeps() {
    beeping_ = screen_.beep.Connect([this] { ++beeps_; });
    return 0;
  }
  int beeps_ = 0;
  widgets::Connection beeping_;
};

TEST_F(FrmMainFrameTest, ToolbarsKeysStandInTheirOrder) {
  const std::vector<std::string> order = {"Open",  "Save",    "Copy",    "Paste",  "Find",    "Chart",
                                          "VLogs", "Refresh", "Options", "Filter", "Disable", "Play",
                                          "Stp",   "Prev",    "Back",    "Step",   "Nxt",     "Notable"};
  auto place = order.begin();
  for (const widgets::MenuItem* item : Open().Tbar) {
    place = std::find(place, order.end(), item->name());
    ASSERT_NE(place, order.end()) << item->name();
  }
}

TEST_F(FrmMainFrameTest, CopyAndPasteBeep) {
  OpenOn({Line(1, "system")});
  Beeps();
  form_->TbarCopy.clicked.Raise();
  form_->TbarPaste.clicked.Raise();
  EXPECT_EQ(beeps_, 2);
}

TEST_F(FrmMainFrameTest, ClickInTheToolbarIsIgnoredWhileALoadRuns) {
  OpenOn({Line(1, "system")});
  Beeps();
  for (bool frmMain::*busy : {&frmMain::UpdateBusy, &frmMain::RefreshBusy}) {
    form_.get()->*busy = true;
    for (widgets::MenuItem* item : form_->Tbar) item->clicked.Raise();
    form_.get()->*busy = false;
  }
  EXPECT_EQ(beeps_, 0);
  EXPECT_THAT(world_.host.shown, IsEmpty());
  EXPECT_THAT(world_.platform.file_dialogs.shown, IsEmpty());
  EXPECT_THAT(world_.platform.services.runs, IsEmpty());
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

TEST_F(FrmMainFrameTest, CommandsOfTheMenusHaveTheirKeys) {
  Open();
  std::vector<std::pair<std::string, std::string>> keys;
  for (const widgets::Menu* menu : form_->menus)
    for (const widgets::MenuItem* item : menu->items)
      if (!item->shortcut.empty()) keys.emplace_back(item->name(), item->shortcut);
  EXPECT_THAT(keys, ElementsAre(std::pair("MnFOpen", "Ctrl+O"), std::pair("MnFSaveAs", "Ctrl+S"),
                                std::pair("MnFExit", "Ctrl+Q"), std::pair("MnEFind", "Ctrl+F"),
                                std::pair("MnEFindN", "F3"), std::pair("MnVChart", "Ctrl+T"),
                                std::pair("MnVLogs", "Ctrl+L"), std::pair("MnVRefresh", "F5"),
                                std::pair("MnTQuery", "Ctrl+Shift+F")));
}

TEST_F(FrmMainFrameTest, KindsOfCommandsStandInGroups) {
  Open();
  std::vector<std::string> first;
  for (const widgets::Menu* menu : form_->menus)
    for (const widgets::MenuItem* item : menu->items)
      if (item->begins_group) first.push_back(item->name());
  EXPECT_THAT(first, ElementsAre("MnFExit"));
  first.clear();
  for (const widgets::MenuItem* item : form_->Tbar)
    if (item->begins_group) first.push_back(item->name());
  EXPECT_THAT(first, ElementsAre("Copy", "Chart", "Disable", "Play"));
}

TEST_F(FrmMainFrameTest, PanesAreLaidOutInTheRoomThatTheWindowHas) {
  Open();
  form_->Form_Resize(kRoom);
  EXPECT_EQ(form_->panes.Get(), LayOutPanes(kRoom, 6000, 90));
  EXPECT_EQ(form_->lblHDrag.Left, form_->panes.Get().lblHDrag.left);
  EXPECT_EQ(form_->lblHDrag.Width, form_->panes.Get().lblHDrag.width);
}

TEST_F(FrmMainFrameTest, MinimisedWindowIsNotLaidOutUntilItIsRestored) {
  Open();
  form_->Form_Resize(kRoom);
  const PanePlaces before = form_->panes;
  form_->state = widgets::WindowState::kMinimised;
  const PaneRoom smaller{5'000, 5'000, 600, 4'600};
  form_->Form_Resize(smaller);
  EXPECT_EQ(form_->panes.Get(), before);
  form_->mPopRestore.clicked.Raise();
  EXPECT_EQ(form_->panes.Get(), LayOutPanes(smaller, 6000, 90));
}

TEST_F(FrmMainFrameTest, DraggedSplitterMovesThePanesAndTheRatioFollows) {
  Open();
  form_->Form_Resize(kRoom);
  form_->lblHDrag.dragged.Raise(40 - 1'000);
  EXPECT_EQ(form_->lblHDrag.Top, 5'000);
  EXPECT_FLOAT_EQ(form_->SplitRatio, 0.5F);
  EXPECT_EQ(form_->panes.Get(), LayOutPanes(kRoom, 5'000, 90));
  form_->lblHDrag.dragged.Raise(40 + 6);
  EXPECT_EQ(form_->lblHDrag.Top, 5'000);
}

TEST_F(FrmMainFrameTest, SplitterDoesNotGoAboveThreeThousandTwipsFromTheTop) {
  Open();
  form_->Form_Resize(kRoom);
  form_->lblHDrag.dragged.Raise(40 - 3'001);
  EXPECT_EQ(form_->lblHDrag.Top, 6'000);
  form_->lblHDrag.dragged.Raise(40 - 3'000);
  EXPECT_EQ(form_->lblHDrag.Top, 3'000);
}

TEST_F(FrmMainFrameTest, RatioIsThatOfTheSavedSplitterInTheSavedWindow) {
  reg_ini_.SaveFormPlace("lblHDrag", {4500, 0, 90, 9000});
  reg_ini_.SaveFormPlace("frmMain", {0, 0, 600, 800});
  EXPECT_FLOAT_EQ(Open().SplitRatio, 4500.0F / (600 * 15));
  EXPECT_EQ(form_->lblHDrag.Top, 4500);
}

TEST_F(FrmMainFrameTest, SplitterStaysWhereItIsWhenTheWindowIsResized) {
  Open();
  form_->Form_Resize(kRoom);
  form_->Form_Resize({15'000, 20'000, 600, 19'600});
  EXPECT_EQ(form_->lblHDrag.Top, 6'000);
  EXPECT_FLOAT_EQ(form_->SplitRatio, 0) << "worked out at the start and when the bar is dragged";
}

TEST_F(FrmMainFrameTest, CloseBoxKeepsTheProcessAndTheTrayIcon) {
  Open();
  EXPECT_FALSE(form_->Unload(widgets::UnloadCause::kCloseBox));
  EXPECT_FALSE(form_->visible);
  EXPECT_TRUE(form_->tray.shown);
  EXPECT_TRUE(form_->loaded());
}

TEST_F(FrmMainFrameTest, CloseBoxOnADesktopWithoutATrayMinimises) {
  Open();
  form_->tray.hosted = [] { return false; };
  EXPECT_FALSE(form_->Unload(widgets::UnloadCause::kCloseBox));
  EXPECT_TRUE(form_->visible);
  EXPECT_EQ(form_->state.Get(), widgets::WindowState::kMinimised);
}

class Kept : public widgets::Form {
 public:
  using Form::Form;

 protected:
  bool QueryUnload(widgets::UnloadCause cause) override { return cause != widgets::UnloadCause::kCloseBox; }
};

TEST_F(FrmMainFrameTest, FindAndFilterWindowsGoWithTheWindowAndNotWithItsCloseBox) {
  Open();
  Kept find(world_.state.forms, "frmFind"), filters(world_.state.forms, "frmFilters");
  form_->Unload(widgets::UnloadCause::kCloseBox);
  EXPECT_TRUE(find.loaded() && filters.loaded());
  int open = -1;
  const auto gone = form_->visible.changed.Connect([&] { open = find.loaded() + filters.loaded(); });
  form_->visible = true;
  EXPECT_EQ(open, 2);
  EXPECT_EQ(world_.EndOf([&] { form_->Unload(); }), 0);
  EXPECT_EQ(open, 0) << "before the window itself";
}

TEST_F(FrmMainFrameTest, AboutOpensWhileALoadRunsAndNotUnderAnotherWindow) {
  Open();
  world_.host.WhileOpen("frmAbout", [&](widgets::Form&) { form_->MnHAbout.clicked.Raise(); });
  form_->UpdateBusy = true;
  form_->MnHAbout.clicked.Raise();
  EXPECT_THAT(world_.host.shown, SizeIs(1));
}

}  // namespace
}  // namespace zendrix::admin
