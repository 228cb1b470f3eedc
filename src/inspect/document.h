// The JSON documents that commands print, and the one place where the program's single-byte texts become
// UTF-8 for them.
#pragma once

#include <nlohmann/json.hpp>
#include <stdexcept>
#include <string>
#include <string_view>

#include "platform/windows_1252.h"

namespace zendrix::inspect {

using Json = nlohmann::ordered_json;

// A text of the program (Windows-1252) as JSON.
inline Json Text(std::string_view bytes) {
  return platform::Utf8FromBytes(bytes);
}

// A path as the command line gave it: already in the terminal's own encoding.
inline Json Path(const std::string& path) {
  return path;
}

// Ends the command with exit status 2 and one line on standard error.
struct WrongUsage : std::runtime_error {
  using std::runtime_error::runtime_error;
};

// Ends the command with exit status 3 and {"error": text}.
struct NoSuchThing : std::runtime_error {
  using std::runtime_error::runtime_error;
};

}  // namespace zendrix::inspect
