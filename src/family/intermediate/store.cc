#include "family/intermediate/store.h"

#include <fcntl.h>
#include <limits.h>
#include <linux/magic.h>
#include <sys/file.h>
#include <sys/vfs.h>

#include <algorithm>
#include <cerrno>
#include <set>
#include <utility>

#include "family/intermediate/file_work.h"
#include "family/intermediate/text_file.h"

namespace zendrix::family {
namespace {

constexpr char kStoreName[] = "Quarantine";
constexpr std::size_t kNameDigits = 32;
constexpr char kUnusable[] = "The Quarantine folder of Zendrix cannot be used. Nothing was changed.";

// The entry that a name in the folder belongs to; empty for what is none of ours.
std::string EntryOf(const std::string& name) {
  const std::string entry = name.substr(0, kNameDigits);
  if (entry.size() < kNameDigits || entry.find_first_not_of("0123456789abcdef") != std::string::npos)
    return "";
  const std::string ending = name.substr(kNameDigits);
  const bool ours = ending.empty() || ending == kManifestEnding || ending == kInEnding ||
                    ending == kOutEnding || ending == kPartEnding;
  return ours ? entry : "";
}

std::set<std::string> EntriesIn(int store) {
  std::set<std::string> entries;
  for (const auto& name : NamesIn(store)) entries.insert(EntryOf(name));
  entries.erase("");
  return entries;
}

std::optional<Manifest> ManifestIn(int store, const std::string& entry) {
  return ManifestOf(ReadSmallFile(store, entry + kManifestEnding));
}

// The folder that takes the changes of an overlay, from the mount that the folder lies in:
//   "29 1 0:26 / / rw,relatime - overlay overlay rw,lowerdir=/a,upperdir=/run/cow/upper,workdir=/c"
std::string UpperLayerOf(const Descriptor& folder) {
  constexpr std::string_view kUpper = "upperdir=";
  struct statx status = {};
  if (::statx(folder.get(), "", AT_EMPTY_PATH, STATX_BASIC_STATS, &status) != 0) return "";
  const std::string device =
      std::to_string(status.stx_dev_major) + ":" + std::to_string(status.stx_dev_minor);
  const std::string mounts = TextOf("/proc/self/mountinfo").value_or("");
  for (const auto line : LinesOf(mounts)) {
    const auto words = WordsOf(line);
    const auto start = line.find(kUpper);
    if (words.size() < 3 || words[2] != device || start == std::string_view::npos) continue;
    const auto upper = line.substr(start + kUpper.size());
    return std::string(upper.substr(0, upper.find_first_of(", ")));
  }
  return "";
}

// Where the file belongs. The folder is invalid when there is no way there at the moment.
Place PlaceOf(const Manifest& manifest) {
  try {
    return OpenPlace(manifest.path);
  } catch (const Refused&) {
    return Place{Descriptor(), "", manifest.path, {}};
  }
}

void CloseEntry(int store, const std::string& entry) {
  struct stat status = {};
  const Descriptor handle = OpenHandle(store, entry, status);
  const bool usable = (status.st_mode & 07777U) != 0 || (::geteuid() == 0 && status.st_uid != 0);
  if (!handle.valid() || !S_ISREG(status.st_mode) || !usable) return;
  const Descriptor file = OpenInSpite(handle);
  if (!file.valid() || !MakeOwn(file)) SetMode(handle, 0);
}

void RemoveNotes(int store, const std::string& entry) {
  Remove(store, entry + kManifestEnding);
  Remove(store, entry + kInEnding);
  Remove(store, entry + kOutEnding);
}

// The file is in its place: the entry goes.
void DropEntry(int store, const std::string& entry) {
  Remove(store, entry);
  RemoveNotes(store, entry);
}

void FinishIn(int store, const Entry& entry) {
  const Place place = PlaceOf(entry.manifest);
  if (!HoldsInSpite(store, entry.name, entry.manifest)) {
    // Something else was caught in its place; it goes back.
    if (place.folder.valid() && GiveBack(store, entry.name, place)) RemoveNotes(store, entry.name);
    return;
  }
  CloseEntry(store, entry.name);
  if (!place.folder.valid()) return;
  const std::string aside = AsideName(entry.name);
  if (Exists(place.folder.get(), aside)) {
    if (Holds(place.folder.get(), aside, entry.manifest)) {
      Remove(place.folder.get(), aside);
    } else if (!GiveBack(place.folder.get(), aside, place)) {
      return;
    }
  } else if (Holds(place.folder.get(), place.name, entry.manifest)) {
    return DropEntry(store, entry.name);
  }
  Remove(store, entry.name + kInEnding);
}

void FinishOut(int store, const Entry& entry) {
  const Place place = PlaceOf(entry.manifest);
  if (place.folder.valid() && Holds(place.folder.get(), place.name, entry.manifest))
    return DropEntry(store, entry.name);
  CloseEntry(store, entry.name);
  if (!place.folder.valid()) return;
  Remove(place.folder.get(), AsideName(entry.name));
  Remove(store, entry.name + kOutEnding);
}

bool IsLater(const timespec& one, const timespec& other) {
  return std::pair(one.tv_sec, one.tv_nsec) > std::pair(other.tv_sec, other.tv_nsec);
}

}  // namespace

Descriptor OpenStore(const Descriptor& program_folder, bool look_only) {
  Descriptor store(
      ::openat(program_folder.get(), kStoreName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
  if (!store.valid()) {
    if (errno == ENOENT) return store;
    throw Refused{kUnusable};
  }
  struct stat status = {};
  if (::fstat(store.get(), &status) != 0 || status.st_uid != ::geteuid()) throw Refused{kUnusable};
  if ((status.st_mode & 07777U) != S_IRWXU && !look_only && ::fchmod(store.get(), S_IRWXU) != 0)
    throw Refused{kUnusable};
  if (::flock(store.get(), LOCK_EX | LOCK_NB) != 0)
    throw Refused{"Zendrix is at work on another file. Try again in a moment."};
  return store;
}

Descriptor MakeStore(const Descriptor& program_folder) {
  // Another process may have made it meanwhile: opening tells.
  ::mkdirat(program_folder.get(), kStoreName, S_IRWXU);
  Descriptor store = OpenStore(program_folder, false);
  if (!store.valid()) throw Refused{kUnusable};
  SyncFolder(program_folder.get());
  return store;
}

void SweepEntry(int store, const std::string& name) {
  Remove(store, name + kPartEnding);
  if (!Exists(store, name)) return RemoveNotes(store, name);
  const auto manifest = ManifestIn(store, name);
  if (!manifest) return;
  if (Exists(store, name + kInEnding)) return FinishIn(store, {name, *manifest});
  if (Exists(store, name + kOutEnding)) return FinishOut(store, {name, *manifest});
  CloseEntry(store, name);
}

void Sweep(int store) {
  for (const auto& entry : EntriesIn(store)) SweepEntry(store, entry);
}

std::vector<Entry> ListEntries(int store) {
  std::vector<Entry> entries;
  for (const auto& name : EntriesIn(store)) {
    auto manifest = ManifestIn(store, name);
    if (manifest && Exists(store, name)) entries.push_back({name, std::move(*manifest)});
  }
  std::stable_sort(entries.begin(), entries.end(), [](const Entry& one, const Entry& other) {
    return IsLater(one.manifest.moved, other.manifest.moved);
  });
  return entries;
}

std::optional<Entry> FindEntry(int store, const std::vector<std::string>& paths, const std::string& alert) {
  std::optional<Entry> newest;
  for (auto& entry : ListEntries(store)) {
    if (std::find(paths.begin(), paths.end(), entry.manifest.path) == paths.end()) continue;
    if (!alert.empty() && entry.manifest.alert == alert) return entry;
    if (!newest) newest = std::move(entry);
  }
  return newest;
}

bool OutlivesRestart(const Descriptor& folder, const std::vector<std::uint64_t>& memory) {
  struct statfs system = {};
  if (::fstatfs(folder.get(), &system) != 0) return false;
  auto type = static_cast<std::uint64_t>(system.f_type);
  if (type == OVERLAYFS_SUPER_MAGIC) {
    // Where the upper layer is out of sight (a container's own root), nothing can be said against it.
    const std::string upper = UpperLayerOf(folder);
    if (upper.empty() || ::statfs(upper.c_str(), &system) != 0) return true;
    type = static_cast<std::uint64_t>(system.f_type);
  }
  return std::find(memory.begin(), memory.end(), type) == memory.end();
}

bool GiveBack(int folder, const std::string& name, const Place& place) {
  // "tool.0f3a55c1", in any case a name that a folder can hold.
  const std::string mark = "." + RandomName().substr(0, 8);
  const std::string beside = place.name.substr(0, NAME_MAX - mark.size()) + mark;
  for (const auto& back : {place.name, beside}) {
    try {
      return RenameNoReplace(folder, name, place.folder.get(), back);
    } catch (const Refused&) {
      // Taken; perhaps the other name is free.
    }
  }
  return false;
}

}  // namespace zendrix::family
