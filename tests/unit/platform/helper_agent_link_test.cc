// Decisions and mail settings on their way to the helper, whose answers a test holds back.
#include "platform/linux/helper_agent_link.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include "platform/memory/fake_clock.h"
#include "platform/memory/fake_timers.h"
#include "platform/memory/memory_act_helper.h"

namespace zendrix::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::StartsWith;

// Answers when the test lets it.
class SlowHelper : public MemoryActHelper {
 public:
  Result<ActAnswer> Decide(std::int64_t second, const std::string& code, bool is_block) override {
    return Wait(std::to_string(second) + " " + code + (is_block ? " block" : " allow"));
  }
  Result<ActAnswer> SetMail(const std::string& settings) override { return Wait("mail " + settings); }

  void Answer(Result<ActAnswer> answer) {
    const std::lock_guard lock(mutex_);
    answers_.push_back(std::move(answer));
    changed_.notify_all();
  }
  // Once that many questions have come; they come in order.
  std::vector<std::string> Asked(std::size_t count) {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(60), [&] { return asked_.size() >= count; });
    return asked_;
  }
  // Once every answer has been taken.
  void WaitUntilTaken() {
    std::unique_lock lock(mutex_);
    changed_.wait_for(lock, std::chrono::seconds(60), [&] { return answers_.empty(); });
  }

 private:
  Result<ActAnswer> Wait(std::string what) {
    std::unique_lock lock(mutex_);
    asked_.push_back(std::move(what));
    changed_.notify_all();
    changed_.wait(lock, [&] { return !answers_.empty(); });
    auto answer = std::move(answers_.front());
    answers_.pop_front();
    changed_.notify_all();
    return answer;
  }

  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<std::string> asked_;
  std::deque<Result<ActAnswer>> answers_;
};

class HelperAgentLinkTest : public ::testing::Test {
 protected:
  AgentLink::OnTrouble Note() {
    return [this](const std::string& sentence) { troubles_.push_back(sentence); };
  }
  // Turns the message loop until so many sentences have come, with a bound for a test that hangs.
  void TurnUntil(std::size_t count) {
    for (int turns = 0; troubles_.size() < count && turns < 60000; ++turns) {
      timers_.Advance(50);
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
  }

  FakeClock clock_;
  FakeTimers timers_{clock_};
  SlowHelper helper_;
  std::vector<std::string> troubles_;
};

TEST_F(HelperAgentLinkTest, TheWindowGoesOnWhileTheHelperIsAsked) {
  HelperAgentLink link(helper_, &timers_);
  link.Decide(17, "AG,5", true, Note());
  timers_.Advance(1000);
  EXPECT_TRUE(troubles_.empty());
  EXPECT_THAT(helper_.Asked(1), ElementsAre("17 AG,5 block"));
  helper_.Answer(ActAnswer{false, "You did not agree. Nothing was noted."});
  TurnUntil(1);
  EXPECT_THAT(troubles_,
              ElementsAre("The Agent was not told of your decision, which is kept in your own files. "
                          "You did not agree. Nothing was noted."));
}

TEST_F(HelperAgentLinkTest, OneThingIsToldAfterTheOtherInTheirOrder) {
  HelperAgentLink link(helper_, &timers_);
  link.Decide(17, "AG,5", true, Note());
  link.Decide(17, "AG,5", false, Note());
  link.SetMail("Send Alerts To=a", Note());
  EXPECT_THAT(helper_.Asked(1), ElementsAre("17 AG,5 block"));
  for (int i = 0; i < 3; ++i) helper_.Answer(ActAnswer{false, std::to_string(i)});
  TurnUntil(3);
  EXPECT_THAT(helper_.Asked(3), ElementsAre("17 AG,5 block", "17 AG,5 allow", "mail Send Alerts To=a"));
  ASSERT_EQ(troubles_.size(), 3U);
  EXPECT_TRUE(troubles_[0].ends_with(" 0") && troubles_[1].ends_with(" 1") && troubles_[2].ends_with(" 2"));
  EXPECT_THAT(troubles_[2], StartsWith("The service that mails alerts was not told of your settings"));
}

// The box that a sentence comes with serves the message loop.
TEST_F(HelperAgentLinkTest, AnotherDecisionMayBeMadeWhileASentenceIsRead) {
  HelperAgentLink link(helper_, &timers_);
  link.Decide(17, "A", true, [&](const std::string&) {
    link.Decide(18, "B", true, Note());
    helper_.Answer(ActAnswer{false, "no"});
    TurnUntil(1);
  });
  helper_.Answer(ActAnswer{false, "no"});
  TurnUntil(1);
  EXPECT_THAT(helper_.Asked(2), ElementsAre("17 A block", "18 B block"));
  EXPECT_EQ(troubles_.size(), 1U);
}

TEST_F(HelperAgentLinkTest, WhatBecameKnownIsNotTold) {
  HelperAgentLink link(helper_);
  helper_.Answer(ActAnswer{true, "The Agent follows this decision from now on."});
  link.Decide(17, "AG,5", false, Note());
  EXPECT_TRUE(troubles_.empty());
}

TEST_F(HelperAgentLinkTest, AMissingHelperAndOneThatIsSilentAreToldApart) {
  HelperAgentLink link(helper_);
  helper_.Answer(Error{ErrorKind::kUnavailable, "no such name"});
  helper_.Answer(Error{ErrorKind::kOther, "late"});
  link.Decide(17, "AG,5", false, Note());
  link.SetMail("", Note());
  ASSERT_EQ(troubles_.size(), 2U);
  EXPECT_TRUE(troubles_[0].ends_with("The helper of the package zendrix-agent is not there."));
  EXPECT_TRUE(troubles_[1].ends_with("Its helper did not answer in time."));
}

// A window that closes does not wait for the user's password.
TEST_F(HelperAgentLinkTest, ALinkMayGoWhileAQuestionIsOpen) {
  {
    HelperAgentLink link(helper_, &timers_);
    link.Decide(17, "AG,5", true, Note());
    helper_.Asked(1);
  }
  helper_.Answer(ActAnswer{false, "too late"});
  helper_.WaitUntilTaken();
  timers_.Advance(1000);
  EXPECT_TRUE(troubles_.empty());
}

}  // namespace
}  // namespace zendrix::platform
