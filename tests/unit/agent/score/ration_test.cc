#include "agent/score/ration.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zendrix::agent {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

TEST(RationTest, HeaviestOfOneKindAreToldAndTheOthersWait) {
  std::vector<Ration::Offered> offered(12, {101, 0.5});
  offered[11].risk = 0.9;
  const auto choice = Ration().Choose(offered, 600);
  EXPECT_THAT(choice.now, ElementsAre(11, 0, 1, 2, 3, 4, 5, 6, 7, 8));
  EXPECT_THAT(choice.later, ElementsAre(9, 10));
  EXPECT_THAT(choice.never, IsEmpty());
}

TEST(RationTest, LightAlertOfAnotherKindIsToldAmongHeavyOnes) {
  std::vector<Ration::Offered> offered(300, {101, 0.99});
  offered.push_back({601, 0.93});
  EXPECT_THAT(Ration().Choose(offered, 600).now, Contains(300));
}

TEST(RationTest, KindThatTheMinuteHasNoneOfIsToldBeyondTheTen) {
  Ration ration;
  for (int i = 0; i < 10; ++i) ration.Count(101, 600);
  EXPECT_THAT(ration.Choose({{101, 0.9}, {601, 0.9}, {601, 0.9}}, 659).now, ElementsAre(1));
  EXPECT_THAT(ration.Choose({{101, 0.9}, {601, 0.9}, {601, 0.9}}, 660).now, SizeIs(3));
}

TEST(RationTest, OnlySoManyWaitAndTheKindsShareThePlaces) {
  std::vector<Ration::Offered> offered(1000, {101, 0.99});
  offered.insert(offered.end(), 40, {601, 0.93});
  Ration ration;
  for (int i = 0; i < 10; ++i) ration.Count(i < 5 ? 101 : 601, 600);
  const auto choice = ration.Choose(offered, 600);
  EXPECT_THAT(choice.now, IsEmpty());
  EXPECT_THAT(choice.later, SizeIs(Ration::kMostPutOff));
  for (std::size_t at = 1000; at < 1040; ++at) EXPECT_THAT(choice.later, Contains(at));
  EXPECT_THAT(choice.never, SizeIs(1040 - Ration::kMostPutOff));
}

TEST(RationTest, RoomComesWithTheNextMinute) {
  EXPECT_EQ(Ration::SecondsLeft(600), 60);
  EXPECT_EQ(Ration::SecondsLeft(659), 1);
}

}  // namespace
}  // namespace zendrix::agent
