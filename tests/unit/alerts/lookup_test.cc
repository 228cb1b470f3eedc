#include "support/alert_fixture.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

class LookupTest : public AlertFixture {};

TEST_F(LookupTest, EntryZeroIsTheAlertItself) {
  Event(0, "Running Processes", "a");
  Alert(1, "Running Processes=a;x");
  Load();
  LookUp(2);
  EXPECT_EQ(Found(0).ID, 2);
  EXPECT_EQ(Found(0).DateUTC, "1795225501");
  EXPECT_EQ(Found(0).Monitor, "Aggregation");
  EXPECT_EQ(Found(0).Change, "0.9900000000000000");
  EXPECT_FALSE(Found(0).TimesObserved.has_value());
}

TEST_F(LookupTest, FirstRowOfTheTableTellsSinceWhenHistoryExists) {
  Event(0, "Running Processes", "a");
  Alert(5, "x");
  Load();
  LookUp(2);
  EXPECT_EQ(alerts_.context().FirstEventDateUTC, "1795225500");
  EXPECT_EQ(alerts_.context().FirstEventDateTime, "11/21/2026 01:45:00 AM");
}

TEST_F(LookupTest, PairsFindTheNewestEarlierRowOfTheirMonitor) {
  Event(0, "Running Processes", "a");
  Event(1, "Running Processes", "a");
  Event(2, "Windows Folder", "a");
  Alert(3, "Running Processes=a;Windows Folder=b");
  Event(4, "Running Processes", "a");
  Load();
  LookUp(4);
  ASSERT_THAT(Events(), ElementsAre("Running Processes=a"));
  EXPECT_EQ(Found(1).ID, 2);
  EXPECT_EQ(Found(1).DateUTC, "1795225501");
  EXPECT_EQ(Found(1).TimesObserved, 1);
}

TEST_F(LookupTest, ReactionComesFromTheCommunityRowTenSecondsBehind) {
  Event(0, "Running Processes", "a");
  Alert(1, "Running Processes=a;");
  Community(11, "Other=success;Running Processes=failed to stop");
  Load();
  LookUp(2);
  EXPECT_EQ(Found(1).Reaction, "failed to stop");
}

TEST_F(LookupTest, CommunityRowElevenSecondsBehindIsIgnored) {
  Event(0, "Running Processes", "a");
  Alert(1, "Running Processes=a;");
  Community(12, "Running Processes=success");
  Load();
  LookUp(2);
  ASSERT_THAT(Events(), SizeIs(1));
  EXPECT_EQ(Found(1).Reaction, "");
}

TEST_F(LookupTest, OnlyTheFirstCommunityRowBehindTheAlertIsLookedAt) {
  Event(0, "Running Processes", "a");
  Alert(1, "Running Processes=a;");
  Community(2, "Windows Folder=success");
  Community(3, "Running Processes=success");
  Load();
  LookUp(2);
  EXPECT_EQ(Found(1).Reaction, "");
}

TEST_F(LookupTest, OnePairWithoutSemicolonTakesTheScanPath) {
  Event(0, "Running Processes", "something else");
  Alert(1, "Running Processes=a");
  Load();
  LookUp(2);
  EXPECT_THAT(Events(), ElementsAre("Running Processes=something else"));
  EXPECT_EQ(Found(1).DateUTC, "");  // never set on this path
}

TEST_F(LookupTest, DescriptionEndingInSemicolonCountsAsTwoParts) {
  Event(0, "Running Processes", "something else");
  Alert(1, "Running Processes=a;");
  Load();
  LookUp(2);
  EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(LookupTest, ScanKeepsOnlyTheNearerOfTwoEventsOfOneMonitor) {
  Event(0, "Running Processes", "far");
  Event(1, "Running Processes", "near");
  Event(2, "System", "other");
  Alert(3, "Running Processes and nothing more");
  Load();
  LookUp(4);
  EXPECT_THAT(Events(), ElementsAre("Running Processes=near"));
}

TEST_F(LookupTest, ScanLooksAtThirtyOneRowsAndNoFurther) {
  Event(0, "Windows Folder", "32nd before");
  Event(1, "Running Processes", "31st before");
  for (int i = 0; i < 30; ++i) Event(2 + i, "System Users", "filler");
  Alert(40, "Running Processes, Windows Folder");
  Load();
  LookUp(33);
  EXPECT_THAT(Events(), ElementsAre("Running Processes=31st before"));
}

TEST_F(LookupTest, FirstRowOfTheTableHasNoEvents) {
  Alert(0, "Running Processes");
  Alert(1, "x");
  Load();
  LookUp(1);
  EXPECT_THAT(Events(), IsEmpty());
  EXPECT_EQ(Found(0).ID, 1);
}

TEST_F(LookupTest, EarlierOccurrencesNeedTheSameChangeAndAnEarlierDate) {
  Event(0, "Running Processes", "a", "1");
  Event(0, "Running Processes", "a", "-1");
  Event(1, "Running Processes", "a", "1");
  Event(2, "Running Processes", "a", "1");
  Event(2, "Running Processes", "a", "1");
  Alert(3, "Running Processes=a;");
  Load();
  LookUp(6);
  ASSERT_THAT(Events(), SizeIs(1));
  EXPECT_EQ(Found(1).ID, 5);
  EXPECT_EQ(Found(1).TimesObserved, 2);  // not the other change, not the one of the same second
}

TEST_F(LookupTest, CursorStandsOnTheFirstRowAfterwards) {
  Event(0, "Running Processes", "a");
  Alert(1, "Running Processes=a;");
  Load();
  LookUp(2);
  EXPECT_EQ(reader_.EventTable->cursor()->bookmark(), 0U);
}

TEST_F(LookupTest, ApostropheInADescriptionEndsTheLookupWithWhatWasFound) {
  Event(0, "Running Processes", "a");
  Event(1, "Windows Folder", "it's");
  Alert(2, "Running Processes=a;Windows Folder=it's;Running Processes=a");
  Load();
  world_.quiet.Expect("'EventUtils:GetNotableInfo': Error retrieving Alert details. 'a' ");
  LookUp(3);
  EXPECT_THAT(Events(), ElementsAre("Running Processes=a"));
  EXPECT_EQ(reader_.EventTable->cursor()->bookmark(), 0U);
}

TEST_F(LookupTest, IdBeyondSixteenBitsEndsTheLookup) {
  for (int i = 0; i < 32767; ++i) Event(i, "System", "filler");
  Alert(40000, "x=y;");
  Load();
  world_.quiet.Expect("'EventUtils:GetNotableInfo': Error retrieving Alert details. '' ");
  LookUp(32768);
  EXPECT_EQ(Found(0).ID, 0);
  EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(LookupTest, IdThatIsNotThereLeavesOneBlankEntry) {
  Event(0, "System", "a");
  Event(1, "System", "a");
  Load();
  EXPECT_THAT(LookUp(77), SizeIs(1));
  EXPECT_EQ(Found(0).Monitor, "");
  EXPECT_EQ(Page(), "* Error with Description file *  \r\n\r\n");
}

TEST_F(LookupTest, WithoutATableTheFailureIsLogged) {
  world_.quiet.Expect("'EventUtils:GetNotableInfo': Error retrieving Alert details. '' ");
  EXPECT_THAT(LookUp(1), SizeIs(1));
}

// The scan left out what a list of pairs tells of each event.
TEST_F(LookupTest, EventsOfEitherPathCarryTheColumnsOfTheirRow) {
  for (const char* description : {"Running Processes=a;", "Running Processes"}) {
    lines_.clear();
    Event(0, "Running Processes", "a", "7");
    Event(1, "Running Processes", "a", "7");
    Event(2, "Aggregation", description, "0.5", "done");
    Load();
    LookUp(3);
    ASSERT_THAT(Events(), SizeIs(1)) << description;
    EXPECT_EQ(Found(1).ID, 2);
    EXPECT_EQ(Found(1).DateTime, "11/21/2026 01:45:01 AM");
    EXPECT_EQ(Found(1).Original, reader_.EventTable->Text(1, store::kOriginal));
    EXPECT_NE(Found(1).Original, "");
    EXPECT_EQ(Found(1).Change, "7.0000000000000000");
    EXPECT_EQ(Found(1).TimesObserved, 1);
    EXPECT_EQ(Found(0).DateTime, "11/21/2026 01:45:02 AM");
    EXPECT_EQ(Found(0).Original, reader_.EventTable->Text(2, store::kOriginal));
    EXPECT_EQ(Found(0).Description, description);
    EXPECT_EQ(Found(0).Reaction, "done");
  }
}

// What happens between the alert and the Agent's word on it did not cause it.
TEST_F(LookupTest, EventBehindTheAlertIsNoneOfItsEvents) {
  Event(0, "Running Processes", "a");
  Alert(1, "Running Processes=a;Windows Folder=b");
  Event(2, "Running Processes", "a");
  Event(2, "Windows Folder", "b");
  Community(3, "Running Processes=success");
  Load();
  LookUp(2);
  ASSERT_THAT(Events(), ElementsAre("Running Processes=a"));
  EXPECT_EQ(Found(1).ID, 1);
}

TEST_F(LookupTest, CursorLeftAnywhereChangesNothing) {
  Event(0, "Running Processes", "a");
  Alert(1, "Running Processes=a;");
  Alert(2, "x");
  Load();
  reader_.EventTable->cursor()->GoTo(2);
  LookUp(2);
  EXPECT_EQ(alerts_.context().FirstEventDateUTC, "1795225500");
  EXPECT_THAT(Events(), ElementsAre("Running Processes=a"));
}

// A text that breaks the count leaves the event with none earlier, not without a number.
TEST_F(LookupTest, EventThatCannotBeCountedHasBeenSeenNever) {
  Event(0, "Running Processes", "it's");
  Alert(1, "Running Processes");
  Load();
  world_.quiet.Expect("'EventUtils:GetNotableInfo': Error retrieving Alert details. 'it's' ");
  LookUp(2);
  ASSERT_THAT(Events(), ElementsAre("Running Processes=it's"));
  EXPECT_EQ(Found(1).TimesObserved, 0);
}

TEST_F(LookupTest, EmptyTableHasNoFirstRowToGoBackTo) {
  Load();
  ASSERT_TRUE(reader_.EventTable);
  ASSERT_EQ(reader_.EventTable->RowCount(), 0U);
  world_.quiet.Expect("'EventUtils:GetNotableInfo': Error retrieving Alert details. '' ");
  EXPECT_THAT(LookUp(1), SizeIs(1));
}

TEST_F(LookupTest, EachLookupForgetsTheOneBefore) {
  Event(0, "Running Processes", "a");
  Alert(1, "Running Processes=a;");
  Alert(2, "nothing");
  Load();
  LookUp(2);
  EXPECT_THAT(Events(), SizeIs(1));
  LookUp(3);
  EXPECT_THAT(Events(), IsEmpty());
}

}  // namespace
}  // namespace zendrix::test
