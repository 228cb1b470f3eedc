// The Administrator's window under everything that the event loop may let in: polls under a question, clicks
// in the middle of a load, rows that arrive while nobody looks.
#include "flow_fixture.h"

namespace zendrix::flow {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class AdminFlow : public FlowTest {
 protected:
  AdminFlow() {
    world_.state.ProductEdition = "Administrator";
    // With everything in its place, as behind a first start.
    settings::RegIni reg_ini(world_.state, world_.log);
    reg_ini.RegisterMonitors({"System", "Tcp Port", "Monitoring Agent"});
    reg_ini.ReadRegInfo();
    reg_ini.SaveSettingHashed("Misc", "TTour", "Y");
  }

  static std::string Row(int second, const std::string& monitor = "system", const std::string& code = "A",
                         const std::string& text = "text") {
    return std::to_string(kStart + second) + ",HOST," + monitor + "," + code + "," + text + "\r\n";
  }
  static std::string Rows(int count, int from = 0) {
    std::string bytes;
    for (int i = 0; i < count; ++i) bytes += Row(from + i);
    return bytes;
  }
  admin::frmMain& Main() { return *console_->administrator(); }
  int DataRows() { return Main().EventList.DataRows(); }
  // Every command of the window that a user could press now.
  void PressEverything() {
    for (widgets::MenuItem* item : Main().Tbar) item->clicked.Raise();
    for (const widgets::Menu* menu : Main().menus)
      for (widgets::MenuItem* item : menu->items)
        if (item != &Main().MnFExit && item != &Main().files.MnFDelete && item != &Main().MnHAbout)
          item->clicked.Raise();
    Main().EventList.header_clicked.Raise(admin::kColHostname);
  }
  // Runs this once, in the middle of the next load.
  void InTheMiddleOfALoad(std::function<void()> act) {
    link_ = Main().DynamicPictureBox.value.changed.Connect([this, act = std::move(act)] {
      if (Main().DynamicPictureBox.value == 0 || std::exchange(done_, true)) return;
      world_.platform.timers.Post(act);
    });
  }

  widgets::Connection link_;
  bool done_ = false;
};

TEST_F(AdminFlow, RowsArriveUnderAQuestionAndTheWindowTakesThem) {
  Write(Rows(3));
  Start();
  Boxes().Answer(platform::BoxAnswer::kNo);
  Boxes().while_open = [&](const auto&) {
    Append(Row(10, "tcp port"));
    Tick();
    EXPECT_EQ(DataRows(), 4);
    PressEverything();
  };
  Main().MnFExit.clicked.Raise();
  EXPECT_TRUE(Main().loaded());
  EXPECT_TRUE(Main().enabled);
  EXPECT_THAT(Boxes().shown, SizeIs(1));
  EXPECT_EQ(world_.host.shown.size(), 1U) << "no window but the main one";
  EXPECT_EQ(Main().RecCnt.text.Get(), "4 records");
}

TEST_F(AdminFlow, FileShrinksUnderAQuestionAboutDeletingIt) {
  Write(Rows(60));
  Start();
  SayYes();
  Boxes().while_open = [&](const auto&) {
    Write(Rows(55));
    Tick();
    EXPECT_EQ(DataRows(), 55);
  };
  Main().files.MnFDelete.clicked.Raise();
  EXPECT_FALSE(world_.platform.files.Has(Path()));
  EXPECT_EQ(DataRows(), 55);
  EXPECT_EQ(Main().Msg.text.Get(), Path());
}

TEST_F(AdminFlow, PollsGoOnWhileTheAgentRestsAndItsNewFileIsRead) {
  Write(Rows(60));
  Start();
  SayYes();
  const auto agent = world_.platform.timers.MakeTimer([&] {
    if (world_.platform.services.runs.size() == 2 && !world_.platform.files.Has(Path())) Write(Row(900));
  });
  agent->Start(100);
  Main().files.MnFDelete.clicked.Raise();
  Tick();
  EXPECT_EQ(DataRows(), 1);
  EXPECT_EQ(Main().RecCnt.text.Get(), "1 record");
  EXPECT_THAT(Boxes().shown, SizeIs(1));
}

TEST_F(AdminFlow, NothingPressedInTheMiddleOfALoadDoesAnything) {
  Write(Rows(300));
  Start();
  bool pressed = false;
  InTheMiddleOfALoad([&] {
    pressed = true;
    EXPECT_TRUE(Main().LoadRuns());
    PressEverything();
    Tick();
  });
  Main().MnVRefresh.clicked.Raise();
  ASSERT_TRUE(pressed);
  EXPECT_EQ(DataRows(), 300);
  EXPECT_EQ(Main().sort.SortColumn, 0);
  EXPECT_EQ(world_.host.shown.size(), 1U);
  EXPECT_THAT(world_.platform.file_dialogs.shown, IsEmpty());
  EXPECT_THAT(world_.platform.services.runs, IsEmpty());
  EXPECT_FALSE(Main().LoadRuns());
  EXPECT_TRUE(Main().Timer1->Running());
}

// The second load in the middle of the first left rows twice.
TEST_F(AdminFlow, WindowThatComesForwardInTheMiddleOfTheFirstLoadTakesNoCommand) {
  Write(Rows(300));
  bool pressed = false;
  world_.host.on_show = [&](widgets::Form& form) {
    if (form.name() != "frmMain") return;
    InTheMiddleOfALoad([&] {
      pressed = true;
      console_->ComeForward();
      EXPECT_TRUE(Main().visible);
      PressEverything();
    });
  };
  Start();
  ASSERT_TRUE(pressed);
  EXPECT_EQ(DataRows(), 300);
  EXPECT_EQ(world_.host.shown.size(), 1U);
  EXPECT_FALSE(Main().LoadRuns());
}

TEST_F(AdminFlow, PollWithManyRowsIsNoDifferent) {
  Write(Rows(10));
  Start();
  bool pressed = false;
  InTheMiddleOfALoad([&] {
    pressed = true;
    PressEverything();
    Seconds(10);
  });
  Append(Rows(300, 10));
  Tick();
  ASSERT_TRUE(pressed);
  EXPECT_EQ(DataRows(), 310);
  EXPECT_EQ(Main().GridLineCount, 310);
  EXPECT_EQ(world_.host.shown.size(), 1U);
}

TEST_F(AdminFlow, WindowIsClosedAndBroughtBackInTheMiddleOfALoad) {
  Write(Rows(300));
  Start();
  InTheMiddleOfALoad([&] {
    Main().Unload(widgets::UnloadCause::kCloseBox);
    EXPECT_FALSE(Main().visible);
    Main().tray.mouse.Raise(widgets::kTrayLeftUp);
  });
  Main().MnVRefresh.clicked.Raise();
  EXPECT_TRUE(Main().visible);
  EXPECT_EQ(DataRows(), 300);
}

TEST_F(AdminFlow, ProgramIsEndedInTheMiddleOfALoad) {
  Write(Rows(300));
  Start();
  InTheMiddleOfALoad([&] { console_->End(); });
  EXPECT_EQ(world_.EndOf([&] { Main().MnVRefresh.clicked.Raise(); }), 0);
  EXPECT_FALSE(Main().loaded());
}

TEST_F(AdminFlow, DeleteInTheMiddleOfALoadLeavesTheRowsThatWereRead) {
  Write(Rows(300));
  Start();
  SayYes();
  InTheMiddleOfALoad([&] { Main().files.MnFDelete.clicked.Raise(); });
  Main().MnVRefresh.clicked.Raise();
  EXPECT_FALSE(world_.platform.files.Has(Path()));
  EXPECT_EQ(DataRows(), 300);
  EXPECT_TRUE(Main().Timer1->Running());
  Tick();
  EXPECT_THAT(Boxes().shown, SizeIs(1)) << "a file that is gone is no news for a poll";
}

TEST_F(AdminFlow, RowsArriveWhileTheWindowIsHiddenAndTheIconFlashesUntilItIsSeen) {
  Write(Rows(3));
  Start();
  Main().Unload(widgets::UnloadCause::kCloseBox);
  Append(Row(10, "tcp port", "N"));
  Tick();
  Seconds(5);
  EXPECT_EQ(Main().tray.icon.Get(), widgets::TrayIcon::kForm) << "not of one of the four monitors";
  Append(Row(11, "monitoring agent", "N"));
  Tick();
  std::vector<widgets::TrayIcon> seen;
  for (int second = 0; second < 4; ++second) {
    Seconds(1);
    seen.push_back(Main().tray.icon);
  }
  EXPECT_THAT(seen, Contains(widgets::TrayIcon::kNotableSystemTrayIcon));
  EXPECT_THAT(seen, Contains(widgets::TrayIcon::kForm));
  Main().tray.mouse.Raise(widgets::kTrayLeftUp);
  Tick();
  seen.clear();
  for (int second = 0; second < 4; ++second) {
    Seconds(1);
    seen.push_back(Main().tray.icon);
  }
  EXPECT_THAT(seen, Each(widgets::TrayIcon::kForm));
  EXPECT_EQ(DataRows(), 5);
  EXPECT_EQ(Main().replay.CurrentRow, 1) << "the last notable event";
}

TEST_F(AdminFlow, CursorAndItsHighlightMoveWithTheirEventsWhileRowsArrive) {
  Write(Rows(5));
  Start();
  Main().EventList.row_clicked.Raise(3);
  ASSERT_EQ(Main().replay.CurrentRow, 3);
  Append(Rows(2, 20));
  Tick();
  EXPECT_EQ(Main().replay.CurrentRow, 5);
}

TEST_F(AdminFlow, OpenedFileIsFollowedAndTheAgentsFileComesBackWithTheNextOpen) {
  Write(Rows(3));
  world_.platform.files.Put("/else/old.kvl", Rows(7, 100));
  Start();
  world_.platform.file_dialogs.Choose("/else/old.kvl");
  Main().files.MnFOpen.clicked.Raise();
  EXPECT_EQ(DataRows(), 7);
  Append(Rows(2, 50));
  Tick();
  EXPECT_EQ(DataRows(), 7);
  world_.platform.file_dialogs.Choose(Path());
  Main().files.MnFOpen.clicked.Raise();
  EXPECT_EQ(DataRows(), 5);
}

}  // namespace
}  // namespace zendrix::flow
