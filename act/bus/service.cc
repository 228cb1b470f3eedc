#include "act/bus/service.h"

#include <sdbus-c++/sdbus-c++.h>

#include <chrono>
#include <utility>

#include "platform/act_names.h"
#include "platform/linux/bus_message.h"

namespace zendrix::act {
namespace {

constexpr char kDaemon[] = "org.freedesktop.DBus";
constexpr std::chrono::seconds kDaemonTime{5};
constexpr char kGone[] = "The one who asked is gone.";

using Bytes = std::vector<std::uint8_t>;
using Result = sdbus::Result<bool, Bytes>;

std::string TextOf(const Bytes& bytes) {
  return {bytes.begin(), bytes.end()};
}

void Send(const Result& result, const Answer& answer) {
  try {
    result.returnResults(answer.done, Bytes(answer.sentence.begin(), answer.sentence.end()));
  } catch (const sdbus::Error&) {
    // A bus that is gone ends the helper at its next turn; what was done stays done.
  }
}

Reply ReplyTo(Result&& result) {
  return
      [shared = std::make_shared<Result>(std::move(result))](const Answer& answer) { Send(*shared, answer); };
}

}  // namespace

Service::Service(sdbus::IConnection& bus, Acting& acting)
    : bus_(bus),
      acting_(acting),
      daemon_(sdbus::createProxy(bus, kDaemon, "/org/freedesktop/DBus")),
      object_(sdbus::createObject(bus, platform::kActPath)) {
  object_->registerMethod("Block")
      .onInterface(platform::kActInterface)
      .implementedAs([this](Result&& result, const Bytes& monitor, const Bytes& description,
                            std::int64_t second, std::int64_t alert_second, bool shown) {
        const auto caller = CallerNow();
        const Reply reply = ReplyTo(std::move(result));
        if (!caller) return reply({false, kGone});
        acting_.Block(*caller, {{TextOf(monitor), TextOf(description), second, alert_second}, shown}, reply);
      });
  object_->registerMethod("Allow")
      .onInterface(platform::kActInterface)
      .implementedAs([this](Result&& result, const std::string& entry) {
        const auto caller = CallerNow();
        const Reply reply = ReplyTo(std::move(result));
        if (!caller) return reply({false, kGone});
        acting_.Allow(*caller, entry, reply);
      });
  object_->registerMethod("List").onInterface(platform::kActInterface).implementedAs([this](Result&& result) {
    const auto caller = CallerNow();
    Send(result, caller ? acting_.List(*caller) : Answer{false, kGone});
  });
  object_->registerMethod("BlockAgain")
      .onInterface(platform::kActInterface)
      .implementedAs([this](Result&& result, const Bytes& path, const std::string& sha256,
                            const std::vector<std::uint32_t>& processes) {
        const auto caller = CallerNow();
        if (!caller) return Send(result, {false, kGone});
        const std::vector<pid_t> numbers(processes.begin(), processes.end());
        Send(result, acting_.BlockAgain(*caller, TextOf(path), sha256, numbers));
      });
  object_->registerMethod("Decide")
      .onInterface(platform::kActInterface)
      .implementedAs([this](Result&& result, std::int64_t alert_second, const Bytes& code, bool block) {
        const auto caller = CallerNow();
        const Reply reply = ReplyTo(std::move(result));
        if (!caller) return reply({false, kGone});
        acting_.Decide(*caller, {alert_second, TextOf(code)}, block, reply);
      });
  object_->registerMethod("SetMail")
      .onInterface(platform::kActInterface)
      .implementedAs([this](Result&& result, const Bytes& settings) {
        const auto caller = CallerNow();
        const Reply reply = ReplyTo(std::move(result));
        if (!caller) return reply({false, kGone});
        acting_.SetMail(*caller, TextOf(settings), reply);
      });
  object_->finishRegistration();
  // Names that nobody has any more.
  bus_.addMatch(
      "type='signal',sender='org.freedesktop.DBus',path='/org/freedesktop/DBus',"
      "interface='org.freedesktop.DBus',member='NameOwnerChanged',arg2=''",
      [this](sdbus::Message& signal) {
        std::string name;
        try {
          signal >> name;
        } catch (const sdbus::Error&) {
          return;  // Nothing that the bus sends.
        }
        if (signal.getSender() == kDaemon) acting_.CallerGone(name);
      },
      sdbus::floating_slot);
}

Service::~Service() = default;

std::optional<Caller> Service::CallerNow() {
  ++calls_;
  const sdbus::Message* const call = object_->getCurrentlyProcessedMessage();
  Caller caller;
  caller.name = call->getSender();
  caller.may_ask = platform::AllowsInteractiveAuthorization(*call);
  try {
    // Not from /proc: a process number may be another's by now.
    daemon_->callMethod("GetConnectionUnixUser")
        .onInterface(kDaemon)
        .withTimeout(kDaemonTime)
        .withArguments(caller.name)
        .storeResultsTo(caller.user);
  } catch (const sdbus::Error&) {
    return std::nullopt;
  }
  return caller;
}

}  // namespace zendrix::act
