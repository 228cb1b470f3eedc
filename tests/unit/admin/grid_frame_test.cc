#include "admin/grid_frame.h"

#include "core/splash.h"
#include "frm_main_fixture.h"

namespace zendrix::admin {
namespace {

class GridFrameTest : public FrmMainFixture {};

TEST_F(GridFrameTest, ProgressIsAPercentageAndWholeWhereNothingIsToBeDone) {
  Open();
  form_->ServeMessages(1, 3);
  EXPECT_EQ(form_->DynamicPictureBox.value.Get(), 33);
  form_->ServeMessages(5, 4);
  EXPECT_EQ(form_->DynamicPictureBox.value.Get(), 100);
  form_->DynamicPictureBox.Show(0);
  form_->ServeMessages(0, 0);
  EXPECT_EQ(form_->DynamicPictureBox.value.Get(), 100);
}

TEST_F(GridFrameTest, SplashShowsTheProgressAsLongAsItIsOpen) {
  Open();
  core::frmSplash splash(world_.state.forms, "x");
  form_->ServeMessages(1, 2);
  EXPECT_EQ(splash.PBar.value.Get(), 50);
}

TEST_F(GridFrameTest, HeadingThatHasRoomBesideItsArrowIsLeftWhole) {
  OpenOn({Line(1, "system")});
  form_->EventList.SetColWidth(kColHostname, 8 * kTwipsPerCharacter + 300);
  form_->ShowSortArrow(form_->EventList, kColHostname, true);
  EXPECT_EQ(form_->EventList.column(kColHostname).heading, "Hostname");
  form_->EventList.SetColWidth(kColHostname, 8 * kTwipsPerCharacter + 299);
  form_->ShowSortArrow(form_->EventList, kColHostname, true);
  EXPECT_EQ(form_->EventList.column(kColHostname).heading, "Host...");
}

TEST_F(GridFrameTest, OnlyRowIsSelectedBehindASortAndTheHeaderNever) {
  OpenOn({Line(1, "system")});
  const auto sort = [this] {
    form_->EventList.Select(1, kColHostname, 1, kColDescription);
    form_->SortGrid(form_->EventList, kColHostname);
  };
  sort();
  EXPECT_TRUE(form_->EventList.OneCellSelected());
  OpenOn({});
  form_->EventList.Row = 0;
  form_->SortGrid(form_->EventList, kColHostname);
  EXPECT_EQ(form_->EventList.Row.Get(), 0);
}

}  // namespace
}  // namespace zendrix::admin
