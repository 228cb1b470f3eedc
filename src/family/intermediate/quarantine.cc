#include "family/intermediate/quarantine.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <vector>

#include "family/intermediate/file_work.h"
#include "family/intermediate/untouchable.h"

namespace zendrix::family {
namespace {

constexpr char kStoreName[] = "Quarantine";
constexpr char kManifestEnding[] = ".manifest";
constexpr char kPartEnding[] = ".part";

std::vector<std::string> NamesIn(int folder) {
  std::vector<std::string> names;
  const int again = ::openat(folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  const std::unique_ptr<DIR, int (*)(DIR*)> listing(again < 0 ? nullptr : ::fdopendir(again), ::closedir);
  if (!listing) return names;
  while (const dirent* entry = ::readdir(listing.get())) names.emplace_back(entry->d_name);
  return names;
}

bool Exists(int folder, const std::string& name) {
  return ::faccessat(folder, name.c_str(), F_OK, AT_SYMLINK_NOFOLLOW) == 0;
}

void Remove(int folder, const std::string& name) {
  ::unlinkat(folder, name.c_str(), 0);
}

// Name of an original whose copy is complete, until it is removed.
std::string AsideName(const std::string& entry) {
  return "." + entry;
}

// The original that an interrupted move across file systems left behind.
void RemoveAside(int store, const std::string& entry) {
  const auto manifest = ManifestOf(ReadSmallFile(store, entry + kManifestEnding));
  if (!manifest) return;
  try {
    const Place place = OpenPlace(manifest->path);
    if (place.folder.valid()) Remove(place.folder.get(), AsideName(entry));
  } catch (const Refused&) {
    // A link leads there now: nothing of ours is behind it.
  }
}

bool SameContents(const struct stat& one, const struct stat& other) {
  return one.st_size == other.st_size && one.st_mtim.tv_sec == other.st_mtim.tv_sec &&
         one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}

void RefuseWhatMustStay(const NamedFile& named, const std::string& program_folder) {
  const std::string name = NameToTell(named.place.path);
  if (IsUntouchable(named.place.path, named.status, program_folder))
    throw Refused{name + " belongs to the system or to Zendrix itself and stays where it is."};
  if (::faccessat(named.place.folder.get(), ".", W_OK | X_OK, AT_EACCESS) != 0)
    throw Refused{"You may not change the folder of " + name + ". Nothing was changed."};
}

Manifest Describe(const NamedFile& named) {
  Manifest manifest;
  manifest.path = named.place.path;
  manifest.owner = named.status.st_uid;
  manifest.group = named.status.st_gid;
  manifest.mode = named.status.st_mode & 07777U;
  manifest.accessed = named.status.st_atim;
  manifest.modified = named.status.st_mtim;
  manifest.size = static_cast<std::uint64_t>(named.status.st_size);
  manifest.sha256 = HashAndCopy(named.file, -1);
  manifest.moved = std::time(nullptr);
  struct stat after = {};
  if (::fstat(named.file.get(), &after) != 0 || !SameContents(named.status, after))
    throw Refused{NameToTell(named.place.path) + " is being written to. Try again in a moment."};
  return manifest;
}

}  // namespace

void Quarantine::Configure(const std::string& program_folder, bool pretend) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(program_folder.c_str(), nullptr),
                                                         std::free);
  program_folder_ = real ? real.get() : program_folder;
  pretend_ = pretend;
}

Descriptor Quarantine::OpenStore() const {
  const Descriptor home(::open(program_folder_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (home.valid()) ::mkdirat(home.get(), kStoreName, 0700);
  Descriptor store(
      home.valid() ? ::openat(home.get(), kStoreName, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC) : -1);
  struct stat status = {};
  if (!store.valid() || ::fstat(store.get(), &status) != 0 || status.st_uid != ::geteuid())
    throw Refused{"The Quarantine folder of Zendrix cannot be used. Nothing was changed."};
  if ((status.st_mode & 077U) != 0 && ::fchmod(store.get(), 0700) != 0)
    throw Refused{"The Quarantine folder of Zendrix is open to others. Nothing was changed."};
  if (::flock(store.get(), LOCK_EX | LOCK_NB) != 0)
    throw Refused{"Zendrix is at work on another file. Try again in a moment."};
  return store;
}

// What an interruption left: a manifest without its file (the file is in its place), a copy that did not come
// to its end, permissions that were not taken away or were about to be given back, an original whose copy is
// complete.
void Quarantine::Sweep(int store) const {
  for (const auto& name : NamesIn(store)) {
    if (name.ends_with(kPartEnding)) {
      Remove(store, name);
    } else if (name.ends_with(kManifestEnding)) {
      if (!Exists(store, name.substr(0, name.size() - (sizeof kManifestEnding - 1)))) Remove(store, name);
    } else if (name != "." && name != ".." && Exists(store, name + kManifestEnding)) {
      ::fchmodat(store, name.c_str(), 0, 0);
      RemoveAside(store, name);
    }
  }
}

std::string Quarantine::PutAway(std::string_view description) {
  NamedFile named = FindNamedFile(description);
  RefuseWhatMustStay(named, program_folder_);
  const Manifest manifest = Describe(named);
  if (!pretend_) {
    const Descriptor store = OpenStore();
    Sweep(store.get());
    const std::string name = RandomName();
    WriteNewFile(store.get(), name + kManifestEnding, LineOf(manifest));
    try {
      MoveIn(store.get(), name, named, manifest);
    } catch (const Refused&) {
      Remove(store.get(), name + kManifestEnding);
      throw;
    }
    ::fsync(store.get());
  }
  return NameToTell(named.place.path) +
         " was moved to quarantine. It can no longer run. Allow brings it back.";
}

void Quarantine::MoveIn(int store, const std::string& name, NamedFile& named,
                        const Manifest& manifest) const {
  const Place& place = named.place;
  if (!RenameNoReplace(place.folder.get(), place.name, store, name))
    return CopyIn(store, name, named, manifest);
  if (!IsStill(store, name, named.status)) {
    // Somebody put another file in its place between the check and the move.
    RenameNoReplace(store, name, place.folder.get(), place.name);
    throw Refused{NameToTell(place.path) + " was exchanged while it was being moved. Nothing was changed."};
  }
  ::fchmod(named.file.get(), 0);
}

void Quarantine::CopyIn(int store, const std::string& name, NamedFile& named,
                        const Manifest& manifest) const {
  const Place& place = named.place;
  const std::string part = name + kPartEnding;
  const Descriptor copy(
      ::openat(store, part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!copy.valid()) throw Refused{"The Quarantine folder of Zendrix cannot be used. Nothing was changed."};
  try {
    if (HashAndCopy(named.file, copy.get()) != manifest.sha256)
      throw Refused{NameToTell(place.path) + " is being written to. Try again in a moment."};
    if (::fsync(copy.get()) != 0) throw Refused{"The disk is full. Nothing was changed."};
    ::fchmod(copy.get(), 0);
    RenameNoReplace(store, part, store, name);
  } catch (const Refused&) {
    Remove(store, part);
    throw;
  }
  ::fsync(store);
  // The entry is complete; now the original goes. It leaves its name for one that nobody knows first, so that
  // what is removed is what was copied.
  const std::string aside = AsideName(name);
  try {
    RenameNoReplace(place.folder.get(), place.name, place.folder.get(), aside);
    if (!IsStill(place.folder.get(), aside, named.status)) {
      RenameNoReplace(place.folder.get(), aside, place.folder.get(), place.name);
      throw Refused{NameToTell(place.path) + " was exchanged while it was being moved. Nothing was changed."};
    }
  } catch (const Refused&) {
    Remove(store, name);
    throw;
  }
  Remove(place.folder.get(), aside);
}

std::optional<Quarantine::Entry> Quarantine::FindEntry(int store, std::string_view description) const {
  const auto paths = PathCandidates(description);
  std::optional<Entry> newest;
  for (const auto& name : NamesIn(store)) {
    if (!name.ends_with(kManifestEnding)) continue;
    const auto manifest = ManifestOf(ReadSmallFile(store, name));
    if (!manifest || std::find(paths.begin(), paths.end(), manifest->path) == paths.end()) continue;
    if (!newest || manifest->moved >= newest->manifest.moved)
      newest = Entry{name.substr(0, name.size() - (sizeof kManifestEnding - 1)), *manifest};
  }
  return newest;
}

std::string Quarantine::PutBack(std::string_view description) {
  const Descriptor store = OpenStore();
  if (!pretend_) Sweep(store.get());
  const auto entry = FindEntry(store.get(), description);
  if (!entry) throw Refused{"Nothing that this event names is in quarantine."};
  const std::string told = NameToTell(entry->manifest.path);
  const Place place = OpenPlace(entry->manifest.path);
  if (!place.folder.valid()) throw Refused{"The folder of " + told + " is gone, so it stays in quarantine."};
  if (Exists(place.folder.get(), place.name))
    throw Refused{"There is another file named " + told + " in its place, so it stays in quarantine."};
  if (!pretend_) {
    struct stat status = {};
    const Descriptor file = OpenPlainFile(store.get(), entry->name, status, true);
    if (!file.valid() || HashAndCopy(file, -1) != entry->manifest.sha256)
      throw Refused{told + " is damaged, so it stays in quarantine."};
    MoveOut(store.get(), *entry, place, file);
    Remove(store.get(), entry->name + kManifestEnding);
    ::fsync(store.get());
  }
  return told + " was put back in its place.";
}

void Quarantine::MoveOut(int store, const Entry& entry, const Place& place, const Descriptor& file) const {
  try {
    // Given back before the move, inside a folder that nobody else can enter: what appears in its place is
    // whole.
    Restore(file, entry.manifest);
    if (!RenameNoReplace(store, entry.name, place.folder.get(), place.name))
      CopyOut(store, entry, place, file);
  } catch (const Refused&) {
    ::fchmod(file.get(), 0);
    throw;
  }
}

void Quarantine::CopyOut(int store, const Entry& entry, const Place& place, const Descriptor& file) const {
  const std::string part = "." + entry.name;
  Descriptor copy(
      ::openat(place.folder.get(), part.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600));
  if (!copy.valid())
    throw Refused{"You may not change the folder of " + NameToTell(place.path) + ". It stays in quarantine."};
  try {
    HashAndCopy(file, copy.get());
    if (::fsync(copy.get()) != 0) throw Refused{"The disk is full, so it stays in quarantine."};
    Restore(copy, entry.manifest);
    RenameNoReplace(place.folder.get(), part, place.folder.get(), place.name);
  } catch (const Refused&) {
    Remove(place.folder.get(), part);
    throw;
  }
  Remove(store, entry.name);
}

}  // namespace zendrix::family
