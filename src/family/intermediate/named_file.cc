#include "family/intermediate/named_file.h"

#include <fcntl.h>
#include <iconv.h>

#include <algorithm>
#include <cerrno>
#include <optional>

namespace zendrix::family {
namespace {

constexpr std::size_t kLongestToldName = 100;

void AddPath(std::vector<std::string>& paths, std::string_view path) {
  const bool whole = path.starts_with('/') && path.find('\0') == std::string_view::npos;
  if (whole && std::find(paths.begin(), paths.end(), path) == paths.end()) paths.emplace_back(path);
}

// "/usr/bin/tool:4711" without its number.
std::string_view WithoutNumber(std::string_view text) {
  const auto colon = text.rfind(':');
  if (colon == std::string_view::npos || colon + 1 == text.size()) return text;
  const auto digits = text.substr(colon + 1);
  return digits.find_first_not_of("0123456789") == std::string_view::npos ? text.substr(0, colon) : text;
}

// Names on disk are UTF-8 where descriptions are single-byte.
std::optional<std::string> AsUtf8(const std::string& bytes) {
  if (std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 128; }))
    return std::nullopt;
  const iconv_t converter = ::iconv_open("UTF-8", "WINDOWS-1252");
  if (converter == reinterpret_cast<iconv_t>(-1)) return std::nullopt;
  std::string in = bytes, out(bytes.size() * 4, '\0');
  char* from = in.data();
  char* to = out.data();
  std::size_t from_left = in.size(), to_left = out.size();
  const bool converted = ::iconv(converter, &from, &from_left, &to, &to_left) != static_cast<std::size_t>(-1);
  ::iconv_close(converter);
  if (!converted) return std::nullopt;
  out.resize(out.size() - to_left);
  return out;
}

[[noreturn]] void RefuseLink(const std::string& path) {
  throw Refused{"A symbolic link leads to " + NameToTell(path) + ". Nothing was changed."};
}

}  // namespace

std::string NameToTell(const std::string& path) {
  std::string name = path.substr(path.rfind('/') + 1);
  if (name.size() > kLongestToldName) name = name.substr(0, kLongestToldName - 3) + "...";
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return c < 32 || c == 127; }, '?');
  return "\"" + name + "\"";
}

std::vector<std::string> PathCandidates(std::string_view description) {
  std::vector<std::string_view> starts = {description};
  const auto equals = description.find('=');
  if (equals != std::string_view::npos) starts.push_back(description.substr(equals + 1));
  const auto first = description.find(':');
  if (first != std::string_view::npos) {
    starts.push_back(description.substr(first + 1));
    const auto second = description.find(':', first + 1);
    if (second != std::string_view::npos) starts.push_back(description.substr(second + 1));
  }
  std::vector<std::string> paths;
  for (const auto start : starts) {
    AddPath(paths, start);
    AddPath(paths, WithoutNumber(start));
  }
  // A command behind "=" may have arguments.
  for (const auto start : starts) AddPath(paths, start.substr(0, start.find(' ')));
  const std::size_t as_written = paths.size();
  for (std::size_t i = 0; i < as_written; ++i)
    if (const auto utf8 = AsUtf8(paths[i])) AddPath(paths, *utf8);
  return paths;
}

Place OpenPlace(const std::string& path) {
  Place place{Descriptor(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC)), "", path};
  for (std::size_t start = 1; start <= path.size();) {
    const std::size_t end = std::min(path.find('/', start), path.size());
    const std::string part = path.substr(start, end - start);
    start = end + 1;
    if (part == "." || part == "..")
      throw Refused{"The path of " + NameToTell(path) + " is not plain. Nothing was changed."};
    if (part.empty()) continue;
    if (!place.name.empty()) {
      const int folder = ::openat(place.folder.get(), place.name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
      struct stat status = {};
      if (folder >= 0) ::fstat(folder, &status);
      place.folder = Descriptor(folder);
      if (folder >= 0 && S_ISLNK(status.st_mode)) RefuseLink(path);
      if (folder < 0 || !S_ISDIR(status.st_mode)) return Place{Descriptor(), "", path};
    }
    place.name = part;
  }
  if (place.name.empty() || path.ends_with('/')) return Place{Descriptor(), "", path};
  return place;
}

Descriptor OpenPlainFile(int folder, const std::string& name, struct stat& status, bool made_readable) {
  const Descriptor handle(::openat(folder, name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC));
  if (!handle.valid()) return Descriptor();
  if (::fstat(handle.get(), &status) != 0) return Descriptor();
  if (S_ISLNK(status.st_mode)) RefuseLink(name);
  if (S_ISDIR(status.st_mode)) throw Refused{NameToTell(name) + " is a folder. Nothing was changed."};
  if (!S_ISREG(status.st_mode))
    throw Refused{NameToTell(name) + " is no ordinary file. Nothing was changed."};
  if (status.st_nlink != 1)
    throw Refused{NameToTell(name) + " stands in more than one place on the disk. Nothing was changed."};
  // The handle is the file itself; opening it again by number cannot meet another one.
  const std::string itself = "/proc/self/fd/" + std::to_string(handle.get());
  if (made_readable) ::chmod(itself.c_str(), S_IRUSR);
  Descriptor file(::open(itself.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (!file.valid()) throw Refused{"You may not read " + NameToTell(name) + ". Nothing was changed."};
  return file;
}

NamedFile FindNamedFile(std::string_view description) {
  for (const auto& path : PathCandidates(description)) {
    NamedFile found;
    found.place = OpenPlace(path);
    if (!found.place.folder.valid()) continue;
    found.file = OpenPlainFile(found.place.folder.get(), found.place.name, found.status, false);
    if (found.file.valid()) return found;
  }
  throw Refused{"This event names no file on this computer, so there is nothing to put in quarantine."};
}

}  // namespace zendrix::family
