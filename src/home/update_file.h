// The installer of a new version, as it lies in the program's folder. Who puts it there is no business of the
// console's, which offers it, starts it, and takes it away once its version is the one that runs.
#pragma once

#include <string>

#include "core/app_state.h"
#include "core/error_log.h"

namespace zendrix::home {

class UpdateFile {
 public:
  // Both outlive the object.
  UpdateFile(core::AppState& state, core::ErrorLog& log) : app_(state), log_(log) {}

  std::string Path() const;
  bool IsThere() const;
  // The version that the file tells of itself; empty when it tells none.
  std::string Version() const;
  // Deletes it, also when it is marked read-only; a failure is nobody's concern.
  void Remove() const;
  // Hands it to the platform. A failure is logged and told; false then. The box that tells it serves the
  // event loop.
  bool Start() const;

 private:
  core::AppState& app_;
  core::ErrorLog& log_;
};

// The version of this program, in the form of a file's.
std::string RunningVersion();

}  // namespace zendrix::home
