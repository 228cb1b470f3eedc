#include "widgets/date_time_box.h"

#include <gmock/gmock.h>

namespace zendrix::widgets {
namespace {

class DateTimeBoxTest : public ::testing::Test {
 protected:
  DateTimeBoxTest() {
    box_.moment.changed.ConnectForever([this] { ++changes_; });
    box_.proposal = [] { return DateTimeBox::Moment{1234}; };
  }
  DateTimeBox box_{"FromDate"};
  int changes_ = 0;
};

TEST_F(DateTimeBoxTest, BeginsEmptyInTheDesignsPicture) {
  EXPECT_FALSE(box_.moment.Get());
  EXPECT_EQ(box_.picture.Get(), "MM/dd/yyyy hh:mm:ss tt");
}

TEST_F(DateTimeBoxTest, BeginsWithTheProposalOnlyWhereItIsEmpty) {
  box_.Begin();
  EXPECT_EQ(box_.moment.Get(), 1234);
  box_.Pick(99);
  box_.Begin();
  EXPECT_EQ(box_.moment.Get(), 99);
  EXPECT_EQ(changes_, 2);
}

TEST_F(DateTimeBoxTest, EmptiesAgain) {
  box_.Pick(0);
  EXPECT_TRUE(box_.moment.Get());
  box_.Empty();
  box_.Empty();
  EXPECT_FALSE(box_.moment.Get());
  EXPECT_EQ(changes_, 2);
}

}  // namespace
}  // namespace zendrix::widgets
