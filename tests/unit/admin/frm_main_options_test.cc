#include "admin/frm_options.h"

#include <functional>
#include <utility>

#include "frm_main_fixture.h"

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

class FrmMainOptionsTest : public FrmMainFixture {
 protected:
  // The first reading stored its defaults; a start ends with a hash that fits.
  FrmMainOptionsTest() { reg_ini_.SaveSettingHashed("Misc", "TTour", "N"); }
  // Opens the dialog by the menu, and does this in it.
  void InDialog(std::function<void(frmOptions&)> act) {
    world_.host.WhileOpen(
        "frmOptions", [act = std::move(act)](widgets::Form& form) { act(dynamic_cast<frmOptions&>(form)); });
    form_->MnTOptions.clicked.Raise();
  }
  static void Click(frmOptions& options, const std::string& monitor) {
    const auto& entries = options.Monitors.entries();
    for (std::size_t i = 0; i < entries.size(); ++i)
      if (entries[i].text == monitor) return options.Monitors.Click(i);
    ADD_FAILURE() << "no monitor " << monitor;
  }
};

TEST_F(FrmMainOptionsTest, MenuAndToolbarOpenTheDialogModallyOverTheWindow) {
  OpenOn({Line(1, "system")});
  EXPECT_EQ(form_->MnTOptions.caption.Get(), "&Options...");
  EXPECT_EQ(form_->TbarOptions.name(), "Options");
  for (widgets::MenuItem* item : {&form_->MnTOptions, &form_->TbarOptions}) {
    world_.host.WhileOpen("frmOptions", [&](widgets::Form&) { EXPECT_FALSE(form_->enabled); });
    item->clicked.Raise();
    EXPECT_EQ(world_.host.shown.back(),
              (widgets::ScriptedFormHost::Shown{"frmOptions", "frmMain", false, true, true}));
  }
  EXPECT_TRUE(form_->enabled);
}

TEST_F(FrmMainOptionsTest, NothingOpensWhileALoadRunsOrAnotherWindowIsModal) {
  OpenOn({Line(1, "system")});
  for (bool frmMain::*busy : {&frmMain::UpdateBusy, &frmMain::RefreshBusy}) {
    form_.get()->*busy = true;
    form_->MnTOptions.clicked.Raise();
    form_->TbarOptions.clicked.Raise();
    form_.get()->*busy = false;
  }
  InDialog([&](frmOptions&) { form_->TbarOptions.clicked.Raise(); });
  EXPECT_THAT(world_.host.shown, SizeIs(1));
}

TEST_F(FrmMainOptionsTest, MonitorThatIsClearedLosesItsRows) {
  OpenOn({Line(1, "system"), Line(2, "tcp port"), Line(3, "system")});
  InDialog([](frmOptions& options) {
    Click(options, "Tcp Port");
    options.cmdOK.clicked.Raise();
  });
  EXPECT_THAT(IDs(), ElementsAre("3", "1"));
  EXPECT_EQ(Setting("Tcp Port"), "0");
}

TEST_F(FrmMainOptionsTest, ApplyLeavesTheGridAsItIsUntilItIsRefreshed) {
  OpenOn({Line(1, "system"), Line(2, "tcp port")});
  InDialog([this](frmOptions& options) {
    Click(options, "Tcp Port");
    options.cmdApply.clicked.Raise();
    EXPECT_THAT(IDs(), ElementsAre("2", "1"));
    options.cmdCancel.clicked.Raise();
  });
  EXPECT_THAT(IDs(), ElementsAre("2", "1"));
  form_->MnVRefresh.clicked.Raise();
  EXPECT_THAT(IDs(), ElementsAre("1"));
}

TEST_F(FrmMainOptionsTest, ColumnsFollowBehindTheDialogWhicheverWayItCloses) {
  OpenOn({Line(1, "system")});
  InDialog([this](frmOptions& options) {
    options.Cols.Click(1);
    options.cmdApply.clicked.Raise();
    EXPECT_GT(form_->EventList.column(kColHostname).width, 0);
  });
  EXPECT_EQ(form_->EventList.column(kColHostname).width, 0);
  InDialog([](frmOptions& options) {
    options.Cols.Click(1);
    options.cmdOK.clicked.Raise();
  });
  EXPECT_GT(form_->EventList.column(kColHostname).width, 0);
}

TEST_F(FrmMainOptionsTest, BehindTheDialogNewLinesAreThereTheCounterIsRightAndNoHeaderHasAnArrow) {
  OpenOn({Line(1, "system")});
  form_->EventList.header_clicked.Raise(kColHostname);
  std::vector<int> pointers;
  const auto link = screen_.MousePointer.changed.Connect([&] { pointers.push_back(screen_.MousePointer); });
  InDialog([this](frmOptions&) {
    AppendLine(Line(2, "system"));
    EXPECT_THAT(IDs(), ElementsAre("1"));
  });
  EXPECT_THAT(IDs(), UnorderedElementsAre("2", "1"));
  EXPECT_EQ(form_->RecCnt.text.Get(), "2 records");
  EXPECT_FALSE(form_->BackgroundUpdate);
  for (int i = 0; i < form_->EventList.Cols(); ++i)
    EXPECT_EQ(form_->EventList.column(i).arrow, widgets::SortArrow::kNone);
  ASSERT_FALSE(pointers.empty());
  EXPECT_EQ(pointers.front(), widgets::kPointerHourglass);
  EXPECT_EQ(screen_.MousePointer, widgets::kPointerDefault);
}

TEST_F(FrmMainOptionsTest, MonitorsThatTheGridHasMetAreOffered) {
  OpenOn({Line(1, "custom sensor")});
  InDialog([](frmOptions& options) {
    EXPECT_EQ(options.Monitors.Print(),
              "[x] System\n[x] Running Processes\n[x] Monitoring Agent\n[x] Tcp Port\n[x] Custom Sensor\n");
  });
}

TEST_F(FrmMainOptionsTest, EndOfTheProgramUnderTheDialogUpdatesNoGrid) {
  OpenOn({Line(1, "system")});
  EXPECT_EQ(world_.EndOf([&] { InDialog([this](frmOptions&) { form_->Unload(); }); }), 0);
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

// One load keeps every other out, that of a refresh too: the settings are saved, and the next refresh follows
// them.
TEST_F(FrmMainOptionsTest, OkInTheMiddleOfAPollSavesAndRefreshesNothing) {
  OpenOn({Line(1, "system"), Line(2, "tcp port")});
  InDialog([this](frmOptions& options) {
    Click(options, "Tcp Port");
    for (int i = 3; i < 100; ++i) AppendLine(Line(i, "tcp port"));
    bool waits = true;
    const auto link = form_->DynamicPictureBox.value.changed.Connect([&] {
      if (form_->DynamicPictureBox.value > 0 && std::exchange(waits, false)) options.cmdOK.clicked.Raise();
    });
    Tick();
    EXPECT_FALSE(waits);
    EXPECT_FALSE(options.loaded());
  });
  EXPECT_EQ(Setting("Tcp Port"), "0");
  EXPECT_FALSE(form_->LoadRuns());
  EXPECT_THAT(IDs(), SizeIs(99));
  form_->MnVRefresh.clicked.Raise();
  EXPECT_THAT(IDs(), ElementsAre("1"));
}

}  // namespace
}  // namespace zendrix::admin
