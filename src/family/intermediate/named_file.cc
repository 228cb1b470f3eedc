#include "family/intermediate/named_file.h"

#include <fcntl.h>
#include <iconv.h>
#include <limits.h>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "family/intermediate/file_work.h"

namespace zendrix::family {
namespace {

constexpr std::string_view kGap = "...";

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

// Without its middle where it is longer than this: the end of a path says most.
std::string Shortened(const std::string& name, std::size_t most) {
  if (name.size() <= most) return name;
  if (most <= kGap.size()) return name.substr(0, most);
  const std::size_t head = (most - kGap.size()) / 3;
  const std::size_t tail = most - kGap.size() - head;
  return name.substr(0, head) + std::string(kGap) + name.substr(name.size() - tail);
}

[[noreturn]] void RefuseLink(const std::string& path) {
  throw Refused{"A symbolic link leads to " + NameToTell(path) + ". Nothing was changed."};
}

// What one of the candidates names, whatever it is. `denied` becomes true where nobody may look.
std::optional<NamedFile> Find(const std::string& path, bool& denied) {
  NamedFile found;
  found.place = OpenPlace(path);
  denied = denied || found.place.denied;
  if (!found.place.folder.valid()) return std::nullopt;
  found.handle = OpenHandle(found.place.folder.get(), found.place.name, found.status);
  if (!found.handle.valid()) {
    denied = denied || errno == EACCES;
    return std::nullopt;
  }
  return found;
}

// The one thing that the paths name.
NamedFile FindOne(const std::vector<std::string>& paths) {
  std::optional<NamedFile> one;
  bool denied = false;
  for (const auto& path : paths) {
    auto next = Find(path, denied);
    if (!next) continue;
    if (!one) {
      one = std::move(next);
    } else if (next->status.st_dev != one->status.st_dev || next->status.st_ino != one->status.st_ino) {
      // Whoever plants a second file must not decide which of the two goes.
      throw Refused{"This event may mean " + NameToTell(one->place.path) + " or " + NameToTell(path) +
                    ". Nothing was changed."};
    }
  }
  if (!one)
    throw Refused{"This event names no file on this computer, so there is nothing to put in quarantine.",
                  denied};
  return std::move(*one);
}

}  // namespace

std::string NameToTell(const std::string& path) {
  std::string name = path;
  if (!IsAscii(name)) name = Convert(name, "UTF-8", "WINDOWS-1252").value_or(name);
  // A name must not look like the end of its own quotation.
  std::replace(name.begin(), name.end(), '"', '\'');
  std::replace_if(
      name.begin(), name.end(), [](unsigned char c) { return c < 32 || c == 127; }, '?');
  return "\"" + name + "\"";
}

std::string Fitting(const std::string& sentence, std::size_t most) {
  if (sentence.size() <= most) return sentence;
  // Every second part is a name.
  std::vector<std::string> parts;
  for (std::size_t start = 0; start <= sentence.size();) {
    const std::size_t end = std::min(sentence.find('"', start), sentence.size());
    parts.push_back(sentence.substr(start, end - start));
    start = end + 1;
  }
  std::size_t plain = parts.size() - 1, names = 0;
  for (std::size_t i = 0; i < parts.size(); ++i) i % 2 == 0 ? plain += parts[i].size() : ++names;
  std::size_t room = most > plain ? most - plain : 0;
  std::string fitting;
  for (std::size_t i = 0; i < parts.size(); ++i) {
    if (i > 0) fitting += '"';
    if (i % 2 == 0) {
      fitting += parts[i];
      continue;
    }
    // What a short name leaves is for the ones behind it.
    const std::size_t share = room / names--;
    fitting += Shortened(parts[i], share);
    room -= std::min(room, std::min(share, parts[i].size()));
  }
  return fitting.substr(0, most);
}

std::vector<std::string> PathsWritten(std::string_view written) {
  std::vector<std::string> paths;
  AddPath(paths, written);
  // Names on disk are UTF-8 where descriptions are single-byte.
  if (!paths.empty() && !IsAscii(paths[0]))
    if (const auto utf8 = Convert(paths[0], "WINDOWS-1252", "UTF-8")) AddPath(paths, *utf8);
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
    if (!folder.valid() && errno == EACCES) return Place{Descriptor(), "", path, {}, true};
    if (folder.valid() && S_ISLNK(status.st_mode)) RefuseLink(path);
    if (!folder.valid() || !S_ISDIR(status.st_mode)) break;
    place.folder = std::move(folder);
    place.folders.emplace_back(status.st_dev, status.st_ino);
  }
  return Place{Descriptor(), "", path, {}};
}

NamedFile FindNamedFile(const std::vector<std::string>& paths) {
  NamedFile found = FindOne(paths);
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
