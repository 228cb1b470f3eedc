#include "home/frm_quarantine.h"

#include "support/console_world.h"

namespace zendrix::home {
namespace {

using platform::BoxAnswer;
using platform::BoxIcon;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class QuarantineWindowTest : public ::testing::Test {
 protected:
  static platform::QuarantineEntry Entry(const std::string& name, const std::string& path,
                                         std::uint64_t size = 7, const std::string& alert = "1795225502") {
    return {name, path, size, "cafe" + name, 1795225800, 0, alert};
  }
  QuarantineWindowTest() {
    Family().quarantine_entries = {Entry("b", "/home/u/two", 2048, ""), Entry("a", "/home/u/one")};
  }
  frmQuarantine& Open() {
    world_.host.Show(window_);
    return window_;
  }
  platform::MemoryFamily& Family() { return world_.platform.family; }
  platform::ScriptedBoxes& Boxes() { return world_.platform.message_boxes; }
  void Select(const std::string& name) {
    const auto slot = window_.lvQuarantine.Find(name);
    ASSERT_TRUE(slot.has_value());
    window_.lvQuarantine.Click(*slot);
  }
  void Seconds(int seconds) { world_.platform.timers.Advance(seconds * 1000LL); }

  zendrix::testing::ConsoleWorld world_;
  frmQuarantine window_{world_.state};
};

TEST_F(QuarantineWindowTest, EntriesAreListedNewestFirstWithAllThatIsKnown) {
  Open();
  EXPECT_EQ(window_.title.Get(), "Quarantine");
  EXPECT_EQ(
      window_.lblAbout.caption.Get(),
      "Files that Block has put away. They can do no harm here. Restore puts a file back where it was.");
  EXPECT_EQ(window_.lvQuarantine.Print(),
            "/home/u/two | 11/21/2026 01:50:00 AM |  | 2 KB | cafeb\n"
            "/home/u/one | 11/21/2026 01:50:00 AM | 11/21/2026 01:45:02 AM | 7 bytes | cafea\n");
  EXPECT_EQ(window_.lblEntry.caption.Get(), "/home/u/two\r\nSHA-256: cafeb");
  EXPECT_TRUE(window_.qRestore.enabled);
}

TEST_F(QuarantineWindowTest, SelectedEntryIsToldInFull) {
  Open();
  Select("a");
  EXPECT_EQ(window_.lblEntry.caption.Get(), "/home/u/one\r\nSHA-256: cafea");
}

TEST_F(QuarantineWindowTest, SizesAreBegunUnits) {
  Family().quarantine_entries = {Entry("1", "/x", 1),       Entry("2", "/x", 1023),
                                 Entry("3", "/x", 1024),    Entry("4", "/x", 1025),
                                 Entry("5", "/x", 1048576), Entry("6", "/x", 1048577)};
  Open();
  std::vector<std::string> sizes;
  for (std::size_t i = 0; i < 6; ++i) sizes.push_back(window_.lvQuarantine.at(i).sub_items[2].text);
  EXPECT_THAT(sizes, ElementsAre("1 byte", "1023 bytes", "1 KB", "2 KB", "1 MB", "2 MB"));
}

TEST_F(QuarantineWindowTest, WhatIsNoMomentStandsAsItIsOrNotAtAll) {
  Family().quarantine_entries = {Entry("1", "/x", 1, "<b>x</b>"), Entry("2", "/x", 1, "99999999999")};
  Family().quarantine_entries[1].when = -1;
  Open();
  EXPECT_EQ(window_.lvQuarantine.at(0).sub_items[1].text, "<b>x</b>");
  EXPECT_EQ(window_.lvQuarantine.at(1).sub_items[0].text, "");
  EXPECT_EQ(window_.lvQuarantine.at(1).sub_items[1].text, "");
}

TEST_F(QuarantineWindowTest, FirstAndLastMomentThatCanBeToldAreTold) {
  Family().quarantine_entries = {Entry("1", "/x", 1, "2147483647"), Entry("2", "/x", 1, "2147483648")};
  Family().quarantine_entries[0].when = 0;
  Open();
  EXPECT_EQ(window_.lvQuarantine.at(0).sub_items[0].text, "01/01/1970 12:00:00 AM");
  EXPECT_EQ(window_.lvQuarantine.at(0).sub_items[1].text, "01/19/2038 03:14:07 AM");
  EXPECT_EQ(window_.lvQuarantine.at(1).sub_items[1].text, "");
}

TEST_F(QuarantineWindowTest, PathIsShownInTheProgramsOwnText) {
  Family().quarantine_entries = {Entry("1", "/t\xC3\xB6ol")};
  Open();
  EXPECT_EQ(window_.lvQuarantine.at(0).text, "/t\xF6ol");
}

TEST_F(QuarantineWindowTest, EmptyQuarantineSaysSo) {
  Family().quarantine_entries.clear();
  Open();
  EXPECT_EQ(window_.lvQuarantine.empty_text.Get(), "Nothing is in quarantine.");
  EXPECT_EQ(window_.lblEntry.caption.Get(), "");
  EXPECT_FALSE(window_.qRestore.enabled);
  window_.qRestore_Click();
  EXPECT_THAT(Boxes().shown, IsEmpty());
}

TEST_F(QuarantineWindowTest, QuarantineThatCannotBeReadSaysWhy) {
  Family().library_missing = true;
  Open();
  EXPECT_EQ(window_.lvQuarantine.empty_text.Get(), "The quarantine cannot be read.");
  EXPECT_EQ(window_.lblEntry.caption.Get(), "KorvessaIntermediateTypes: no such library");
  EXPECT_FALSE(window_.qRestore.enabled);
}

TEST_F(QuarantineWindowTest, RestoreAsksPutsBackAndTellsInTheLibrarysWords) {
  Open();
  Select("a");
  Boxes().Answer(BoxAnswer::kYes);
  Family().ScriptMessage("It is back.");
  window_.qRestore.clicked.Raise();
  EXPECT_THAT(Family().restore_calls, ElementsAre("a"));
  EXPECT_THAT(Boxes().Texts(),
              ElementsAre("Put this file back in its place?\r\n/home/u/one\r\nAn alert named "
                          "it: only restore what you know to be harmless.",
                          "It is back."));
  EXPECT_EQ(Boxes().shown[0].icon, BoxIcon::kQuestion);
  EXPECT_EQ(Boxes().shown[0].title, world_.state.ProductName);
  EXPECT_EQ(Boxes().shown[1].icon, BoxIcon::kInformation);
  EXPECT_EQ(window_.lvQuarantine.size(), 1U);
  EXPECT_EQ(window_.lblEntry.caption.Get(), "/home/u/two\r\nSHA-256: cafeb");
}

TEST_F(QuarantineWindowTest, NoLeavesTheFileWhereItIs) {
  Open();
  Boxes().Answer(BoxAnswer::kNo);
  window_.qRestore.clicked.Raise();
  EXPECT_THAT(Family().restore_calls, IsEmpty());
  EXPECT_EQ(Boxes().shown.size(), 1U);
}

TEST_F(QuarantineWindowTest, SilentLibraryIsPutIntoWords) {
  Open();
  Boxes().Answer(BoxAnswer::kYes);
  window_.qRestore.clicked.Raise();
  EXPECT_EQ(Boxes().Texts().back(), "The file was put back in its place.");
}

// Another program or the terminal may put it back first.
TEST_F(QuarantineWindowTest, EntryThatGoesUnderTheQuestionIsToldAsGone) {
  Open();
  Select("a");
  Boxes().Answer(BoxAnswer::kYes);
  Boxes().while_open = [&](const auto& request) {
    if (request.buttons == platform::BoxButtons::kYesNo) Family().quarantine_entries.pop_back();
  };
  window_.qRestore.clicked.Raise();
  EXPECT_THAT(Family().restore_calls, IsEmpty());
  EXPECT_EQ(Boxes().Texts().back(), "There is no such entry in quarantine.");
  EXPECT_EQ(Boxes().shown.back().icon, BoxIcon::kExclamation);
  EXPECT_EQ(window_.lvQuarantine.size(), 1U);
}

TEST_F(QuarantineWindowTest, RowSelectedUnderTheQuestionIsNotTheOneThatIsRestored) {
  Open();
  Select("a");
  Boxes().Answer(BoxAnswer::kYes);
  Boxes().while_open = [&](const auto& request) {
    if (request.buttons == platform::BoxButtons::kYesNo) Select("b");
  };
  window_.qRestore.clicked.Raise();
  EXPECT_THAT(Family().restore_calls, ElementsAre("a"));
}

TEST_F(QuarantineWindowTest, ListFollowsTheQuarantineAndKeepsItsSelection) {
  Open();
  Select("a");
  Family().quarantine_entries.insert(Family().quarantine_entries.begin(), Entry("c", "/home/u/three"));
  Seconds(3);
  EXPECT_EQ(window_.lvQuarantine.size(), 3U);
  EXPECT_EQ(window_.lvQuarantine.at(0).key, "c");
  EXPECT_EQ(window_.lblEntry.caption.Get(), "/home/u/one\r\nSHA-256: cafea");
  Family().quarantine_entries.pop_back();
  Seconds(3);
  EXPECT_EQ(window_.lblEntry.caption.Get(), "/home/u/three\r\nSHA-256: cafec");
}

TEST_F(QuarantineWindowTest, NothingIsBuiltAnewWhileNothingChanges) {
  Open();
  int cleared = 0;
  const auto link = window_.lvQuarantine.cleared.Connect([&] { ++cleared; });
  Seconds(10);
  EXPECT_EQ(cleared, 0);
}

TEST_F(QuarantineWindowTest, ClosedWindowFollowsNothing) {
  Open();
  EXPECT_EQ(world_.platform.timers.RunningTimers(), 1);
  window_.qClose.clicked.Raise();
  EXPECT_FALSE(window_.loaded());
  EXPECT_EQ(world_.platform.timers.RunningTimers(), 0);
}

TEST_F(QuarantineWindowTest, WindowThatGoesUnderItsQuestionRestoresNothing) {
  Open();
  Boxes().Answer(BoxAnswer::kYes);
  Boxes().while_open = [&](const auto&) { window_.Unload(); };
  window_.qRestore.clicked.Raise();
  EXPECT_THAT(Family().restore_calls, IsEmpty());
}

}  // namespace
}  // namespace zendrix::home
