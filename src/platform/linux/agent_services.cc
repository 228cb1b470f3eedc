#include "platform/linux/agent_services.h"

namespace zendrix::platform {
namespace {

// `ask` puts the question to a service manager.
template <class Ask>
auto AskWhoKnows(ServiceManager& manager, LocalServiceManager& local, const Ask& ask) {
  if (local.InCharge()) return ask(local);
  auto answer = ask(manager);
  if (answer) return answer;
  const ErrorKind kind = answer.error().kind;
  if (kind != ErrorKind::kNotFound && kind != ErrorKind::kUnavailable) return answer;
  auto second = ask(local);
  return second ? second : answer;
}

}  // namespace

Result<int> AgentServices::Run(const std::string& service, ServiceMethod method) {
  return AskWhoKnows(manager_, local_, [&](ServiceManager& asked) { return asked.Run(service, method); });
}

Result<ServiceProperties> AgentServices::Properties(const std::string& service) {
  return AskWhoKnows(manager_, local_, [&](ServiceManager& asked) { return asked.Properties(service); });
}

}  // namespace zendrix::platform
