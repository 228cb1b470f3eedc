#include "platform/linux/helper_agent_link.h"

#include <future>
#include <utility>

#include "platform/linux/posix.h"

namespace zendrix::platform {
namespace {

constexpr std::int64_t kLookEveryMs = 50;

Result<ActAnswer> NoThread() {
  return Error{ErrorKind::kUnavailable, "no thread to be had"};
}

}  // namespace

// What the thread and this one share; it goes with the last of the two.
struct HelperAgentLink::Asked {
  std::promise<Result<ActAnswer>> promise;
  std::future<Result<ActAnswer>> answer = promise.get_future();
};

HelperAgentLink::HelperAgentLink(ActHelper& helper, TimerMaker* timers) : helper_(helper) {
  if (timers) timer_ = timers->MakeTimer([this] { Look(); });
}

void HelperAgentLink::Decide(std::int64_t alert_second, const std::string& code, bool block,
                             OnTrouble trouble) {
  Run({[&helper = helper_, alert_second, code, block] { return helper.Decide(alert_second, code, block); },
       "The Agent was not told of your decision, which is kept in your own files. ", std::move(trouble)});
}

void HelperAgentLink::SetMail(const std::string& settings, OnTrouble trouble) {
  Run({[&helper = helper_, settings] { return helper.SetMail(settings); },
       "The service that mails alerts was not told of your settings, which are kept in your own files. ",
       std::move(trouble)});
}

void HelperAgentLink::Run(Errand errand) {
  if (!timer_) return Tell(errand, errand.ask());
  waiting_.push_back(std::move(errand));
  if (!asked_) StartNext();
}

void HelperAgentLink::StartNext() {
  asked_ = std::make_shared<Asked>();
  const auto work = [asked = asked_, ask = waiting_.front().ask] { asked->promise.set_value(ask()); };
  if (!RunInBackground(work)) asked_->promise.set_value(NoThread());
  timer_->Start(kLookEveryMs);
}

void HelperAgentLink::Look() {
  if (!asked_ || asked_->answer.wait_for(std::chrono::seconds(0)) != std::future_status::ready) return;
  const auto answer = asked_->answer.get();
  const Errand done = std::move(waiting_.front());
  waiting_.pop_front();
  asked_.reset();
  timer_->Stop();
  if (!waiting_.empty()) StartNext();
  // Last, for a box serves the message loop, and this timer with it.
  Tell(done, answer);
}

void HelperAgentLink::Tell(const Errand& errand, const Result<ActAnswer>& answer) {
  if (answer && answer.value().done) return;
  if (answer) return errand.trouble(errand.not_told + answer.value().sentence);
  errand.trouble(errand.not_told + (answer.error().kind == ErrorKind::kUnavailable
                                        ? "The helper of the package zendrix-agent is not there."
                                        : "Its helper did not answer in time."));
}

}  // namespace zendrix::platform
