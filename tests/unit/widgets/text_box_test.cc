#include "widgets/text_box.h"

#include <gmock/gmock.h>

namespace zendrix::widgets {
namespace {

using ::testing::ElementsAre;

class TextBoxTest : public ::testing::Test {
 protected:
  TextBoxTest() {
    box_.mark_all.ConnectForever([this] { acts_.push_back("mark"); });
    box_.refused.ConnectForever([this] { acts_.push_back("refused"); });
    box_.focus.ConnectForever([this] { acts_.push_back("focus"); });
    box_.text.changed.ConnectForever([this] { acts_.push_back(box_.text); });
  }
  TextBox box_{"Port"};
  std::vector<std::string> acts_;
};

TEST_F(TextBoxTest, KeyboardMarksTheWholeText) {
  EXPECT_FALSE(box_.has_keyboard());
  box_.Enter();
  EXPECT_THAT(acts_, ElementsAre("mark"));
  EXPECT_TRUE(box_.has_keyboard());
}

TEST_F(TextBoxTest, EachKeyIsAnnouncedAndTheBackspaceTakesOneAway) {
  box_.Type("ab\b");
  EXPECT_THAT(acts_, ElementsAre("a", "ab", "a"));
}

TEST_F(TextBoxTest, BackspaceInAnEmptyFieldChangesNothing) {
  box_.Type("\b");
  EXPECT_THAT(acts_, ElementsAre());
}

TEST_F(TextBoxTest, KeyThatIsNotTakenIsDroppedAndReported) {
  box_.takes = [](char key) { return key >= '0' && key <= '9'; };
  box_.Type("2x5");
  EXPECT_THAT(acts_, ElementsAre("2", "refused", "25"));
  EXPECT_TRUE(box_.Takes('9'));
  EXPECT_FALSE(box_.Takes('-'));
}

TEST_F(TextBoxTest, WithoutARuleEveryKeyIsTakenAndEveryTextIsValid) {
  EXPECT_TRUE(box_.Takes('\xE9'));
  box_.Enter();
  EXPECT_TRUE(box_.Leave());
  EXPECT_FALSE(box_.has_keyboard());
}

TEST_F(TextBoxTest, TextThatIsNotValidKeepsTheKeyboard) {
  bool good = false;
  box_.valid = [&] { return good; };
  box_.Enter();
  acts_.clear();
  EXPECT_FALSE(box_.Leave());
  EXPECT_THAT(acts_, ElementsAre("focus"));
  EXPECT_TRUE(box_.has_keyboard());
  good = true;
  EXPECT_TRUE(box_.Leave());
  EXPECT_THAT(acts_, ElementsAre("focus"));
}

// The box that tells the user takes the keyboard itself, which came back as a second box under the first.
TEST_F(TextBoxTest, LeavingWithinTheValidationAsksNobody) {
  int asked = 0;
  box_.valid = [&] {
    ++asked;
    EXPECT_TRUE(box_.Leave());
    return false;
  };
  box_.Enter();
  EXPECT_FALSE(box_.Leave());
  EXPECT_EQ(asked, 1);
  EXPECT_FALSE(box_.Leave()) << "the next leaving is asked again";
  EXPECT_EQ(asked, 2);
}

TEST_F(TextBoxTest, ValidationThatFailsLeavesTheFieldAbleToAskAgain) {
  box_.valid = []() -> bool { throw 5; };
  EXPECT_THROW(box_.Leave(), int);
  box_.valid = [] { return false; };
  EXPECT_FALSE(box_.Leave());
}

TEST_F(TextBoxTest, EditedFieldHasTheKeyboard) {
  box_.Edit("whole");
  EXPECT_THAT(acts_, ElementsAre("whole"));
  EXPECT_TRUE(box_.has_keyboard());
}

TEST_F(TextBoxTest, LostKeyboardAsksNobody) {
  box_.valid = []() -> bool { throw 5; };
  box_.Enter();
  box_.Lose();
  EXPECT_FALSE(box_.has_keyboard());
}

TEST_F(TextBoxTest, KeyThatIsTakenIsToldBehindItsChangeAndAlsoWithoutOne) {
  box_.takes = [](char key) { return key == '1'; };
  box_.taken.ConnectForever([this] { acts_.push_back("taken"); });
  box_.Type("1\b\bx");
  EXPECT_THAT(acts_, ElementsAre("1", "taken", "", "taken", "taken", "refused"));
}

TEST_F(TextBoxTest, FieldOfDigitsBeepsAtOtherKeys) {
  Screen screen;
  screen.beep.ConnectForever([this] { acts_.push_back("beep"); });
  TakeDigits(box_, screen);
  box_.Type("0:9/");
  EXPECT_THAT(acts_, ElementsAre("0", "refused", "beep", "09", "refused", "beep"));
}

TEST_F(TextBoxTest, OnlyTheFieldWithTheKeyboardIsAskedBeforeACommand) {
  TextBox other("Server");
  box_.valid = [] { return false; };
  EXPECT_TRUE(MayLeave({&box_, &other}));
  other.Enter();
  EXPECT_TRUE(MayLeave({&box_, &other}));
  box_.Enter();
  EXPECT_FALSE(MayLeave({&other, &box_}));
}

TEST_F(TextBoxTest, MoreThanTheMostCharactersAreCutOff) {
  box_.most = 3;
  box_.Edit("abcd");
  EXPECT_EQ(box_.text.Get(), "abc");
  box_.Type("d");
  EXPECT_EQ(box_.text.Get(), "abc");
  EXPECT_EQ(acts_.back(), "refused");
}

}  // namespace
}  // namespace zendrix::widgets
