#include "act/bus/polkit.h"

#include <sdbus-c++/sdbus-c++.h>

#include <map>
#include <string>

namespace zendrix::act {
namespace {

constexpr char kName[] = "org.freedesktop.PolicyKit1";
constexpr char kPath[] = "/org/freedesktop/PolicyKit1/Authority";
constexpr char kInterface[] = "org.freedesktop.PolicyKit1.Authority";
constexpr std::uint32_t kAllowUserInteraction = 1;

using Details = std::map<std::string, std::string>;
using Outcome = sdbus::Struct<bool, bool, Details>;  // authorized, challenge, details
using Subject = sdbus::Struct<std::string, std::map<std::string, sdbus::Variant>>;

std::string NameOf(std::uint64_t ticket) {
  return "zendrix-act-" + std::to_string(ticket);
}

Verdict VerdictOf(const Outcome& outcome) {
  if (outcome.get<0>()) return Verdict::kYes;
  const Details& details = outcome.get<2>();
  const auto dismissed = details.find("polkit.dismissed");
  if (dismissed != details.end() && dismissed->second == "true") return Verdict::kDismissed;
  return outcome.get<1>() ? Verdict::kNobodyToAsk : Verdict::kNo;
}

}  // namespace

Polkit::Polkit(sdbus::IConnection& bus, std::chrono::milliseconds patience)
    : proxy_(sdbus::createProxy(bus, kName, kPath)), patience_(patience) {}

Polkit::~Polkit() = default;

void Polkit::Ask(const Caller& caller, std::string_view action, const AskedAbout& about, std::uint64_t ticket,
                 std::function<void(Verdict)> answer) {
  const Subject subject{"system-bus-name", {{"name", sdbus::Variant(caller.name)}}};
  // The authority takes details from the superuser, who this is.
  const Details details{{"path", about.path}, {"process", about.process}};
  const std::uint32_t flags = caller.may_ask ? kAllowUserInteraction : 0;
  try {
    proxy_->callMethodAsync("CheckAuthorization")
        .onInterface(kInterface)
        .withTimeout(patience_)
        .withArguments(subject, std::string(action), details, flags, NameOf(ticket))
        .uponReplyInvoke([this, ticket, answer](const sdbus::Error* error, const Outcome& outcome) {
          if (!error) return answer(VerdictOf(outcome));
          // A question that goes on would be answered to nobody.
          Withdraw(ticket);
          answer(Verdict::kUnavailable);
        });
  } catch (const sdbus::Error&) {
    answer(Verdict::kUnavailable);
  }
}

void Polkit::Withdraw(std::uint64_t ticket) {
  try {
    auto call = proxy_->createMethodCall(kInterface, "CancelCheckAuthorization");
    call << NameOf(ticket);
    call.dontExpectReply();
    proxy_->callMethod(call);
  } catch (const sdbus::Error&) {
    // An authority that is gone asks nobody any more.
  }
}

}  // namespace zendrix::act
