#include "settings_fixture.h"

namespace zendrix::settings {
namespace {

using widgets::WindowState;

class WindowPlaceTest : public SettingsTest {
 protected:
  WindowPlaceTest() { MoveTo(-60, 1200, 6000, 9000); }

  void MoveTo(int top, int left, int height, int width) {
    form_.top = top;
    form_.left = left;
    form_.height = height;
    form_.width = width;
  }
  Place PlaceNow() const {
    return {form_.top.Get(), form_.left.Get(), form_.height.Get(), form_.width.Get()};
  }

  widgets::Form form_{state_.forms, "frmMain"};
};

TEST_F(WindowPlaceTest, SaveFormPlaceWritesTheFourPropertiesUnderTheFormsName) {
  reg_ini_.SaveFormPlace(form_);
  EXPECT_EQ(Ini(), "[frmMain Settings]\r\nTop=-60\r\nLeft=1200\r\nHeight=6000\r\nWidth=9000\r\n");
  EXPECT_TRUE(Verifies());
}

TEST_F(WindowPlaceTest, LoadFormPlaceSetsThePropertiesFoundAndPassesOverOtherKeys) {
  PutIni("[frmMain Settings]\r\nTop=5\r\nCaption=7\r\nwidth=8.6 pixels\r\nWState=2\r\n");
  reg_ini_.LoadFormPlace(form_);
  EXPECT_EQ(PlaceNow(), (Place{5, 1200, 6000, 9}));
  EXPECT_EQ(form_.state.Get(), WindowState::kNormal);
}

TEST_F(WindowPlaceTest, LoadFormPlaceReadsATextWithoutDigitsAsZero) {
  PutIni("[frmMain Settings]\r\nTop=high\r\nLeft=\r\n");
  reg_ini_.LoadFormPlace(form_);
  EXPECT_EQ(PlaceNow(), (Place{0, 0, 6000, 9000}));
}

TEST_F(WindowPlaceTest, WithoutASectionNothingChanges) {
  reg_ini_.LoadFormPlace(form_);
  EXPECT_EQ(PlaceNow(), (Place{-60, 1200, 6000, 9000}));
}

TEST_F(WindowPlaceTest, ANumberTooLargeForAPlaceReachesTheCallerAsOverflow) {
  PutIni("[frmMain Settings]\r\nTop=1e30\r\n");
  try {
    reg_ini_.LoadFormPlace(form_);
    FAIL() << "no error";
  } catch (const core::RunTimeError& error) {
    EXPECT_EQ(error.number, core::kOverflow);
  }
}

TEST_F(WindowPlaceTest, AControlsPlaceIsSavedAndLoadedByItsName) {
  reg_ini_.SaveFormPlace("lblHDrag", {3000, 0, 40, 9000});
  EXPECT_EQ(Ini(), "[lblHDrag Settings]\r\nTop=3000\r\nLeft=0\r\nHeight=40\r\nWidth=9000\r\n");
  Place place;
  reg_ini_.LoadFormPlace("lblHDrag", place);
  EXPECT_EQ(place, (Place{3000, 0, 40, 9000}));
}

TEST_F(WindowPlaceTest, SaveWindowStateWritesStateAndPlace) {
  reg_ini_.SaveWindowState(form_);
  EXPECT_EQ(Ini(), "[frmMain Settings]\r\nWState=0\r\nTop=-60\r\nLeft=1200\r\nHeight=6000\r\nWidth=9000\r\n");
  EXPECT_TRUE(Verifies());
}

TEST_F(WindowPlaceTest, SaveWindowStateOnAMinimisedFormWritesNothingAndTheLastPlaceRemains) {
  reg_ini_.SaveWindowState(form_);
  const std::string saved = Ini();
  form_.state = WindowState::kMinimised;
  MoveTo(-32000, -32000, 10, 20);
  reg_ini_.SaveWindowState(form_);
  EXPECT_EQ(Ini(), saved);
}

TEST_F(WindowPlaceTest, AMaximisedFormIsMaximisedAgainAndItsPlaceLeftAlone) {
  PutIni("[frmMain Settings]\r\nWState=2\r\nTop=1\r\nLeft=2\r\nHeight=3\r\nWidth=4\r\n");
  reg_ini_.LoadWindowState(form_);
  EXPECT_EQ(form_.state.Get(), WindowState::kMaximised);
  EXPECT_EQ(PlaceNow(), (Place{-60, 1200, 6000, 9000}));
}

TEST_F(WindowPlaceTest, AnyOtherStateIsTreatedAsNormal) {
  for (const char* state :
       {"WState=0\r\n", "WState=1\r\n", "WState=7\r\n", "WState=x\r\n", "WState=\r\n", ""}) {
    MoveTo(0, 0, 0, 0);
    PutIni(std::string("[frmMain Settings]\r\n") + state + "Top=1\r\nLeft=2\r\nHeight=3\r\nWidth=4\r\n");
    reg_ini_.LoadWindowState(form_);
    EXPECT_EQ(form_.state.Get(), WindowState::kNormal) << state;
    EXPECT_EQ(PlaceNow(), (Place{1, 2, 3, 4})) << state;
  }
}

TEST_F(WindowPlaceTest, WhatWasSavedComesBack) {
  reg_ini_.SaveWindowState(form_);
  MoveTo(0, 0, 0, 0);
  reg_ini_.LoadWindowState(form_);
  EXPECT_EQ(PlaceNow(), (Place{-60, 1200, 6000, 9000}));
}

TEST_F(WindowPlaceTest, AfterARestartColumns567HaveWidthZeroWhateverTheyHad) {
  reg_ini_.SaveColWidths("EventList", {10, 11, 12, 13, 14, 15, 16, 17, 18, 19});
  std::vector<int> widths(10, 1);
  EXPECT_TRUE(reg_ini_.LoadColWidths("EventList", widths));
  EXPECT_EQ(widths, (std::vector<int>{10, 11, 12, 13, 14, 0, 0, 0, 18, 19}));
  EXPECT_TRUE(Verifies());
}

TEST_F(WindowPlaceTest, ColumnWidthsStandUnderTheGridsNameByIndex) {
  reg_ini_.SaveColWidths("EventList", {10, 11});
  EXPECT_EQ(Ini(), "[EventList Colwidths]\r\n0=10\r\n1=11\r\n5=0\r\n6=0\r\n7=0\r\n");
}

TEST_F(WindowPlaceTest, ColumnWidthsAreReadByThePositionOfThePair) {
  PutIni("[EVENTLIST COLWIDTHS]\r\n9=10\r\nx=11\r\n0=12\r\n1=13\r\n");
  std::vector<int> widths(3, 1);
  EXPECT_TRUE(reg_ini_.LoadColWidths("EventList", widths));
  EXPECT_EQ(widths, (std::vector<int>{10, 11, 12}));
}

TEST_F(WindowPlaceTest, WidthsBeyondTheGridsColumnsAreNotRead) {
  PutIni("[EventList ColWidths]\r\n0=10\r\n1=11\r\n2=wide\r\n");
  std::vector<int> widths(2, 1);
  EXPECT_TRUE(reg_ini_.LoadColWidths("EventList", widths));
  EXPECT_EQ(widths, (std::vector<int>{10, 11}));
}

TEST_F(WindowPlaceTest, ColumnsBeyondTheWidthsKeepTheirs) {
  PutIni("[EventList ColWidths]\r\n0=10\r\n");
  std::vector<int> widths(3, 1);
  EXPECT_TRUE(reg_ini_.LoadColWidths("EventList", widths));
  EXPECT_EQ(widths, (std::vector<int>{10, 1, 1}));
}

TEST_F(WindowPlaceTest, WithoutASectionOfWidthsNothingChanges) {
  PutIni("[Other ColWidths]\r\n0=10\r\n");
  std::vector<int> widths(3, 1);
  EXPECT_FALSE(reg_ini_.LoadColWidths("EventList", widths));
  EXPECT_EQ(widths, (std::vector<int>{1, 1, 1}));
}

TEST_F(WindowPlaceTest, AWidthThatIsNoNumberReachesTheCallerAsTypeMismatch) {
  PutIni("[EventList ColWidths]\r\n0=wide\r\n");
  std::vector<int> widths(3, 1);
  try {
    reg_ini_.LoadColWidths("EventList", widths);
    FAIL() << "no error";
  } catch (const core::RunTimeError& error) {
    EXPECT_EQ(error.number, core::kTypeMismatch);
  }
}

}  // namespace
}  // namespace zendrix::settings
