#include "core/version_text.h"

namespace zendrix::core {

std::string FormatVersion(int major, int minor, int revision) {
  const std::string version = std::to_string(major) + "." + std::to_string(minor);
  return revision < 0 ? version : version + ".0." + std::to_string(revision);
}

}  // namespace zendrix::core
