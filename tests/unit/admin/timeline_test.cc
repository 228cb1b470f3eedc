#include "admin/timeline.h"

#include "admin/timeline_charts.h"
#include "frm_main_fixture.h"

namespace zendrix::admin {
namespace {

using ::testing::Contains;
using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Pair;

constexpr int kTopTime = 1795225500;  // 2026-11-21 01:45:00 UTC

class TimelineTest : public FrmMainFixture {
 protected:
  TimelineTest() {
    reg_ini_.SaveSettingHashed("Tline", "Nslots", "3");
    reg_ini_.ReadRegInfo();
  }
  const std::vector<std::string> span_ = {Line(kTopTime - 180, "system"), Line(kTopTime - 179, "system"),
                                          Line(kTopTime - 70, "tcp port"), Line(kTopTime, "system")};
  Timeline& timeline() { return form_->timeline; }
  std::vector<std::optional<std::int32_t>> Small(std::size_t series) {
    return timeline().Chrt.table.Get().series[series].values;
  }
  frmChart* Large() { return dynamic_cast<frmChart*>(world_.state.forms.Find("frmChart")); }
  std::vector<std::optional<std::int32_t>> LargeValues(std::size_t series) {
    return Large()->LargeChart.table.Get().series[series].values;
  }
  void Save(const std::string& key, const std::string& value) {
    reg_ini_.SaveSettingHashed("Tline", key, value);
    reg_ini_.ReadRegInfo();
  }
};

TEST_F(TimelineTest, LoadDrawsTheSmallChart) {
  OpenOn(span_);
  EXPECT_EQ(timeline().chrtLabel.caption.Get(), "Time (Minutes)");
  EXPECT_EQ(timeline().Chrt.tip.Get(), "Click to Enlarge");
  EXPECT_TRUE(timeline().Chrt.clickable);
  EXPECT_THAT(timeline().Chrt.table.Get().labels, ElementsAre("\"3\"", "\"2\"", "\"1\""));
  EXPECT_EQ(timeline().Chrt.table.Get().series[0].name, "System");
  EXPECT_THAT(Small(0), ElementsAre(0, 0, 1));
  EXPECT_THAT(Small(3), ElementsAre(0, 1, 0));
}

TEST_F(TimelineTest, TotalsBeginWithTheStateAtTheFarEnd) {
  Save("TCHart", "T");
  OpenOn({Line(kTopTime - 500, "system", "** Start baseline **", "N"), Line(kTopTime - 500, "system", "one"),
          Line(kTopTime - 500, "system", "two"), Line(kTopTime - 500, "system", "** End baseline **", "N"),
          Line(kTopTime - 179, "system", "one", "R"), Line(kTopTime - 70, "system", "three"),
          Line(kTopTime, "tcp port")});
  EXPECT_THAT(Small(0), ElementsAre(1, 2, 2));
  EXPECT_THAT(Small(3), ElementsAre(0, 0, 1));
}

TEST_F(TimelineTest, PollCountsAnew) {
  OpenOn(span_);
  AppendLine(Line(kTopTime + 1, "system"));
  Tick();
  EXPECT_THAT(Small(0), ElementsAre(0, 0, 2));
}

TEST_F(TimelineTest, FileThatShrankIsCountedAnew) {
  OpenOn(span_);
  Put({Line(kTopTime, "tcp port"), Line(kTopTime, "tcp port")});
  Tick();
  EXPECT_THAT(Small(0), Each(0));
  EXPECT_THAT(Small(3), ElementsAre(0, 0, 2));
}

TEST_F(TimelineTest, FullGridIsCounted) {
  capacity_ = 2;
  Boxes().Answer(platform::BoxAnswer::kOk);
  OpenOn(span_);
  EXPECT_THAT(Boxes().shown.back().text, HasSubstr("The Event View grid is full."));
  EXPECT_THAT(Small(0), ElementsAre(0, 0, 2));
}

TEST_F(TimelineTest, MissingFileLeavesEveryMonitorAtZero) {
  OpenOn(span_);
  world_.platform.files.Remove(Path()).ok();
  Boxes().Answer(platform::BoxAnswer::kOk);
  form_->MnVRefresh.clicked.Raise();
  for (std::size_t i = 0; i < 4; ++i) EXPECT_THAT(Small(i), Each(0));
}

TEST_F(TimelineTest, MonitorsThatAreNotInTheSettingsAreSwitchedOn) {
  OpenOn(span_);
  world_.state.settings.MonitorStates.clear();
  form_->GridMonitorList.SetItemData("new one", "New One");
  timeline().FillMiniChart();
  EXPECT_THAT(world_.state.settings.MonitorStates, Contains(Pair("New One", "1")));
  EXPECT_EQ(timeline().time_slots().SlotCounts.size(), 6u);
}

TEST_F(TimelineTest, MonitorThatIsSwitchedOffStaysSo) {
  reg_ini_.SaveSettingHashed("Monitors", "Tcp Port", "0");
  reg_ini_.ReadRegInfo();
  OpenOn(span_);
  EXPECT_EQ(Setting("Tcp Port"), "0");
  EXPECT_EQ(timeline().Chrt.table.Get().series.size(), 3u);
}

TEST_F(TimelineTest, CountReadsTheSettingsAgain) {
  OpenOn(span_);
  reg_ini_.SaveSettingHashed("Tline", "Nslots", "2");
  timeline().FillMiniChart();
  EXPECT_EQ(timeline().time_slots().SlotLabels.size(), 2u);
}

// One line in the log for each poll would fill it.
TEST_F(TimelineTest, MoreNewMonitorsThanAreStoredAreToldOnce) {
  OpenOn(span_);
  for (std::size_t i = 0; i <= settings::kMostNewMonitors; ++i)
    form_->GridMonitorList.SetItemData("x" + std::to_string(i), "X" + std::to_string(i));
  form_->GridMonitorList.SetItemData("system", "System");
  timeline().FillMiniChart();
  EXPECT_EQ(world_.state.settings.MonitorStates.size(), 4u);
}

TEST_F(TimelineTest, AsManyNewMonitorsAsAreStoredAreSwitchedOnAtOnce) {
  OpenOn(span_);
  for (std::size_t i = 0; i < settings::kMostNewMonitors; ++i)
    form_->GridMonitorList.SetItemData("x" + std::to_string(i), "X" + std::to_string(i));
  timeline().FillMiniChart();
  EXPECT_THAT(world_.platform.files.Get(reg_ini_.IniPath()), HasSubstr("X0=1\r\n"));
}

TEST_F(TimelineTest, WithoutMonitorsInTheSettingsTheChartsStayAsTheyAre) {
  OpenOn(span_);
  timeline().MnVChart.clicked.Raise();
  const std::string caption = Large()->title;
  world_.state.settings.MonitorStates.clear();
  world_.state.settings.TSlots = 2;
  timeline().DrawMiniChart();
  EXPECT_EQ(Large()->FillCharts(), 0);
  EXPECT_EQ(timeline().Chrt.table.Get().series.size(), 4u);
  EXPECT_EQ(timeline().chrtLabel.caption.Get(), "Time (Minutes)");
  EXPECT_EQ(Large()->title.Get(), caption);
}

TEST_F(TimelineTest, TimelineViewOpensBesideTheWindowFromMenuToolbarAndSmallChart) {
  using Shown = widgets::ScriptedFormHost::Shown;
  OpenOn(span_);
  timeline().MnVChart.clicked.Raise();
  EXPECT_THAT(world_.host.shown, ElementsAre(Shown{"frmChart", "frmMain", false, true, false}));
  EXPECT_TRUE(form_->enabled);
  frmChart* const first = Large();
  int forward = 0;
  const auto front = first->bring_forward.Connect([&] { ++forward; });
  timeline().TbarChart.clicked.Raise();
  timeline().Chrt.clicked.Raise();
  EXPECT_EQ(Large(), first);
  EXPECT_EQ(forward, 2);
  first->Unload(widgets::UnloadCause::kCloseBox);
  EXPECT_EQ(Large(), nullptr);
  timeline().Chrt.clicked.Raise();
  EXPECT_NE(Large(), nullptr);
}

TEST_F(TimelineTest, TimelineViewDoesNotOpenWhileALoadRunsOrABoxIsOpen) {
  OpenOn(span_);
  const auto click_all = [&] {
    for (auto* clicked :
         {&timeline().MnVChart.clicked, &timeline().TbarChart.clicked, &timeline().Chrt.clicked})
      clicked->Raise();
  };
  for (bool* busy : {&form_->UpdateBusy, &form_->RefreshBusy}) {
    *busy = true;
    click_all();
    *busy = false;
  }
  form_->enabled = false;
  click_all();
  EXPECT_THAT(world_.host.shown, IsEmpty());
}

TEST_F(TimelineTest, TimelineViewShowsMomentsAndNamesItsUnitAndKind) {
  OpenOn(span_);
  timeline().MnVChart.clicked.Raise();
  EXPECT_EQ(Large()->title.Get(), "Events x Minutes");
  EXPECT_EQ(Large()->LargeChart.axis_title.Get(), "Time (Minutes) / number of events in each time slot");
  EXPECT_TRUE(Large()->LargeChart.legend);
  EXPECT_THAT(Large()->LargeChart.table.Get().labels, ElementsAre(" ", " ", "01:45 AM"));
  EXPECT_THAT(LargeValues(0), ElementsAre(0, 0, 1));
  EXPECT_EQ(Large()->FillCharts(), 4);
  Save("TSlots", "2");
  Save("TCHart", "T");
  Tick();
  EXPECT_EQ(Large()->title.Get(), "Events x Hours");
  EXPECT_EQ(Large()->LargeChart.axis_title.Get(), "Time (Hours) / total events across time");
}

TEST_F(TimelineTest, TimelineViewThatWasNeverDrawnHasATitleToo) {
  OpenOn(span_);
  world_.state.settings.MonitorStates.clear();
  timeline().MnVChart.clicked.Raise();
  EXPECT_EQ(Large()->title.Get(), "Timeline View");
}

TEST_F(TimelineTest, OpenTimelineViewIsDrawnAgainAtEveryTick) {
  OpenOn(span_);
  timeline().MnVChart.clicked.Raise();
  Large()->LargeChart.table = widgets::ChartTable{};
  Tick();
  EXPECT_THAT(LargeValues(0), ElementsAre(0, 0, 1)) << "nothing has changed in the file";
  AppendLine(Line(kTopTime + 1, "system"));
  Tick();
  EXPECT_THAT(LargeValues(0), ElementsAre(0, 0, 2));
  Large()->Unload(widgets::UnloadCause::kCloseBox);
  Tick();
}

TEST_F(TimelineTest, TimelineViewGoesWithTheWindow) {
  OpenOn(span_);
  timeline().MnVChart.clicked.Raise();
  EXPECT_EQ(world_.EndOf([&] { form_->Unload(); }), 0);
  EXPECT_EQ(Large(), nullptr);
}

}  // namespace
}  // namespace zendrix::admin
