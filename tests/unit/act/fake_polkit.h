// The computer's authority on a bus of the test's own. It keeps its answers back until the test gives them.
#pragma once

#include <sdbus-c++/sdbus-c++.h>

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

namespace zendrix::test {

class FakePolkit {
 public:
  struct Question {
    std::string kind;
    std::string caller;
    std::string action;
    std::uint32_t flags = 0;
    std::map<std::string, std::string> details;
  };
  enum class Word { kYes, kNo, kChallenge, kDismissed, kNone };

  explicit FakePolkit(Word word = Word::kYes)
      : word_(word), bus_(sdbus::createSystemBusConnection("org.freedesktop.PolicyKit1")) {
    object_ = sdbus::createObject(*bus_, "/org/freedesktop/PolicyKit1/Authority");
    object_->registerMethod("CheckAuthorization")
        .onInterface(kInterface)
        .implementedAs([this](Reply&& reply, const Subject& subject, const std::string& action,
                              const Details& details, std::uint32_t flags, const std::string&) {
          const std::lock_guard guard(mutex_);
          const auto name = subject.get<1>().at("name").get<std::string>();
          questions_.push_back({subject.get<0>(), name, action, flags, details});
          if (word_ == Word::kNone) {
            waiting_.push_back(std::move(reply));
          } else {
            Say(reply, word_);
          }
          changed_.notify_all();
        });
    object_->registerMethod("CancelCheckAuthorization")
        .onInterface(kInterface)
        .implementedAs([this](const std::string&) {
          const std::lock_guard guard(mutex_);
          ++withdrawn_;
          changed_.notify_all();
        });
    object_->finishRegistration();
    bus_->enterEventLoopAsync();
  }
  ~FakePolkit() {
    bus_->leaveEventLoop();
    waiting_.clear();  // they belong to the bus
  }
  FakePolkit(const FakePolkit&) = delete;
  FakePolkit& operator=(const FakePolkit&) = delete;

  std::vector<Question> questions() {
    const std::lock_guard guard(mutex_);
    return questions_;
  }
  bool WaitForQuestion() {
    return Wait([this] { return !questions_.empty(); });
  }
  bool WaitForWithdrawal() {
    return Wait([this] { return withdrawn_ > 0; });
  }
  // Answers what waits.
  void Answer(Word word) {
    const std::lock_guard guard(mutex_);
    for (const Reply& reply : waiting_) Say(reply, word);
    waiting_.clear();
  }

 private:
  using Details = std::map<std::string, std::string>;
  using Outcome = sdbus::Struct<bool, bool, Details>;
  using Reply = sdbus::Result<Outcome>;
  using Subject = sdbus::Struct<std::string, std::map<std::string, sdbus::Variant>>;
  static constexpr char kInterface[] = "org.freedesktop.PolicyKit1.Authority";

  static void Say(const Reply& reply, Word word) {
    Details details;
    if (word == Word::kDismissed) details["polkit.dismissed"] = "true";
    reply.returnResults(Outcome{word == Word::kYes, word == Word::kChallenge, details});
  }

  // For hangs only.
  bool Wait(const std::function<bool()>& holds) {
    std::unique_lock lock(mutex_);
    return changed_.wait_for(lock, std::chrono::seconds(100), holds);
  }

  const Word word_;
  std::mutex mutex_;
  std::condition_variable changed_;
  std::vector<Question> questions_;
  std::vector<Reply> waiting_;
  int withdrawn_ = 0;
  std::unique_ptr<sdbus::IConnection> bus_;
  std::unique_ptr<sdbus::IObject> object_;
};

}  // namespace zendrix::test
