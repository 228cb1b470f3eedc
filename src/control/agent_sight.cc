#include "control/agent_sight.h"

#include <algorithm>

#include "control/agent_control.h"
#include "core/initial.h"
#include "core/letter_case.h"

namespace zendrix::control {
namespace {

// A name that can be typed behind a command as it stands; otherwise a word that says what belongs there.
std::string NameToType(const std::string& name) {
  const auto is_plain = [](char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' ||
           c == '-' || c == '.';
  };
  const bool plain = !name.empty() && name.front() != '-' && std::all_of(name.begin(), name.end(), is_plain);
  return plain ? name : "USER";
}

// There is no file.
std::string WhyThereIsNone(core::AppState& state) {
  const auto service = state.seams.services.Properties(kServiceName);
  if (!service)
    return "The Agent is not installed on this computer: an administrator has to install the package "
           "zendrix-agent.";
  if (core::UpperCase(service.value().state) != "RUNNING") return {};
  return "The Agent is running but has not written anything yet.";
}

}  // namespace

std::string WhyNothingIsSeen(core::AppState& state) {
  if (!state.Installed) return {};
  const auto file =
      state.seams.files.Open(platform::JoinPath(state.ProgramFolder, core::kMonitoringFileName));
  if (file) return {};
  switch (file.error().kind) {
    case platform::ErrorKind::kPermissionDenied:
      return "You may not see what the Agent writes: an administrator has to run \"adduser " +
             NameToType(state.seams.host.UserName()) + " " + kViewersGroup +
             "\", which takes effect when you log in again.";
    case platform::ErrorKind::kNotFound:
      return WhyThereIsNone(state);
    default:
      return "What the Agent writes cannot be read: " + file.error().text + ".";
  }
}

}  // namespace zendrix::control
