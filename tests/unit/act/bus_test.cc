// The real helper, started by a bus of the test's own for a real caller, with a stand-in for the computer's
// authority on that bus, and real files and processes.
#include <gtest/gtest.h>
#include <sdbus-c++/sdbus-c++.h>
#include <signal.h>
#include <sys/stat.h>

#include <cstring>
#include <ctime>
#include <future>

#include "act/block_record.h"
#include "agent/record/lines.h"
#include "family/intermediate/sha256.h"
#include "platform/act_names.h"
#include "platform/linux/linux_act_helper.h"
#include "support/temporary_folder.h"
#include "unit/act/dropper.h"
#include "unit/act/fake_polkit.h"
#include "unit/platform/private_bus.h"

namespace zendrix::act {
namespace {

using platform::ActAnswer;
using platform::ErrorKind;
using Word = test::FakePolkit::Word;

// Never reached, however busy the machine is.
constexpr std::chrono::seconds kLong{100};

// What the bus starts the helper with.
std::string ServiceFolder(const test::TemporaryFolder& folder, const std::string& more) {
  const std::string services = folder.Path("services");
  std::filesystem::create_directory(services);
  folder.Write("services/act.service",
               std::string("[D-BUS Service]\nName=") + platform::kActName +
                   "\nExec=/bin/sh -c 'DBUS_SYSTEM_BUS_ADDRESS=$DBUS_STARTER_ADDRESS exec " ZENDRIX_ACT
                   " --folder " +
                   folder.Path("quarantine") + " --file " + folder.Path("monitoring") + " --decisions " +
                   folder.Path("decisions") + " --mail " + folder.Path("mail.kvl") + " " + more + "'\n");
  return services;
}

class Computer {
 public:
  explicit Computer(const std::string& more = "--agent " + std::to_string(geteuid()))
      : bus_(ServiceFolder(folder_, more)) {
    TellOf(dropper_.path() + ":" + std::to_string(dropper_.process()));
  }

  // The Agent writes an alert with this event.
  void TellOf(const std::string& description) {
    agent::Item item;
    item.monitor = "Running Processes";
    item.description = description;
    item.subject = dropper_.path();
    agent::Alert alert;
    alert.subject = item.subject;
    alert.risk = 0.98;
    alert.code = code_;
    alert.change = "0.98";
    alert.members = {item};
    event_ = {"Running Processes", description, std::to_string(now_), std::to_string(now_), true};
    folder_.Write("monitoring", agent::RenderBatch(agent::Form::kHome, {now_, "host", "1"},
                                                   {true, {agent::CameEvent(item)}, {alert}})
                                    .bytes);
    chmod(folder_.Path("monitoring").c_str(), 0640);
  }
  const std::string code_ = "AG,0123456789ABCDEF01234567";
  // The program was there before the Agent told of it, as the files' times say.
  const std::int64_t now_ = std::time(nullptr) + 1;

  ActAnswer Block() { return Told(helper_.Block(event_)); }
  ActAnswer Allow(const std::string& entry) { return Told(helper_.Allow(entry)); }
  ActAnswer List() { return Told(helper_.List()); }
  ActAnswer BlockAgain(const std::string& path, const std::string& sha256) {
    return Told(helper_.BlockAgain(path, sha256, {static_cast<std::uint32_t>(dropper_.process())}));
  }
  std::string SumOfDropper() const { return family::Sha256Of(folder_.Read("dropper")); }
  void ExpectUntouched(const ActAnswer& answer, const std::string& why) {
    EXPECT_FALSE(answer.done);
    EXPECT_NE(answer.sentence.find(why), std::string::npos) << answer.sentence;
    EXPECT_TRUE(dropper_.IsThere());
    EXPECT_FALSE(dropper_.WasKilled());
    EXPECT_FALSE(std::filesystem::exists(folder_.Path("quarantine/blocks")));
  }

  static ActAnswer Told(const platform::Result<ActAnswer>& answer) {
    return answer ? answer.value() : ActAnswer{false, "no answer: " + answer.error().text};
  }

  const test::TemporaryFolder folder_{test::FolderOnDisk()};
  test::Dropper dropper_{folder_.Path("dropper")};
  test::PrivateBus bus_;
  platform::LinuxActHelper helper_{{kLong, kLong, kLong}};
  platform::QuarantineEvent event_;
};

TEST(ActBusTest, BlockAsksThenMovesTheFileAndEndsTheProgramAndAllowBringsItBack) {
  Computer computer;
  test::FakePolkit polkit;
  const std::string contents = computer.folder_.Read("dropper");
  const std::string process = std::to_string(computer.dropper_.process());
  const ActAnswer blocked = computer.Block();
  EXPECT_TRUE(blocked.done) << blocked.sentence;
  EXPECT_NE(blocked.sentence.find("was moved to quarantine"), std::string::npos) << blocked.sentence;
  EXPECT_NE(blocked.sentence.find("Ended process"), std::string::npos) << blocked.sentence;
  EXPECT_FALSE(computer.dropper_.IsThere());
  EXPECT_TRUE(computer.dropper_.WasKilled());
  ASSERT_EQ(polkit.questions().size(), 1U);
  EXPECT_EQ(polkit.questions()[0].kind, "system-bus-name");
  EXPECT_EQ(polkit.questions()[0].action, "com.korvessa.zendrix.block");
  EXPECT_EQ(polkit.questions()[0].flags, 1U) << "the user may be asked";
  EXPECT_EQ(polkit.questions()[0].details.at("path"), "\"" + computer.dropper_.path() + "\"");
  EXPECT_EQ(polkit.questions()[0].details.at("process"), process);
  const auto blocks = ParseBlocks(computer.folder_.Read("quarantine/blocks"));
  ASSERT_TRUE(blocks && blocks->size() == 1);
  EXPECT_EQ(blocks->front().path, computer.dropper_.path());
  EXPECT_EQ(blocks->front().sha256, family::Sha256Of(contents));
  EXPECT_EQ(blocks->front().user, geteuid());

  const ActAnswer list = computer.List();
  ASSERT_TRUE(list.done);
  ASSERT_NE(list.sentence.find(computer.dropper_.path()), std::string::npos);
  const ActAnswer allowed = computer.Allow(list.sentence.substr(0, 32));
  EXPECT_TRUE(allowed.done) << allowed.sentence;
  EXPECT_EQ(polkit.questions().back().action, "com.korvessa.zendrix.allow");
  EXPECT_EQ(computer.folder_.Read("dropper"), contents);
  EXPECT_EQ(computer.List().sentence, "");
}

TEST(ActBusTest, ADecisionIsFiledForTheAgentsGroupToRead) {
  Computer computer;
  test::FakePolkit polkit;
  const ActAnswer decided = Computer::Told(computer.helper_.Decide(computer.now_, computer.code_, true));
  EXPECT_TRUE(decided.done) << decided.sentence;
  EXPECT_EQ(polkit.questions().at(0).action, "com.korvessa.zendrix.decide-block");
  EXPECT_NE(polkit.questions().at(0).details.at("path").find(computer.dropper_.path().substr(0, 40)),
            std::string::npos);
  EXPECT_EQ(computer.folder_.Read("decisions"), computer.code_ + ",1\r\n");
  struct stat status = {};
  ASSERT_EQ(stat(computer.folder_.Path("decisions").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
  const ActAnswer unknown = Computer::Told(computer.helper_.Decide(computer.now_ + 1, computer.code_, false));
  EXPECT_FALSE(unknown.done);
  EXPECT_EQ(computer.folder_.Read("decisions"), computer.code_ + ",1\r\n");
}

TEST(ActBusTest, MailSettingsAreLaidDownForTheMailersGroup) {
  Computer computer;
  test::FakePolkit polkit;
  const std::string settings("Address=a@b;Server=mx;Name=\xE4");
  const ActAnswer laid = Computer::Told(computer.helper_.SetMail(settings));
  EXPECT_TRUE(laid.done) << laid.sentence;
  EXPECT_EQ(polkit.questions().at(0).action, "com.korvessa.zendrix.mail");
  EXPECT_EQ(computer.folder_.Read("mail.kvl"), settings);
  struct stat status = {};
  ASSERT_EQ(stat(computer.folder_.Path("mail.kvl").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0640U);
  EXPECT_TRUE(Computer::Told(computer.helper_.SetMail("")).done);
  EXPECT_EQ(computer.folder_.Read("mail.kvl"), "Send Alerts To=;SMTP Server=:25;");
}

// The service manager ends the helper while somebody is being asked: he was left waiting for his whole time.
TEST(ActBusTest, AHelperThatIsEndedTellsWhoeverWaits) {
  Computer computer;
  test::FakePolkit polkit(Word::kNone);
  auto answer = std::async(std::launch::async, [&] { return computer.Block(); });
  ASSERT_TRUE(polkit.WaitForQuestion());
  const auto bus = sdbus::createSystemBusConnection();
  const auto daemon = sdbus::createProxy(*bus, "org.freedesktop.DBus", "/org/freedesktop/DBus");
  std::uint32_t process = 0;
  daemon->callMethod("GetConnectionUnixProcessID")
      .onInterface("org.freedesktop.DBus")
      .withArguments(std::string(platform::kActName))
      .storeResultsTo(process);
  ASSERT_EQ(kill(static_cast<pid_t>(process), SIGTERM), 0);
  computer.ExpectUntouched(answer.get(), "The computer did not say");
  EXPECT_TRUE(computer.List().done) << "the next question starts a new helper";
}

TEST(ActBusTest, TheAuthoritysRefusalsChangeNothing) {
  Computer computer;
  const std::pair<Word, const char*> refusals[] = {{Word::kNo, "You have no permission"},
                                                   {Word::kDismissed, "question for permission was closed"},
                                                   {Word::kChallenge, "nobody here who can be asked"}};
  for (const auto& [word, sentence] : refusals) {
    test::FakePolkit polkit(word);
    computer.ExpectUntouched(computer.Block(), sentence);
  }
}

TEST(ActBusTest, WithoutAnAuthorityNothingIsDone) {
  Computer computer;
  computer.ExpectUntouched(computer.Block(), "The computer did not say");
}

TEST(ActBusTest, AnAuthorityThatEndsMidWayChangesNothing) {
  Computer computer;
  auto polkit = std::make_unique<test::FakePolkit>(Word::kNone);
  auto answer = std::async(std::launch::async, [&] { return computer.Block(); });
  ASSERT_TRUE(polkit->WaitForQuestion());
  polkit.reset();
  computer.ExpectUntouched(answer.get(), "The computer did not say");
}

TEST(ActBusTest, ACallerThatIsGoneWithdrawsItsQuestion) {
  Computer computer;
  test::FakePolkit polkit(Word::kNone);
  {
    const auto bus = sdbus::createSystemBusConnection();
    const auto helper = sdbus::createProxy(*bus, platform::kActName, platform::kActPath);
    auto call = helper->createMethodCall(platform::kActInterface, "Block");
    const auto bytes = [](const std::string& text) {
      return std::vector<std::uint8_t>(text.begin(), text.end());
    };
    call << bytes(computer.event_.monitor) << bytes(computer.event_.description) << computer.now_
         << computer.now_ << true;
    const auto pending = helper->callMethod(call, [](sdbus::MethodReply&, const sdbus::Error*) {});
    bus->processPendingRequest();
    ASSERT_TRUE(polkit.WaitForQuestion());
    EXPECT_EQ(polkit.questions()[0].flags, 0U) << "this caller does not wait for a user";
  }
  ASSERT_TRUE(polkit.WaitForWithdrawal());
  polkit.Answer(Word::kYes);
  EXPECT_EQ(computer.List().sentence, "");
  EXPECT_TRUE(computer.dropper_.IsThere());
  EXPECT_FALSE(computer.dropper_.WasKilled());
}

TEST(ActBusTest, WhatTheAgentDidNotTellIsRefusedUnasked) {
  Computer computer;
  test::FakePolkit polkit;
  computer.event_.description = "/bin/true:" + std::to_string(computer.dropper_.process());
  computer.ExpectUntouched(computer.Block(), "The Agent has not told of this event");
  EXPECT_TRUE(polkit.questions().empty());
}

TEST(ActBusTest, ALinkInPlaceOfTheFileIsRefused) {
  Computer computer;
  test::FakePolkit polkit;
  std::filesystem::rename(computer.dropper_.path(), computer.folder_.Path("moved"));
  std::filesystem::create_symlink("moved", computer.dropper_.path());
  const ActAnswer answer = computer.Block();
  EXPECT_NE(answer.sentence.find("symbolic link"), std::string::npos) << answer.sentence;
  EXPECT_TRUE(std::filesystem::exists(computer.folder_.Path("moved")));
  EXPECT_FALSE(computer.dropper_.WasKilled());
  EXPECT_TRUE(polkit.questions().empty());
}

TEST(ActBusTest, AFileThatWasReplacedUnderTheRunningProgramIsRefused) {
  Computer computer;
  test::FakePolkit polkit;
  std::filesystem::rename(computer.dropper_.path(), computer.folder_.Path("moved"));
  computer.dropper_.Write();
  computer.ExpectUntouched(computer.Block(), "is not the file");
  EXPECT_TRUE(polkit.questions().empty());
}

TEST(ActBusTest, TheAgentBlocksAgainWhatWasBlockedAndNothingElse) {
  Computer computer;
  test::FakePolkit polkit;
  const std::string sum = computer.SumOfDropper();
  EXPECT_FALSE(computer.BlockAgain(computer.dropper_.path(), sum).done);
  ASSERT_TRUE(computer.Block().done);
  computer.dropper_.Write();
  computer.dropper_.Start();
  const std::string other = computer.folder_.Path("copy");
  std::filesystem::copy_file(computer.dropper_.path(), other);
  EXPECT_FALSE(computer.BlockAgain(other, sum).done);
  EXPECT_TRUE(std::filesystem::exists(other));
  const ActAnswer again = computer.BlockAgain(computer.dropper_.path(), sum);
  EXPECT_TRUE(again.done) << again.sentence;
  EXPECT_FALSE(computer.dropper_.IsThere());
  EXPECT_TRUE(computer.dropper_.WasKilled());
  EXPECT_EQ(polkit.questions().size(), 1U) << "nobody was asked again";
}

TEST(ActBusTest, OtherContentsAtABlockedPathStay) {
  Computer computer;
  test::FakePolkit polkit;
  const std::string sum = computer.SumOfDropper();
  ASSERT_TRUE(computer.Block().done);
  std::filesystem::copy_file("/bin/true", computer.dropper_.path());
  EXPECT_FALSE(computer.BlockAgain(computer.dropper_.path(), sum).done);
  EXPECT_FALSE(computer.BlockAgain(computer.dropper_.path(), computer.SumOfDropper()).done);
  EXPECT_TRUE(computer.dropper_.IsThere());
}

TEST(ActBusTest, WhoeverIsNotTheAgentBlocksNothingAgain) {
  Computer computer("--agent " + std::to_string(geteuid() + 1));
  const ActAnswer answer = computer.BlockAgain(computer.dropper_.path(), computer.SumOfDropper());
  EXPECT_EQ(answer.sentence, "Only the Agent may ask for this.");
}

TEST(ActBusTest, TheHelperEndsByItselfAndTheBusStartsItAnew) {
  Computer computer("--idle 1 --agent " + std::to_string(geteuid()));
  EXPECT_TRUE(computer.List().done);
  const auto bus = sdbus::createSystemBusConnection();
  const auto daemon = sdbus::createProxy(*bus, "org.freedesktop.DBus", "/org/freedesktop/DBus");
  bool there = true;
  for (int i = 0; there && i < 100'000; ++i)
    daemon->callMethod("NameHasOwner")
        .onInterface("org.freedesktop.DBus")
        .withArguments(std::string(platform::kActName))
        .storeResultsTo(there);
  EXPECT_FALSE(there);
  EXPECT_TRUE(computer.List().done);
}

TEST(ActBusTest, TheHelperStaysAsLongAsTheUserThinks) {
  Computer computer("--idle 1 --agent " + std::to_string(geteuid()));
  test::FakePolkit polkit(Word::kNone);
  auto answer = std::async(std::launch::async, [&] { return computer.Block(); });
  ASSERT_TRUE(polkit.WaitForQuestion());
  for (int i = 0; i < 3; ++i) EXPECT_TRUE(computer.List().done);
  polkit.Answer(Word::kYes);
  const ActAnswer said = answer.get();
  EXPECT_TRUE(said.done) << said.sentence;
}

TEST(ActBusTest, WithoutAHelperOrABusTheCallerIsToldSo) {
  const platform::QuarantineEvent event{"Running Processes", "/x:1", "1", "1", true};
  {
    const test::PrivateBus bare;
    platform::LinuxActHelper helper({kLong, kLong, kLong});
    EXPECT_EQ(helper.Block(event).error().kind, ErrorKind::kUnavailable);
    EXPECT_EQ(helper.BlockAgain("/x", "", {}).error().kind, ErrorKind::kUnavailable);
  }
  const test::EnvironmentVariable nowhere("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/no/bus/here");
  EXPECT_EQ(platform::LinuxActHelper().List().error().kind, ErrorKind::kUnavailable);
}

TEST(ActBusTest, ABusThatSaysNothingCostsTheDeadline) {
  Computer computer;
  computer.bus_.Freeze(true);
  platform::LinuxActHelper hasty({kLong, std::chrono::milliseconds(1), kLong});
  EXPECT_EQ(hasty.List().error().kind, ErrorKind::kOther);
  computer.bus_.Freeze(false);
}

}  // namespace
}  // namespace zendrix::act
