// An event as the console hands it over. Its texts are chosen by whoever the console is meant to catch.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace zendrix::family {

struct Event {
  // Empty when it is not known: the form of the description then tells its kind.
  std::string monitor;
  std::string description;
  std::optional<std::int64_t> moment;  // UTC seconds
  std::string alert;                   // the alert's DateUTC
  bool shown = true;                   // whether the alert's page has a row for it
  std::string sha256 = {};             // of the contents that are meant; empty: whatever they are
};

}  // namespace zendrix::family
