#include "core/path_text.h"

#include "platform/windows_1252.h"

namespace zendrix::core {

std::string PathText(std::string_view path) {
  return platform::BytesFromUtf8(path);
}

}  // namespace zendrix::core
