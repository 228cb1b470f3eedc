// What becomes of a program that is to be blocked again, and what the files say of it.
#include "agent/enforcement.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <thread>
#include <utility>

#include "agent/sources/memory/recorded_source.h"
#include "platform/memory/memory_act_helper.h"
#include "unit/agent/agent_fixture.h"

namespace zendrix::agent {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;

Alert Blocked(const std::string& code = "AG,1") {
  Alert alert;
  alert.code = code;
  alert.change = "0.98";
  alert.blocked = BlockedAgain{"/tmp/x", "abc", {7, 8}};
  return alert;
}

class EnforcementTest : public ::testing::Test {
 protected:
  Alert React(const Alert& alert = Blocked()) {
    std::vector<Alert> alerts = {alert};
    log_ = enforcement_.React(alerts);
    return alerts[0];
  }

  platform::MemoryActHelper helper_;
  Enforcement enforcement_{&helper_};
  std::vector<std::string> log_;
};

TEST_F(EnforcementTest, ASuccessIsToldAsOne) {
  helper_.again = platform::ActAnswer{true, "moved"};
  const Alert alert = React();
  EXPECT_THAT(helper_.asked, ElementsAre("BlockAgain /tmp/x abc 7 8"));
  EXPECT_EQ(alert.acted, true);
  EXPECT_EQ(alert.reaction, "success (moved to quarantine again)");
  EXPECT_THAT(log_, ElementsAre("Blocked before and there again: /tmp/x; moved"));
}

TEST_F(EnforcementTest, ARefusalIsAFailureWhateverItsSentenceHolds) {
  helper_.again = platform::ActAnswer{false, "\"/tmp/success, x|y\" stays"};
  const Alert alert = React();
  EXPECT_EQ(alert.acted, false);
  EXPECT_EQ(alert.reaction, "failed (blocked before - the log says why not again)");
  ASSERT_THAT(log_, SizeIs(1));
  EXPECT_THAT(log_[0], Not(HasSubstr("|")));
}

TEST_F(EnforcementTest, NoHelperAndNoAnswerAreFailuresOfTheirOwn) {
  EXPECT_EQ(React().reaction, "failed (blocked before - there is no helper to do it again)");
  enforcement_.Written();
  helper_.again = platform::Error{platform::ErrorKind::kOther, "late"};
  EXPECT_EQ(React().reaction, "failed (blocked before - the helper did not answer)");
  EXPECT_EQ(React().acted, false);
}

TEST_F(EnforcementTest, NobodyIsAskedTwiceForOneAlert) {
  helper_.again = platform::ActAnswer{true, "moved"};
  React();
  helper_.again = platform::ActAnswer{false, "there is nothing"};
  EXPECT_EQ(React().acted, true) << "the file could not be written, and the alert came again";
  EXPECT_THAT(log_, IsEmpty());
  EXPECT_EQ(React(Blocked("AG,2")).acted, false) << "another one";
  enforcement_.Written();
  EXPECT_EQ(React().acted, false);
  EXPECT_THAT(helper_.asked, SizeIs(3));
}

TEST_F(EnforcementTest, OtherAlertsAreLeftAlone) {
  Alert plain = Blocked();
  plain.blocked.reset();
  Alert quiet = Blocked();
  quiet.change = "-0.98";
  for (const Alert& alert : {React(plain), React(quiet)}) {
    EXPECT_FALSE(alert.acted.has_value());
    EXPECT_EQ(alert.reaction, "");
  }
  EXPECT_THAT(helper_.asked, IsEmpty());
  Enforcement nobody(nullptr);
  std::vector<Alert> alerts = {Blocked()};
  EXPECT_THAT(nobody.React(alerts), IsEmpty());
  EXPECT_FALSE(alerts[0].acted.has_value());
}

// Answers when the test lets it.
class SilentHelper : public platform::MemoryActHelper {
 public:
  platform::Result<platform::ActAnswer> BlockAgain(const std::string&, const std::string&,
                                                   const std::vector<std::uint32_t>&) override {
    ++calls;
    spoken_.wait();
    return answer;
  }
  void Speak() { speak_.set_value(); }

  platform::Result<platform::ActAnswer> answer = platform::ActAnswer{true, "moved"};
  std::atomic<int> calls = 0;

 private:
  std::promise<void> speak_;
  std::shared_future<void> spoken_ = speak_.get_future().share();
};

TEST(EnforcementAside, TheAlertsWaitForTheAnswerAndNobodyElseDoes) {
  SilentHelper silent;
  Enforcement enforcement(&silent);
  std::vector<Alert> alerts = {Blocked()};
  EXPECT_FALSE(enforcement.IsAnswered(alerts));
  EXPECT_FALSE(enforcement.IsAnswered(alerts));
  silent.Speak();
  while (!enforcement.IsAnswered(alerts)) std::this_thread::yield();
  EXPECT_THAT(enforcement.React(alerts), SizeIs(1));
  EXPECT_EQ(alerts[0].acted, true);
  EXPECT_TRUE(enforcement.IsAnswered(alerts));
  EXPECT_EQ(silent.calls, 1);
}

TEST(EnforcementAside, BehindAHelperThatIsSilentNobodyWaitsAgain) {
  SilentHelper silent;
  silent.answer = platform::Error{platform::ErrorKind::kOther, "late"};
  Enforcement enforcement(&silent);
  std::vector<Alert> alerts = {Blocked("AG,1"), Blocked("AG,2"), Blocked("AG,3")};
  EXPECT_FALSE(enforcement.IsAnswered(alerts));
  silent.Speak();
  EXPECT_THAT(enforcement.React(alerts), SizeIs(3));
  for (const Alert& alert : alerts) EXPECT_THAT(alert.reaction, HasSubstr("did not answer"));
  EXPECT_EQ(silent.calls, 1);
}

TEST(EnforcementAside, OthersNeedNoAnswer) {
  SilentHelper silent;
  Enforcement enforcement(&silent);
  Alert plain = Blocked();
  plain.blocked.reset();
  EXPECT_TRUE(enforcement.IsAnswered({plain}));
  EXPECT_EQ(silent.calls, 0);
  EXPECT_TRUE(Enforcement(nullptr).IsAnswered({Blocked()}));
}

// A scorer whose every alert is one of a blocked program.
class BlockedScorer : public EagerScorer {
 public:
  std::vector<Alert> Weigh(const std::vector<Event>& events, Moment now) override {
    auto alerts = EagerScorer::Weigh(events, now);
    for (Alert& alert : alerts) alert.blocked = BlockedAgain{"/tmp/x", "abc", {7}};
    return alerts;
  }
  void Raised(const std::vector<Alert>& alerts, std::int64_t second, Moment now) override {
    for (const Alert& alert : alerts) acted.push_back(alert.acted.value_or(false));
    EagerScorer::Raised(alerts, second, now);
  }
  std::vector<bool> acted;
};

class EnforcingAgent : public AgentFixture {
 protected:
  EnforcingAgent() {
    host.links["/proc/7/exe"] = "/tmp/x";
    host.texts["/proc/7/stat"] = "7 (x) S 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 1 0 500 0 0\n";
  }
  int RunOnce() {
    AgentParts parts{host, files, clock, blocking, errors, {}, "vm", 42};
    parts.helper = &helper;
    Options once = options;
    once.once = true;
    return Agent(std::move(parts), once).Run();
  }

  BlockedScorer blocking;
  platform::MemoryActHelper helper;
};

TEST_F(EnforcingAgent, TheCommunityRowAndTheLogTellWhatBecameOfIt) {
  helper.again = platform::ActAnswer{true, "\"/tmp/x\" was moved to quarantine."};
  EXPECT_EQ(RunOnce(), 0);
  const auto rows = Lines(kEvents, ",Community|");
  ASSERT_THAT(rows, SizeIs(1));
  EXPECT_THAT(rows[0], HasSubstr("|Running Processes=success (moved to quarantine again)|"));
  EXPECT_THAT(Lines(kLog, "Blocked before and there again"), SizeIs(1));
  EXPECT_THAT(blocking.acted, ElementsAre(true));
}

TEST_F(EnforcingAgent, AFailureStandsThereAsOne) {
  EXPECT_EQ(RunOnce(), 0);
  EXPECT_THAT(Lines(kEvents, "Running Processes=failed (blocked before"), SizeIs(1));
  EXPECT_THAT(blocking.acted, ElementsAre(false));
}

// The Agent saw nothing for four seconds whenever the helper did not answer.
TEST_F(EnforcingAgent, WhileTheHelperIsSilentTheAgentGoesOnLooking) {
  SilentHelper silent;
  RecordedSource source({monitor::kProcesses, monitor::kSystem}, {Level::kEvents, "test", ""});
  AgentParts parts{host, files, clock, blocking, errors, {}, "vm", 42};
  parts.helper = &silent;
  parts.sources = {&source};
  const std::int64_t start_ms = clock.MonotonicMs();
  int looks = 0;
  bool came = false;
  parts.stop_requested = [&] {
    const std::int64_t passed_ms = clock.MonotonicMs() - start_ms;
    if (passed_ms >= 1000 && !std::exchange(came, true))
      source.Came(MakeItem(monitor::kProcesses, "/tmp/x:7", {Rule::kProgramInTemporaryFolder}, "/tmp/x"));
    if (silent.calls == 1 && ++looks == 20) {
      EXPECT_THAT(Lines(kEvents, ",Community|"), IsEmpty());
      silent.Speak();
    }
    return passed_ms >= 60'000 || !Lines(kEvents, ",Community|").empty();
  };
  EXPECT_EQ(Agent(std::move(parts), options).Run(), 0);
  EXPECT_GE(looks, 20);
  EXPECT_THAT(Lines(kEvents, "Running Processes=success (moved to quarantine again)"), SizeIs(1));
  EXPECT_EQ(silent.calls, 1);
}

}  // namespace
}  // namespace zendrix::agent
