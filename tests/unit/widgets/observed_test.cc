#include "widgets/observed.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace zendrix::widgets {
namespace {

using ::testing::ElementsAre;

class ObservedTest : public ::testing::Test {
 protected:
  Connection Watch(const std::string& name) {
    return value_->changed.Connect([this, name] { seen_.push_back(name + std::to_string(value_->Get())); });
  }
  std::unique_ptr<Observed<int>> value_ = std::make_unique<Observed<int>>(1);
  std::vector<std::string> seen_;
};

TEST_F(ObservedTest, ListenersSeeTheNewValue) {
  const auto a = Watch("a"), b = Watch("b");
  *value_ = 2;
  EXPECT_THAT(seen_, ElementsAre("a2", "b2"));
}

TEST_F(ObservedTest, ValueThatItHasAlreadyIsNotTold) {
  const auto a = Watch("a");
  *value_ = 1;
  value_->Set(1);
  EXPECT_THAT(seen_, ElementsAre());
}

TEST_F(ObservedTest, StartsWithTheTypesOwnEmptyValue) {
  EXPECT_EQ(Observed<int>().Get(), 0);
  EXPECT_EQ(Observed<std::string>().Get(), "");
}

TEST_F(ObservedTest, ListenerMaySetItAgainAndNobodyIsLeftWithTheOldValue) {
  const auto first = value_->changed.Connect([this] {
    if (*value_ == 2) *value_ = 3;
  });
  const auto a = Watch("a");
  *value_ = 2;
  EXPECT_THAT(seen_, ElementsAre("a3", "a3"));
}

TEST_F(ObservedTest, ListenerMayPutTheOldValueBack) {
  const auto refuse = value_->changed.Connect([this] { *value_ = 1; });
  const auto a = Watch("a");
  *value_ = 2;
  EXPECT_EQ(value_->Get(), 1);
  EXPECT_THAT(seen_, ElementsAre("a1", "a1"));
}

TEST_F(ObservedTest, ListenerMayDestroyIt) {
  const auto first = value_->changed.Connect([this] { value_.reset(); });
  const auto a = Watch("a");
  *value_ = 2;
  EXPECT_THAT(seen_, ElementsAre());
}

TEST_F(ObservedTest, MayBeSetFromItsOwnValue) {
  Observed<std::string> text(std::string(100, 'x'));
  text = text.Get();
  EXPECT_EQ(text.Get(), std::string(100, 'x'));
}

}  // namespace
}  // namespace zendrix::widgets
