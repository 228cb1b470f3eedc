// A description is written by whoever the console is meant to catch, and a manifest lies on the disk where it
// may be damaged. An input is the description, the line of a manifest, the fields of one under a good hash,
// and the path of one that is written and read back.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "family/intermediate/manifest.h"
#include "family/intermediate/named_file.h"
#include "family/intermediate/sha256.h"
#include "family/intermediate/subject.h"

namespace {

using zendrix::family::LineOf;
using zendrix::family::Manifest;
using zendrix::family::ManifestOf;

constexpr std::size_t kMostPaths = 4;
constexpr std::size_t kLongestPath = 4 * 4096;
constexpr std::size_t kMessage = 255;
constexpr std::int64_t kNanosecondsPerSecond = 1000000000;

void Require(bool holds) {
  if (!holds) std::abort();
}

void CheckPaths(const std::string& monitor, std::string_view description) {
  std::vector<std::string> paths;
  try {
    paths = zendrix::family::PathsOf({monitor, std::string(description), std::nullopt, "", true});
  } catch (const zendrix::family::Refused& refused) {
    Require(!refused.sentence.empty());
  }
  Require(paths.size() <= kMostPaths);
  for (const auto& path : paths) {
    Require(path.size() > 1 && path.size() <= kLongestPath && path[0] == '/' && path.back() != '/');
    Require(path.find('\0') == std::string::npos && path.find("//") == std::string::npos);
    const std::string bounded = path + "/";
    Require(bounded.find("/./") == std::string::npos && bounded.find("/../") == std::string::npos);
    const auto told = zendrix::family::NameToTell(path);
    Require(std::count(told.begin(), told.end(), '"') == 2);
    Require(std::all_of(told.begin(), told.end(), [](unsigned char c) { return c >= 32 && c != 127; }));
    const auto fitting = zendrix::family::Fitting(told + " is a folder.", kMessage);
    Require(fitting.size() <= kMessage && fitting.ends_with("\" is a folder."));
  }
}

// There is one way to write a manifest.
void CheckLine(std::string_view line) {
  const auto manifest = ManifestOf(line);
  if (manifest) Require(LineOf(*manifest) == line);
}

template <class Number>
void Take(std::string_view& bytes, Number& number) {
  const std::size_t size = std::min(bytes.size(), sizeof number);
  std::memcpy(&number, bytes.data(), size);
  bytes.remove_prefix(size);
}

bool SameTime(const timespec& one, const timespec& other) {
  return one.tv_sec == other.tv_sec && one.tv_nsec == other.tv_nsec;
}

void CheckRoundTrip(std::string_view bytes) {
  Manifest manifest;
  for (timespec* time : {&manifest.accessed, &manifest.modified, &manifest.moved}) {
    std::uint32_t nanoseconds = 0;
    Take(bytes, time->tv_sec);
    Take(bytes, nanoseconds);
    time->tv_nsec = nanoseconds % kNanosecondsPerSecond;
  }
  Take(bytes, manifest.owner);
  Take(bytes, manifest.group);
  Take(bytes, manifest.mode);
  Take(bytes, manifest.size);
  manifest.mode &= 07777U;
  manifest.sha256 = zendrix::family::Sha256Of(bytes);
  if (manifest.size % 2 == 1) manifest.event = static_cast<std::int64_t>(manifest.size);
  manifest.alert = bytes.substr(0, std::min<std::size_t>(bytes.find('\0'), 8));
  manifest.path = "/" + std::string(bytes.substr(0, bytes.find('\0')));
  const auto read = ManifestOf(LineOf(manifest));
  Require(read && read->path == manifest.path && read->owner == manifest.owner &&
          read->group == manifest.group && read->alert == manifest.alert && read->event == manifest.event);
  Require(read->mode == manifest.mode && read->size == manifest.size && read->sha256 == manifest.sha256);
  Require(SameTime(read->accessed, manifest.accessed) && SameTime(read->modified, manifest.modified) &&
          SameTime(read->moved, manifest.moved));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  for (const char* monitor : {"", "Running Processes", "Listening Ports", "TCP Connections",
                              "Autorun Registry", "Windows Folder", "System Users"})
    CheckPaths(monitor, bytes);
  CheckLine(bytes);
  CheckLine(std::string(bytes) + "\t" + zendrix::family::Sha256Of(bytes) + "\n");
  CheckRoundTrip(bytes);
  return 0;
}
