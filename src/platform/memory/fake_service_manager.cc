#include "platform/memory/fake_service_manager.h"

#include <algorithm>

namespace zendrix::platform {
namespace {

std::string Lower(std::string name) {
  std::transform(name.begin(), name.end(), name.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return name;
}

}  // namespace

void FakeServiceManager::Set(const std::string& service, const std::string& state) {
  auto [entry, fresh] = services_.try_emplace(Lower(service));
  if (fresh) entry->second = {state, service, "Auto"};
  entry->second.state = state;
}

void FakeServiceManager::SetMissing(const std::string& service) {
  services_.erase(Lower(service));
}

ServiceProperties& FakeServiceManager::At(const std::string& service) {
  return services_.at(Lower(service));
}

Result<int> FakeServiceManager::Run(const std::string& service, ServiceMethod method) {
  runs.emplace_back(service, method);
  const auto found = services_.find(Lower(service));
  if (unavailable) return Error{ErrorKind::kUnavailable, "the service manager does not answer"};
  if (found == services_.end()) return Error{ErrorKind::kNotFound, service + ": no such service"};
  if (auto& answers = scripted_[method]; !answers.empty()) {
    const int answer = answers.front();
    answers.pop_front();
    return answer;
  }
  ServiceProperties& properties = found->second;
  const bool up = properties.state == "Running" || properties.state == "Start Pending";
  if (method == ServiceMethod::kStart) {
    if (up) return 10;
    if (properties.start_mode == "Disabled") return 14;
    properties.state = "Running";
  } else {
    if (!up) return properties.state == "Stop Pending" ? 5 : 6;
    properties.state = "Stopped";
  }
  return 0;
}

Result<ServiceProperties> FakeServiceManager::Properties(const std::string& service) {
  const auto found = services_.find(Lower(service));
  if (unavailable) return Error{ErrorKind::kUnavailable, "the service manager does not answer"};
  if (found == services_.end()) return Error{ErrorKind::kNotFound, service + ": no such service"};
  return found->second;
}

}  // namespace zendrix::platform
