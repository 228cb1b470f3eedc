#include "admin/frm_filters.h"

#include <gmock/gmock.h>

#include "core/date_calendar.h"
#include "support/console_world.h"

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Entry = widgets::ComboBox::Entry;

class FrmFiltersTest : public ::testing::Test {
 protected:
  FrmFiltersTest() {
    for (const char* host : {"HOST-A", "", "   ", "HOST-B"}) hosts_.SetItemData(host, host);
    for (const char* monitor : {"System", "Aggregation", "     Tcp Port", "Nonsense"})
      monitors_.SetItemData(monitor, monitor);
    for (const char* change : {"A", "R", "N", "B", "Z"}) changes_.SetItemData(change, change);
    form_.Load();
    screen_.beep.ConnectForever([this] { acts_.push_back("beep"); });
  }
  FiltersNeeds Needs() {
    return {world_.state,
            screen_,
            hosts_,
            monitors_,
            changes_,
            [this] { acts_.push_back("apply"); },
            [this] { acts_.push_back("reset items"); },
            [this] { acts_.push_back("restore"); }};
  }

  zendrix::testing::ConsoleWorld world_;
  widgets::Screen screen_;
  store::CUList hosts_, monitors_, changes_;
  std::vector<std::string> acts_;
  frmFilters form_{Needs()};
};

TEST_F(FrmFiltersTest, BeginsWithoutCriteriaAndCannotBeApplied) {
  EXPECT_FALSE(form_.SelQry());
  EXPECT_FALSE(form_.Apply.enabled);
  EXPECT_EQ(form_.Apply.caption.Get(), "Filter");
  EXPECT_EQ(form_.Apply.tip.Get(), "Show Only Filtered Events");
  for (const auto* list : {&form_.HostCombo, &form_.MonitorCombo, &form_.ChangeCombo})
    EXPECT_THAT(list->entries(), IsEmpty()) << "lists are filled when they open";
  form_.Apply.clicked.Raise();
  EXPECT_THAT(acts_, IsEmpty()) << "the button is out of use";
}

TEST_F(FrmFiltersTest, OpensInTheMiddleOfTheScreenUnderItsTitle) {
  frmFilters form(Needs());
  int centred = 0;
  const auto link = form.centre.Connect([&] { ++centred; });
  form.Load();
  EXPECT_EQ(centred, 1);
  EXPECT_EQ(form.title.Get(), "Filter Events");
}

TEST_F(FrmFiltersTest, ListsShowWhatTheGridHasMetWhenTheyOpen) {
  form_.HostCombo.Open();
  EXPECT_THAT(form_.HostCombo.entries(), ElementsAre(Entry{"HOST-A"}, Entry{"HOST-B"}));
  form_.MonitorCombo.Open();
  EXPECT_THAT(form_.MonitorCombo.entries(), ElementsAre(Entry{"System", 2}, Entry{"Aggregation", 28},
                                                        Entry{"Tcp Port", 11}, Entry{"Nonsense", 30}));
  form_.ChangeCombo.Open();
  EXPECT_THAT(form_.ChangeCombo.entries(),
              ElementsAre(Entry{"A", 1}, Entry{"R", 2}, Entry{"N", 3}, Entry{"B", 4}, Entry{"Z", 33}));
  hosts_.SetItemData("HOST-C", "HOST-C");
  EXPECT_EQ(form_.HostCombo.entries().size(), 2u);
  form_.HostCombo.Open();
  EXPECT_EQ(form_.HostCombo.entries().size(), 3u);
}

TEST_F(FrmFiltersTest, EachCriterionMakesItApplicable) {
  const std::vector<std::function<void(frmFilters&)>> acts = {
      [](frmFilters& form) { form.HostCombo.OpenAndChoose("HOST-B"); },
      [](frmFilters& form) { form.MonitorCombo.OpenAndChoose("System"); },
      [](frmFilters& form) { form.ChangeCombo.OpenAndChoose("N"); },
      [](frmFilters& form) { form.Desc.Edit("x"); },
      [](frmFilters& form) { form.FromDate.Begin(); },
      [](frmFilters& form) { form.ToDate.Pick(7); }};
  for (std::size_t i = 0; i < acts.size(); ++i) {
    frmFilters form(Needs());
    form.Load();
    EXPECT_FALSE(form.Apply.enabled || form.SelQry());
    const unsigned number = form.CriteriaNumber();
    acts[i](form);
    EXPECT_NE(form.CriteriaNumber(), number) << i;
    EXPECT_TRUE(form.Apply.enabled) << i;
    EXPECT_TRUE(form.SelQry()) << i;
    acts_.clear();
    form.Apply.clicked.Raise();
    EXPECT_THAT(acts_, ElementsAre("apply")) << i;
    EXPECT_EQ(form.state.Get(), widgets::WindowState::kMinimised);
    EXPECT_TRUE(form.loaded());
  }
}

TEST_F(FrmFiltersTest, ApplyWithNoCriterionBeeps) {
  form_.Desc.Edit("x");
  form_.Desc.Edit("");
  EXPECT_TRUE(form_.Apply.enabled);
  form_.Apply.clicked.Raise();
  EXPECT_THAT(acts_, ElementsAre("beep"));
  EXPECT_EQ(form_.state.Get(), widgets::WindowState::kNormal);
}

TEST_F(FrmFiltersTest, NothingIsAppliedUnderAnOpenBox) {
  form_.Desc.Edit("x");
  form_.enabled = false;
  form_.Apply.clicked.Raise();
  EXPECT_THAT(acts_, IsEmpty());
}

TEST_F(FrmFiltersTest, RowIsCheckedAndAMissingDateCompletedInTheDialogToo) {
  const std::int64_t moment = core::WallSeconds({21, 11, 2026, 9, 5, 7});
  form_.ToDate.Pick(moment);
  EXPECT_TRUE(form_.CheckQuery({"11/21/2026 09:05:07 AM", "h", "m", "A", "d"}));
  EXPECT_EQ(form_.FromDate.moment.Get(), moment);
  EXPECT_FALSE(form_.CheckQuery({"11/21/2026 09:05:08 AM", "h", "m", "A", "d"}));
  form_.ToDate.Empty();
  form_.FromDate.Pick(moment + 1);
  EXPECT_TRUE(form_.CheckQuery({"11/21/2026 09:05:08 AM", "h", "m", "A", "d"}));
  EXPECT_EQ(form_.ToDate.moment.Get(), moment + 1);
}

TEST_F(FrmFiltersTest, AllCriteriaGoIntoTheQuery) {
  form_.HostCombo.OpenAndChoose("HOST-B");
  form_.MonitorCombo.OpenAndChoose("Tcp Port");
  form_.ChangeCombo.OpenAndChoose("R");
  form_.Desc.Edit("a*b");
  form_.FromDate.Pick(5);
  form_.ToDate.Pick(9);
  EXPECT_EQ(form_.Criteria(), (FilterCriteria{"HOST-B", "Tcp Port", "R", "a*b", 5, 9}));
  form_.ResetFilters();
  EXPECT_EQ(form_.Criteria(), FilterCriteria{});
  EXPECT_TRUE(form_.loaded());
}

TEST_F(FrmFiltersTest, FirstHostOfTheListIsACriterionToo) {
  form_.HostCombo.OpenAndChoose("HOST-A");
  ASSERT_EQ(form_.HostCombo.index(), 0);
  EXPECT_EQ(form_.Criteria(), FilterCriteria{.host = "HOST-A"});
}

TEST_F(FrmFiltersTest, PickersShowTheUsersShortDateAndTimeAndBeginNow) {
  platform::LocaleInfo& locale = world_.platform.locale.info;
  locale.short_date = "dd.MM.yyyy";
  locale.time = "HH:mm:ss";
  world_.platform.clock.SetUtc(1'795'251'907);
  world_.platform.family.offset_seconds = 3600;
  frmFilters form(Needs());
  form.Load();
  EXPECT_EQ(form.FromDate.picture.Get(), "dd.MM.yyyy HH:mm:ss");
  EXPECT_EQ(form.ToDate.picture.Get(), "dd.MM.yyyy HH:mm:ss");
  form.ToDate.Begin();
  EXPECT_EQ(form.ToDate.moment.Get(), 1'795'255'507);
}

TEST_F(FrmFiltersTest, ClosingInAnyWayClearsItAndEndsTheFilter) {
  const std::vector<std::function<void(frmFilters&)>> ways = {
      [](frmFilters& form) { form.ResetCommand.clicked.Raise(); },
      [](frmFilters& form) { form.Unload(widgets::UnloadCause::kCloseBox); },
      [](frmFilters& form) { form.Unload(widgets::UnloadCause::kCode); }};
  for (const auto& close : ways) {
    frmFilters form(Needs());
    form.Load();
    form.Desc.Edit("x");
    acts_.clear();
    close(form);
    EXPECT_FALSE(form.loaded());
    EXPECT_FALSE(form.SelQry());
    EXPECT_THAT(acts_, ElementsAre("reset items", "restore"));
  }
}

TEST_F(FrmFiltersTest, PatternHasAThousandCharactersAtMost) {
  form_.Desc.Edit(std::string(1001, '?'));
  EXPECT_EQ(form_.Desc.text.Get(), std::string(1000, '?'));
}

}  // namespace
}  // namespace zendrix::admin
