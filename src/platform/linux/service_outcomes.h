// What systemd and the bus answer, as the numbers that the Agent's control knows. The whole table stands in
// linux_service_manager.h; here are its rules, apart from any bus. Expected outcomes are numbers; an Error
// means that the method could not be run at all.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/result.h"

namespace zendrix::platform {

inline constexpr int kServiceDone = 0;
inline constexpr int kServiceNoAccess = 2;
inline constexpr int kServiceWrongState = 5;
inline constexpr int kServiceNotRunning = 6;
inline constexpr int kServiceTimeOut = 7;
inline constexpr int kServiceUnknownFailure = 8;
inline constexpr int kServiceNoProgram = 9;
inline constexpr int kServiceAlreadyRunning = 10;
inline constexpr int kServiceDisabled = 14;
inline constexpr int kServiceNamesake = 19;

// The error of a call, by its D-Bus name. `text` goes into the Error.
Result<int> RefusalOf(std::string_view dbus_error, const std::string& text);

// How a job ended, by the result in its JobRemoved signal.
int JobOutcome(std::string_view result);

// Why a start job failed, as far as the service itself tells: its property Result, and the exit status of its
// main process when that has exited (otherwise 0).
int StartFailure(std::string_view service_result, std::int32_t exit_status);

}  // namespace zendrix::platform
