#include "platform/linux/linux_family.h"

#include <dlfcn.h>

#include <array>

#include "family/korvessa_crypto_services.h"
#include "family/korvessa_fundamental_types.h"
#include "platform/files.h"

namespace zendrix::platform {
namespace {

constexpr std::int32_t kMessageSize = 256;
constexpr std::int32_t kHostIdSize = 5120;

// Both other kinds of function take text, buffer, size of the buffer.
using TextFunction = std::int32_t (*)(const char* text, char* buffer, std::int32_t size);

using ConfigureFunction = void (*)(const char* program_folder, std::int32_t pretend);

Error LoaderError() {
  const char* text = dlerror();
  return {ErrorKind::kNotFound, text ? text : "KorvessaIntermediateTypes: not found"};
}

}  // namespace

LinuxFamily::~LinuxFamily() {
  if (library_) dlclose(library_);
}

LocalTime LinuxFamily::FromUTC(std::int32_t seconds) {
  LocalTime local;
  family::FromUTC(seconds, &local.day, &local.month, &local.year, &local.hour, &local.minute, &local.second);
  return local;
}

std::int32_t LinuxFamily::ToUTC(const LocalTime& local) {
  std::int32_t seconds = 0;
  family::ToUTC(local.day, local.month, local.year, local.hour, local.minute, local.second, &seconds);
  return seconds;
}

std::string LinuxFamily::HashBytes(std::string_view bytes) {
  std::array<char, 65> text{};
  family::HashBytes(bytes.data(), bytes.size(), text.data(), static_cast<std::int32_t>(text.size()));
  return text.data();
}

Result<void*> LinuxFamily::Function(const char* name) {
  if (!library_) {
    library_ = dlopen(JoinPath(folder_, "libKorvessaIntermediateTypes.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library_) return LoaderError();
  }
  void* const function = dlsym(library_, name);
  if (!function) {
    const Error missing = LoaderError();
    // Not kept: a later call finds the complete library once it has been put there.
    dlclose(library_);
    library_ = nullptr;
    return missing;
  }
  return function;
}

Status LinuxFamily::Quarantine(const char* function, const std::string& description, std::string& message) {
  const auto found = Function(function);
  if (!found) return found.error();
  // A library that has no folder to be told of works without.
  if (void* const configure = dlsym(library_, "ConfigureExport"))
    reinterpret_cast<ConfigureFunction>(configure)(program_folder_.c_str(), pretend_ ? 1 : 0);
  message.resize(kMessageSize, ' ');
  // The number it returns says nothing that the message does not say.
  reinterpret_cast<TextFunction>(found.value())(description.c_str(), message.data(), kMessageSize);
  return Done{};
}

Status LinuxFamily::QuarantineExport(const std::string& description, std::string& message) {
  return Quarantine("QuarantineExport", description, message);
}

Status LinuxFamily::UnquarantineExport(const std::string& description, std::string& message) {
  return Quarantine("UnquarantineExport", description, message);
}

Result<std::string> LinuxFamily::GetHostIDExport(const std::string& product) {
  const auto found = Function("GetHostIDExport");
  if (!found) return found.error();
  std::string buffer(kHostIdSize, ' ');
  reinterpret_cast<TextFunction>(found.value())(product.c_str(), buffer.data(), kHostIdSize);
  const std::size_t end = buffer.find('\0');
  if (end == std::string::npos) return Error{ErrorKind::kOther, "GetHostIDExport: no host identifier"};
  buffer.resize(end);
  return buffer;
}

}  // namespace zendrix::platform
