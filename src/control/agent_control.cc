#include "control/agent_control.h"

#include "core/letter_case.h"
#include "widgets/wait_pointer.h"

namespace zendrix::control {
namespace {

constexpr char kLineEnd[] = "\r\n";

// The results that mean the same after either method.
std::string CommonMessage(int return_value) {
  switch (return_value) {
    case 1:
      return "The request is not supported.";
    case 2:
      return "The user did not have the necessary access.";
    case 4:
      return "The requested control code is not valid, or it is unacceptable to the service.";
    case 5:
      return "The requested control code cannot be sent to the service because the state of the service.";
    case 13:
      return "The service failed to find the service needed from a dependent service.";
    case 14:
      return "The service has been disabled from the system.";
    case 15:
      return "The service does not have the correct authentication to run on the system.";
    case 16:
      return "This service is being removed from the system.";
    case 17:
      return "There is no execution thread for the service.";
    case 19:
      return "There is a service running under the same name.";
    case 20:
      return "There are invalid characters in the name of the service.";
    case 21:
      return "Invalid parameters have been passed to the service.";
    case 22:
      return "The account, which this service is to run under is either invalid or lacks the permissions to "
             "run "
             "the service.";
    case 23:
      return "The service exists in the database of services available from the system.";
    case 24:
      return "The service is currently paused in the system.";
    default:
      return {};
  }
}

}  // namespace

std::string StopMessage(int return_value) {
  switch (return_value) {
    case 3:
      return "The Zendrix Agent cannot be stopped because other services that are running are dependent on "
             "it.";
    case 6:
      return "The Zendrix Agent is not running.";
    case 7:
      return "The Zendrix Agent could not be disabled in a timely fashion.";
    case 8:
      return "Unknown failure when stopping the Zendrix Agent.";
    case 9:
      return "The Zendrix Agent executable was not found.";
    case 10:
      return "The Zendrix Agent is already stopped";
    case 11:
      return "The service database is locked.";
    case 12:
      return "A dependency which this service relies on has been removed from the system.";
    case 18:
      return "There are circular dependencies when stopping the service.";
    default:
      return CommonMessage(return_value);
  }
}

std::string StartMessage(int return_value) {
  switch (return_value) {
    case 3:
      return "The service cannot be started because it depends on other services that are not running.";
    case 6:
      return "The service has not been started.";
    case 7:
      return "The service did not respond to the start request in a timely fashion.";
    case 8:
      return "Unknown failure when starting the service.";
    case 9:
      return "The directory path to the service executable was not found.";
    case 10:
      return "The service is already running.";
    case 11:
      return "The database to add a new service is locked.";
    case 12:
      return "A dependency for which this service relies on has been removed from the system.";
    case 18:
      return "There are circular dependencies when starting the service.";
    default:
      return CommonMessage(return_value);
  }
}

std::int16_t AgentControl::Change(bool silent, bool start) {
  using platform::BoxIcon;
  const widgets::WaitPointer wait(screen_);
  const auto method = start ? platform::ServiceMethod::kStart : platform::ServiceMethod::kStop;
  const auto outcome = state_.seams.services.Run(kServiceName, method);
  if (!outcome) return kNoService;
  const int value = outcome.value();
  if (!silent && value == 0) {
    const char* text = start ? "Zendrix Monitoring started." : "Zendrix Monitoring stopped.";
    state_.seams.message_boxes.Show({state_.ProductName, text, BoxIcon::kInformation});
  } else if (!silent) {
    const std::string text =
        start ? "Zendrix Monitoring failed to start. Error: " + std::to_string(value) + kLineEnd +
                    StartMessage(value)
              : std::string("Zendrix Monitoring failed to stop.") + kLineEnd + StopMessage(value);
    state_.seams.message_boxes.Show({start ? "StartService" : "StopService", text, BoxIcon::kExclamation});
  }
  return static_cast<std::int16_t>(value);
}

std::int16_t AgentControl::StopAgent(bool silent) {
  return Change(silent, false);
}

std::int16_t AgentControl::StartAgent(bool silent) {
  return Change(silent, true);
}

std::int16_t AgentControl::RestartAgent() {
  if (AgentStatus(true) <= 0) {
    StopAgent(true);
    state_.seams.clock.Sleep(kRestartPauseMs);
  }
  return StartAgent(true);
}

std::int32_t AgentControl::AgentStatus(bool silent) {
  const auto properties = state_.seams.services.Properties(kServiceName);
  if (!properties) return kNoService;
  const platform::ServiceProperties& service = properties.value();
  if (core::UpperCase(service.state) == "RUNNING") return 0;
  if (!silent) {
    const std::string text = service.display_name + " is not running." + kLineEnd +
                             "State: " + service.state + kLineEnd + "StartMode: " + service.start_mode;
    state_.seams.message_boxes.Show({state_.ProductName, text});
  }
  return 1;
}

bool WarningMessage(core::AppState& state) {
  using platform::BoxAnswer;
  using platform::BoxButtons;
  using platform::BoxIcon;
  const std::string& title = state.ProductName;
  const std::string question = std::string("Warning:") + kLineEnd + "You are about to exit the " + title +
                               "." + kLineEnd +
                               "This means that while the Korvessa Zendrix Agent will continue to run and "
                               "monitor your system, you may not be "
                               "visually notified of alerts." +
                               kLineEnd + "Note however that email alerts will continue to function." +
                               kLineEnd + "Are you sure you want to exit?";
  const BoxAnswer answer =
      state.seams.message_boxes.Show({title, question, BoxIcon::kExclamation, BoxButtons::kYesNo});
  if (answer != BoxAnswer::kYes) return false;
  const std::string farewell =
      "You have chosen to exit the " + title + "." + kLineEnd +
      "It can be re-started from the start menu-> programs-> Korvessa Zendrix, by selecting " + title + ".";
  state.seams.message_boxes.Show({title, farewell, BoxIcon::kInformation});
  return true;
}

}  // namespace zendrix::control
