#include "platform/linux/linux_act_helper.h"

#include <sdbus-c++/sdbus-c++.h>

#include <array>
#include <charconv>
#include <functional>
#include <string_view>

#include "platform/act_names.h"
#include "platform/linux/bounded_call.h"
#include "platform/linux/bus_message.h"

namespace zendrix::platform {
namespace {

using Bytes = std::vector<std::uint8_t>;
using Fill = std::function<void(sdbus::MethodCall& call)>;
using SteadyClock = std::chrono::steady_clock;

constexpr char kLate[] = "the helper that acts did not answer in time";

Bytes BytesOf(const std::string& text) {
  return {text.begin(), text.end()};
}

// What no event has, when the text is no number: the helper knows no such event then.
std::int64_t SecondOf(std::string_view text) {
  std::int64_t second = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), second);
  return error == std::errc() && end == text.data() + text.size() ? second : -1;
}

// Whether the error says that nobody was there to be asked.
bool IsAbsence(const std::string& name) {
  constexpr std::array<std::string_view, 8> kAbsent = {
      "org.freedesktop.DBus.Error.ServiceUnknown", "org.freedesktop.DBus.Error.NameHasNoOwner",
      "org.freedesktop.DBus.Error.AccessDenied",   "org.freedesktop.DBus.Error.UnknownObject",
      "org.freedesktop.DBus.Error.UnknownMethod",  "org.freedesktop.DBus.Error.UnknownInterface",
      "org.freedesktop.systemd1.NoSuchUnit",       "org.freedesktop.systemd1.UnitMasked"};
  for (const std::string_view absent : kAbsent)
    if (name == absent) return true;
  return name.starts_with("org.freedesktop.DBus.Error.Spawn.");
}

Result<ActAnswer> Talk(const char* method, const Fill& fill, SteadyClock::time_point deadline) {
  std::unique_ptr<sdbus::IConnection> bus;
  try {
    bus = sdbus::createSystemBusConnection();
  } catch (const sdbus::Error& error) {
    return Error{ErrorKind::kUnavailable, error.what()};
  }
  try {
    const auto helper = sdbus::createProxy(*bus, kActName, kActPath);
    auto call = helper->createMethodCall(kActInterface, method);
    fill(call);
    AllowInteractiveAuthorization(call);
    const auto left = std::chrono::duration_cast<std::chrono::microseconds>(deadline - SteadyClock::now());
    if (left.count() <= 0) return Error{ErrorKind::kUnavailable, kLate};  // not asked yet
    auto reply = helper->callMethod(call, static_cast<std::uint64_t>(left.count()));
    ActAnswer answer;
    Bytes sentence;
    reply >> answer.done >> sentence;
    answer.sentence.assign(sentence.begin(), sentence.end());
    return answer;
  } catch (const sdbus::Error& error) {
    return Error{IsAbsence(error.getName()) ? ErrorKind::kUnavailable : ErrorKind::kOther, error.what()};
  }
}

Result<ActAnswer> Ask(const char* method, std::chrono::milliseconds limit, Fill fill) {
  const auto deadline = SteadyClock::now() + limit;
  return WithinDeadline<ActAnswer>(
      deadline, [method, fill = std::move(fill), deadline] { return Talk(method, fill, deadline); },
      []() -> Result<ActAnswer> {
        return Error{ErrorKind::kOther, kLate};
      });
}

}  // namespace

Result<ActAnswer> LinuxActHelper::Block(const QuarantineEvent& event) {
  return Ask("Block", deadlines_.asked, [event](sdbus::MethodCall& call) {
    call << BytesOf(event.monitor) << BytesOf(event.description) << SecondOf(event.event_utc)
         << SecondOf(event.alert) << event.shown;
  });
}

Result<ActAnswer> LinuxActHelper::Allow(const std::string& entry) {
  return Ask("Allow", deadlines_.asked, [entry](sdbus::MethodCall& call) { call << entry; });
}

Result<ActAnswer> LinuxActHelper::List() {
  return Ask("List", deadlines_.list, [](sdbus::MethodCall&) {});
}

Result<ActAnswer> LinuxActHelper::BlockAgain(const std::string& path, const std::string& sha256,
                                             const std::vector<std::uint32_t>& processes) {
  return Ask("BlockAgain", deadlines_.again, [path, sha256, processes](sdbus::MethodCall& call) {
    call << BytesOf(path) << sha256 << processes;
  });
}

Result<ActAnswer> LinuxActHelper::Decide(std::int64_t alert_second, const std::string& code, bool block) {
  return Ask("Decide", deadlines_.asked, [alert_second, code, block](sdbus::MethodCall& call) {
    call << alert_second << BytesOf(code) << block;
  });
}

Result<ActAnswer> LinuxActHelper::SetMail(const std::string& settings) {
  return Ask("SetMail", deadlines_.asked, [settings](sdbus::MethodCall& call) { call << BytesOf(settings); });
}

}  // namespace zendrix::platform
