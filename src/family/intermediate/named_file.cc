#include "family/intermediate/named_file.h"

#include <fcntl.h>
#include <iconv.h>
#include <limits.h>

#include <algorithm>
#include <optional>

#include "family/intermediate/file_work.h"

namespace zendrix::family {
namespace {

constexpr std::size_t kLongestToldName = 100;

std::optional<std::string> Convert(const std::string& bytes, const char* from_code, const char* to_code) {
  const iconv_t converter = ::iconv_open(to_code, from_code);
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

bool IsAscii(const std::string& bytes) {
  return std::all_of(bytes.begin(), bytes.end(), [](char c) { return static_cast<unsigned char>(c) < 128; });
}

std::vector<std::string_view> PartsOf(std::string_view path) {
  std::vector<std::string_view> parts;
  for (std::size_t start = 0; start < path.size();) {
    const std::size_t end = std::min(path.find('/', start), path.size());
    if (end > start) parts.push_back(path.substr(start, end - start));
    start = end + 1;
  }
  return parts;
}

void AddPath(std::vector<std::string>& paths, std::string_view written) {
  // A path that ends in "/" names a folder at best.
  if (!written.starts_with('/') || written.ends_with('/') || written.size() > PATH_MAX ||
      written.find('\0') != std::string_view::npos)
    return;
  std::string path;
  for (const auto part : PartsOf(written)) {
    if (part == "." || part == "..") return;
    path.append("/").append(part);
  }
  if (std::find(paths.begin(), paths.end(), path) == paths.end()) paths.push_back(std::move(path));
}

// "/usr/bin/tool:4711" without its number.
std::string_view WithoutNumber(std::string_view text) {
  const auto colon = text.rfind(':');
  if (colon == std::string_view::npos || colon + 1 == text.size()) return text;
  const auto digits = text.substr(colon + 1);
  return digits.find_first_not_of("0123456789") == std::string_view::npos ? text.substr(0, colon) : text;
}

[[noreturn]] void RefuseLink(const std::string& path) {
  throw Refused{"A symbolic link leads to " + NameToTell(path) + ". Nothing was changed."};
}

// What one of the candidates names, whatever it is.
std::optional<NamedFile> Find(const std::string& path) {
  NamedFile found;
  found.place = OpenPlace(path);
  if (!found.place.folder.valid()) return std::nullopt;
  found.handle = OpenHandle(found.place.folder.get(), found.place.name, found.status);
  if (!found.handle.valid()) return std::nullopt;
  return found;
}

// The one thing that the candidates name. A folder only counts where there is nothing else: a path that is
// cut at a blank often is one.
NamedFile FindOne(std::string_view description) {
  std::optional<NamedFile> one;
  for (const auto& path : PathCandidates(description)) {
    auto next = Find(path);
    if (!next) continue;
    if (!one || S_ISDIR(one->status.st_mode)) {
      one = std::move(next);
    } else if (!S_ISDIR(next->status.st_mode) &&
               (next->status.st_dev != one->status.st_dev || next->status.st_ino != one->status.st_ino)) {
      // Whoever plants a second file must not decide which of the two goes.
      throw Refused{"This event may mean " + NameToTell(one->place.path) + " or " + NameToTell(path) +
                    ". Nothing was changed."};
    }
  }
  if (!one)
    throw Refused{"This event names no file on this computer, so there is nothing to put in quarantine."};
  return std::move(*one);
}

}  // namespace

std::string NameToTell(const std::string& path) {
  std::string name = path.substr(path.rfind('/') + 1);
  if (!IsAscii(name)) name = Convert(name, "UTF-8", "WINDOWS-1252").value_or(name);
  if (name.size() > kLongestToldName) name = name.substr(0, kLongestToldName - 3) + "...";
  // A name must not look like the end of its own quotation.
  std::replace(name.begin(), name.end(), '"', '\'');
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return c < 32 || c == 127; }, '?');
  return "\"" + name + "\"";
}

std::vector<std::string> PathCandidates(std::string_view description) {
  std::vector<std::string> paths;
  const auto add = [&](std::string_view start) {
    AddPath(paths, start);
    AddPath(paths, WithoutNumber(start));
  };
  add(description);
  // "443:/usr/bin/tool", "10.0.0.1:443:/usr/bin/tool", "fe80::1:443:/usr/bin/tool"
  const auto colon = description.find(":/");
  if (!description.starts_with('/') && colon != std::string_view::npos) add(description.substr(colon + 1));
  // "/etc/xdg/autostart/tool.desktop=/usr/bin/tool --quiet"
  const auto equals = description.find("=/");
  if (equals != std::string_view::npos) {
    const auto command = description.substr(equals + 1);
    add(command);
    add(command.substr(0, command.find(' ')));
  }
  const std::size_t as_written = paths.size();
  for (std::size_t i = 0; i < as_written; ++i) {
    if (IsAscii(paths[i])) continue;
    // Names on disk are UTF-8 where descriptions are single-byte.
    if (const auto utf8 = Convert(paths[i], "WINDOWS-1252", "UTF-8")) AddPath(paths, *utf8);
  }
  return paths;
}

Place OpenPlace(const std::string& path) {
  Place place{Descriptor(::open("/", O_PATH | O_DIRECTORY | O_CLOEXEC)), "", path, {}};
  struct stat status = {};
  if (!place.folder.valid() || ::fstat(place.folder.get(), &status) != 0)
    return Place{Descriptor(), "", path, {}};
  place.folders.emplace_back(status.st_dev, status.st_ino);
  const auto parts = PartsOf(path);
  for (std::size_t i = 0; i < parts.size(); ++i) {
    place.name = parts[i];
    if (place.name == "." || place.name == "..") return Place{Descriptor(), "", path, {}};
    if (i + 1 == parts.size()) return place;
    Descriptor folder = OpenHandle(place.folder.get(), place.name, status);
    if (folder.valid() && S_ISLNK(status.st_mode)) RefuseLink(path);
    if (!folder.valid() || !S_ISDIR(status.st_mode)) break;
    place.folder = std::move(folder);
    place.folders.emplace_back(status.st_dev, status.st_ino);
  }
  return Place{Descriptor(), "", path, {}};
}

NamedFile FindNamedFile(std::string_view description) {
  NamedFile found = FindOne(description);
  const std::string name = NameToTell(found.place.path);
  const mode_t mode = found.status.st_mode;
  if (S_ISLNK(mode)) throw Refused{name + " is only a symbolic link to a file. Nothing was changed."};
  if (S_ISDIR(mode)) throw Refused{name + " is a folder. Nothing was changed."};
  if (!S_ISREG(mode)) throw Refused{name + " is no ordinary file. Nothing was changed."};
  return found;
}

void OpenNamedFile(NamedFile& named) {
  const std::string name = NameToTell(named.place.path);
  if (named.status.st_nlink != 1)
    throw Refused{name + " stands in more than one place on the disk. Nothing was changed."};
  named.file = OpenForReading(named.handle);
  if (!named.file.valid()) throw Refused{"You may not read " + name + ". Nothing was changed."};
}

}  // namespace zendrix::family
