#include "agent/gaps.h"

#include <gmock/gmock.h>

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

constexpr std::int64_t kUtc = 1700000000;

class GapsTest : public ::testing::Test {
 protected:
  GapsTest() { gaps.Notice({kUtc, 1000, 1000}); }
  Gaps gaps;
};

TEST_F(GapsTest, OrdinaryTurnIsNone) {
  EXPECT_THAT(gaps.Notice({kUtc + 1, 1050, 1050}), IsEmpty());
  EXPECT_THAT(gaps.Notice({kUtc + 13, 14000, 14000}), IsEmpty());
}

TEST_F(GapsTest, SleepIsTheDifferenceOfTheTwoClocks) {
  EXPECT_THAT(gaps.Notice({kUtc + 3600, 1050, 3601050}), ElementsAre("the computer slept for 1 h"));
  EXPECT_THAT(gaps.Notice({kUtc + 3600, 1100, 3601100}), IsEmpty()) << "told once";
}

TEST_F(GapsTest, TurnThatTookTooLongIsTold) {
  EXPECT_THAT(gaps.Notice({kUtc + 20, 21000, 21000}),
              ElementsAre(HasSubstr("the Agent was held up for 20 s")));
}

TEST_F(GapsTest, ClockThatIsSetIsToldInBothDirections) {
  EXPECT_THAT(gaps.Notice({kUtc + 7200, 1050, 1050}), ElementsAre("the clock was set forward by 1 h 59 min"));
  EXPECT_THAT(gaps.Notice({kUtc, 1100, 1100}), ElementsAre("the clock was set back by 2 h"));
  EXPECT_THAT(gaps.Notice({kUtc - 4, 1150, 1150}), IsEmpty()) << "a clock that is trimmed";
}

}  // namespace
}  // namespace zendrix::agent
