#include "widgets/signal.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>

namespace zendrix::widgets {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SignalTest : public ::testing::Test {
 protected:
  // A listener that writes its name down and then does what it is told.
  Connection Listen(const std::string& name, std::function<void()> act = {}) {
    return signal_->Connect([this, name, act = std::move(act)] {
      called_.push_back(name);
      if (act) act();
    });
  }
  // Runs once, however often the listener is called.
  static std::function<void()> Once(std::function<void()> act) {
    return [act = std::move(act), done = std::make_shared<bool>(false)] {
      if (!std::exchange(*done, true)) act();
    };
  }

  std::unique_ptr<Signal<>> signal_ = std::make_unique<Signal<>>();
  std::vector<std::string> called_;
};

TEST_F(SignalTest, ListenersAreCalledInTheOrderOfTheirConnecting) {
  const auto a = Listen("a"), b = Listen("b"), c = Listen("c");
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a", "b", "c"));
}

TEST_F(SignalTest, EveryListenerGetsTheArguments) {
  Signal<int, std::string> signal;
  std::vector<std::string> got;
  for (const char* who : {"a", "b"})
    signal.ConnectForever([&got, who](int number, const std::string& text) {
      got.push_back(who + std::to_string(number) + text);
    });
  signal.Raise(7, "x");
  EXPECT_THAT(got, ElementsAre("a7x", "b7x"));
}

TEST_F(SignalTest, DroppedConnectionIsNotCalled) {
  const auto a = Listen("a");
  { const auto b = Listen("b"); }
  auto c = Listen("c");
  c.Disconnect();
  c.Disconnect();
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a"));
}

TEST_F(SignalTest, MovedConnectionHoldsOnAndTheOneItReplacesIsDropped) {
  auto held = Listen("a");
  held = Listen("b");
  const Connection moved = std::move(held);
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("b"));
}

TEST_F(SignalTest, ConnectionMayOutliveTheSignal) {
  auto a = Listen("a");
  signal_.reset();
  a.Disconnect();
}

TEST_F(SignalTest, DroppedListenersLeaveNothingBehind) {
  const auto kept = std::make_shared<int>(0);
  for (int i = 0; i < 3; ++i) signal_->Connect([kept] {}).Disconnect();
  const auto other = Listen("a");
  EXPECT_EQ(kept.use_count(), 1);
}

TEST_F(SignalTest, ListenerThatConnectsDuringARoundIsCalledFromTheNextOne) {
  Connection late;
  const auto a = Listen("a", Once([&] { late = Listen("late"); }));
  const auto b = Listen("b");
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a", "b"));
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a", "b", "a", "b", "late"));
}

TEST_F(SignalTest, ManyListenersMayConnectDuringARound) {
  std::vector<Connection> late;
  const auto a = Listen("a", Once([&] {
                          for (int i = 0; i < 100; ++i) late.push_back(Listen("late"));
                        }));
  const auto b = Listen("b");
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a", "b"));
}

TEST_F(SignalTest, ListenerThatIsDroppedDuringARoundIsNotCalledAnyMore) {
  Connection b;
  const auto a = Listen("a", [&] { b.Disconnect(); });
  b = Listen("b");
  const auto c = Listen("c");
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a", "c"));
}

TEST_F(SignalTest, ListenerMayDropItselfAndFinish) {
  Connection a;
  const auto text = std::make_shared<std::string>("still here");
  a = signal_->Connect([this, &a, text] {
    a.Disconnect();
    called_.push_back(*text);
  });
  const auto b = Listen("b");
  signal_->Raise();
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("still here", "b", "b"));
}

// A nested round used to remove the listeners that were gone, and the outer one, which counts by place, then
// passed over as many that were not.
TEST_F(SignalTest, NestedRoundSkipsNobodyInTheOuterOneWhenAListenerIsGone) {
  Connection a;
  a = Listen("a", [&] { a.Disconnect(); });
  const auto b = Listen("b", Once([&] { signal_->Raise(); }));
  const auto c = Listen("c"), d = Listen("d");
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a", "b", "b", "c", "d", "c", "d"));
}

TEST_F(SignalTest, ListenerThatANestedRoundDropsIsNotCalledByTheOuterOne) {
  Connection c;
  int rounds = 0;
  const auto a = Listen("a", Once([&] { signal_->Raise(); }));
  const auto b = Listen("b", [&] {
    if (++rounds == 1) c.Disconnect();
  });
  c = Listen("c");
  const auto d = Listen("d");
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a", "a", "b", "d", "b", "d"));
}

TEST_F(SignalTest, ListenerThatConnectsInANestedRoundWaitsForTheNextOuterOne) {
  Connection late;
  const auto a = Listen("a", Once([&] { signal_->Raise(); }));
  const auto b = Listen("b", Once([&] { late = Listen("late"); }));
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a", "a", "b", "b"));
  called_.clear();
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a", "b", "late"));
}

TEST_F(SignalTest, DroppedListenersAreSweptOnceTheOutermostRoundIsOver) {
  const auto kept = std::make_shared<int>(0);
  Connection gone = signal_->Connect([kept] {});
  const auto a = Listen("a", Once([&] {
                          gone.Disconnect();
                          signal_->Raise();
                        }));
  signal_->Raise();
  signal_->Raise();
  EXPECT_EQ(kept.use_count(), 1);
}

// The listeners of a form capture the form; one that destroyed it used to be followed by the others.
TEST_F(SignalTest, NobodyIsCalledOnceAListenerHasDestroyedTheSignal) {
  auto owner = std::make_unique<std::string>("alive");
  signal_->ConnectForever([&] {
    called_.push_back("a");
    owner.reset();
    signal_.reset();
  });
  signal_->ConnectForever([&] { called_.push_back(owner ? *owner : "touched what is gone"); });
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a"));
}

TEST_F(SignalTest, SignalDestroyedInANestedRoundEndsTheOuterOneToo) {
  const auto a = Listen("a", Once([&] { signal_->Raise(); }));
  const auto b = Listen("b", [&] { signal_.reset(); });
  const auto c = Listen("c");
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a", "a", "b"));
}

TEST_F(SignalTest, WhatAListenerThrowsReachesTheCallerAndTheSignalStaysInOrder) {
  Connection b;
  const auto a = Listen("a", Once([&] {
                          b.Disconnect();
                          throw std::runtime_error("no");
                        }));
  b = Listen("b");
  const auto c = Listen("c");
  EXPECT_THROW(signal_->Raise(), std::runtime_error);
  EXPECT_THAT(called_, ElementsAre("a"));
  const auto kept = std::make_shared<int>(0);
  signal_->Connect([kept] {}).Disconnect();
  signal_->Raise();
  EXPECT_THAT(called_, ElementsAre("a", "a", "c"));
  EXPECT_EQ(kept.use_count(), 1) << "a round that ended in an exception still counts as under way";
}

TEST_F(SignalTest, SignalWithoutListenersMayBeRaised) {
  signal_->Raise();
  EXPECT_THAT(called_, IsEmpty());
}

}  // namespace
}  // namespace zendrix::widgets
