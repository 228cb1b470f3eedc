// Acting with twins in the places of the quarantine, the processes, the authority and the Agent, which has
// told of an alert on one program.
#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "act/acting.h"
#include "act/memory/memory_processes.h"
#include "act/memory/memory_store.h"
#include "act/memory/scripted_authority.h"
#include "act/memory/told_events.h"
#include "platform/memory/fake_clock.h"
#include "platform/memory/memory_files.h"

namespace zendrix::act {

inline constexpr char kPath[] = "/tmp/dropper";
inline constexpr char kRecordPath[] = "/q/blocks";
inline constexpr FileId kFile{1, 7};
inline constexpr std::int64_t kMoment = 1'700'000'000;
inline constexpr char kDecisionsPath[] = "/d/KorvessaActivations.kvl";
inline constexpr char kMailPath[] = "/m/KorvessaSMTPConfig.kvl";
inline constexpr char kMailSidePath[] = "/m/KorvessaSMTPConfig.kvh";
inline constexpr pid_t kProcess = 4711;
inline constexpr uid_t kAgentUser = 990;

class ActingTest : public testing::Test {
 protected:
  ActingTest() {
    store_.files[kPath] = {sum_, kFile};
    agent_.told = {shown_.event};
    agent_.told_alerts = {alert_};
    dropper_ = &processes_.Start(kProcess, kFile, kMoment - 10);
  }

  // The reply; "no reply" while it waits.
  Answer Block(const BlockRequest& request, const Caller& caller) {
    const auto answer = std::make_shared<Answer>(Answer{false, "no reply"});
    acting_.Block(caller, request, [answer, this](const Answer& said) {
      *answer = said;
      last_ = said;
    });
    return *answer;
  }
  Answer Block() { return Block(shown_, user_); }
  Answer Allow(const std::string& entry) {
    last_ = {false, "no reply"};
    acting_.Allow(user_, entry, [this](const Answer& said) { last_ = said; });
    return last_;
  }
  Answer Again(const std::string& path = kPath, const std::string& sum = std::string(64, 'a')) {
    return acting_.BlockAgain(agent_caller_, path, sum, {kProcess});
  }
  void ExpectUntouched(const Answer& answer, const std::string& why) {
    EXPECT_FALSE(answer.done);
    EXPECT_NE(answer.sentence.find(why), std::string::npos) << answer.sentence;
    EXPECT_TRUE(store_.files.contains(kPath));
    EXPECT_TRUE(store_.entries.empty());
    EXPECT_TRUE(dropper_->lives);
    EXPECT_FALSE(record_.Find(kPath, sum_).has_value());
  }
  // As it comes again after a Block.
  void ComeAgain() {
    store_.files[kPath] = {sum_, {1, 8}};
    dropper_ = &processes_.Start(kProcess, {1, 8}, kMoment + 100);
  }

  const std::string sum_ = std::string(64, 'a');
  const BlockRequest shown_{{"Running Processes", "/tmp/dropper:4711", kMoment, kMoment + 3}, true};
  const ShownAlert alert_{kMoment + 3, "AG,0123456789ABCDEF01234567"};
  const Caller user_{":1.5", 1000, true};
  const Caller agent_caller_{":1.9", kAgentUser, false};
  ToldEvents agent_;
  MemoryStore store_;
  MemoryProcesses processes_;
  ScriptedAuthority authority_;
  platform::MemoryFiles files_;
  platform::FakeClock clock_;
  BlockRecord record_{files_, clock_, kRecordPath};
  DecisionRecord decisions_{files_, kDecisionsPath};
  const std::function<bool(uid_t)> administrators_ = [](uid_t user) { return user == 1007; };
  const Caller root_{":1.1", 0, false};
  Acting acting_{{agent_, store_, processes_, authority_, record_, decisions_, files_, kMailPath, clock_,
                  kAgentUser, administrators_}};
  MemoryProcesses::Process* dropper_ = nullptr;
  Answer last_;
};

}  // namespace zendrix::act
