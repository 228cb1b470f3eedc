#include "platform/run_time_options.h"

#include <charconv>

namespace zendrix::platform {
namespace {

constexpr std::int64_t kLongestInterval = 3600;
constexpr std::int64_t kLongestRun = 10LL * 365 * 24 * 3600;

std::optional<std::int64_t> SecondsIn(const std::string& text, std::int64_t most) {
  std::int64_t seconds = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), seconds);
  const bool whole = read.ec == std::errc() && read.ptr == text.data() + text.size();
  if (!whole || seconds < 1 || seconds > most) return std::nullopt;
  return seconds;
}

}  // namespace

std::optional<std::string> TakeRunTime(const std::string& name, const std::string& value, RunTime& into) {
  if (name == "--interval") {
    const auto seconds = SecondsIn(value, kLongestInterval);
    if (!seconds) return "--interval needs a number of seconds from 1 to 3600";
    into.interval_seconds = *seconds;
    return "";
  }
  if (name != "--for") return std::nullopt;
  const auto seconds = SecondsIn(value, kLongestRun);
  if (!seconds) return "--for needs a number of seconds, at least 1";
  into.for_seconds = seconds;
  return "";
}

}  // namespace zendrix::platform
