#include "family/intermediate/quarantine.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <vector>

#include "family/intermediate/file_work.h"
#include "family/intermediate/transfer.h"
#include "family/intermediate/untouchable.h"

namespace zendrix::family {
namespace {

// A file that says it is larger than any program keeps the console busy for hours, and costs its maker
// nothing.
constexpr off_t kLargest = off_t{4} << 30;

bool IsLocked(const Descriptor& handle) {
  struct statx status = {};
  return ::statx(handle.get(), "", AT_EMPTY_PATH, STATX_BASIC_STATS, &status) == 0 &&
         (status.stx_attributes & (STATX_ATTR_IMMUTABLE | STATX_ATTR_APPEND)) != 0;
}

// Without this the system would drop the set-group-id bit when the file comes back.
bool MayGiveGroup(const struct stat& status) {
  if (::geteuid() == 0 || (status.st_mode & S_ISGID) == 0 || status.st_gid == ::getegid()) return true;
  std::vector<gid_t> groups(static_cast<std::size_t>(std::max(::getgroups(0, nullptr), 0)));
  const int count = ::getgroups(static_cast<int>(groups.size()), groups.data());
  return count > 0 && std::find(groups.begin(), groups.end(), status.st_gid) != groups.end();
}

void RefuseWhatMustStay(const NamedFile& named, const std::string& program_folder) {
  const std::string name = NameToTell(named.place.path);
  if (IsUntouchable(named.place, named.status, program_folder))
    throw Refused{name + " belongs to the system or to Zendrix itself and stays where it is."};
  // A folder that everybody may write to would give other people's files away.
  if (::geteuid() != 0 && named.status.st_uid != ::geteuid())
    throw Refused{name + " belongs to somebody else. Nothing was changed."};
  if (!MayGiveGroup(named.status))
    throw Refused{name + " has the rights of a group that is not yours. Nothing was changed."};
  if (!MayChange(named.place.folder.get()))
    throw Refused{"You may not change the folder of " + name + ". Nothing was changed."};
  if (IsLocked(named.handle)) throw Refused{name + " is locked against changes. Nothing was changed."};
  if (named.status.st_size > kLargest)
    throw Refused{name + " is larger than 4 GB, too large for quarantine. Nothing was changed."};
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
  manifest.sha256 = HashAndCopy(named.file, manifest.size, -1);
  ::clock_gettime(CLOCK_REALTIME, &manifest.moved);
  struct stat after = {};
  if (::fstat(named.file.get(), &after) != 0 || after.st_size != named.status.st_size ||
      after.st_mtim.tv_sec != named.status.st_mtim.tv_sec ||
      after.st_mtim.tv_nsec != named.status.st_mtim.tv_nsec)
    throw Refused{NameToTell(manifest.path) + " is being written to. Try again in a moment."};
  return manifest;
}

Place FreePlaceOf(const Entry& entry) {
  const std::string name = NameToTell(entry.manifest.path);
  Place place = OpenPlace(entry.manifest.path);
  if (!place.folder.valid()) throw Refused{"The folder of " + name + " is gone, so it stays in quarantine."};
  if (Exists(place.folder.get(), place.name))
    throw Refused{"There is another file named " + name + " in its place, so it stays in quarantine."};
  if (!MayChange(place.folder.get()))
    throw Refused{"You may not change the folder of " + name + ", so it stays in quarantine."};
  return place;
}

// The entry's file, open for reading once its contents are known to be those that were put away.
Descriptor OpenUndamaged(int store, const Entry& entry, bool look_only) {
  const Refused damaged{NameToTell(entry.manifest.path) + " is damaged, so it stays in quarantine."};
  struct stat status = {};
  const Descriptor handle = OpenHandle(store, entry.name, status);
  if (!handle.valid() || !S_ISREG(status.st_mode) || status.st_nlink != 1 ||
      static_cast<std::uint64_t>(status.st_size) != entry.manifest.size)
    throw damaged;
  Descriptor file = look_only ? OpenForReading(handle) : OpenInSpite(handle);
  // Only the superuser can look into a file without permissions and leave it so.
  if (!file.valid() && look_only) return file;
  if (!file.valid() || HashAndCopy(file, entry.manifest.size, -1) != entry.manifest.sha256) throw damaged;
  return file;
}

}  // namespace

void Quarantine::Configure(const std::string& program_folder, bool pretend) {
  const std::unique_ptr<char, decltype(&std::free)> real(::realpath(program_folder.c_str(), nullptr),
                                                         std::free);
  program_folder_ = real ? real.get() : program_folder;
  pretend_ = pretend;
}

Descriptor Quarantine::OpenHome() const {
  Descriptor home(::open(program_folder_.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  if (!home.valid()) throw Refused{"The folder of Zendrix cannot be found. Nothing was changed."};
  return home;
}

Descriptor Quarantine::OpenSweptStore(const Descriptor& home) const {
  Descriptor store = OpenStore(home, pretend_);
  if (store.valid() && !pretend_) Sweep(store.get());
  return store;
}

std::string Quarantine::PutAway(std::string_view description) {
  const Descriptor home = OpenHome();
  // First of all, for the file may be one that an interrupted operation has left half way.
  Descriptor store = OpenSweptStore(home);
  NamedFile named = FindNamedFile(description);
  RefuseWhatMustStay(named, program_folder_);
  OpenNamedFile(named);
  const Manifest manifest = Describe(named);
  if (!store.valid() && !MayChange(home.get()))
    throw Refused{"You may not change the folder of Zendrix, where the quarantine is. Nothing was changed."};
  if (!pretend_) {
    if (!store.valid()) store = MakeStore(home);
    TakeIn(store.get(), named, manifest);
  }
  return NameToTell(manifest.path) +
         " was moved to quarantine and can no longer be started. Allow brings it back.";
}

std::string Quarantine::PutBack(std::string_view description) {
  const Descriptor home = OpenHome();
  const Descriptor store = OpenSweptStore(home);
  const auto entry = store.valid() ? FindEntry(store.get(), description) : std::nullopt;
  if (!entry) throw Refused{"Nothing that this event names is in quarantine."};
  const Place place = FreePlaceOf(*entry);
  const Descriptor file = OpenUndamaged(store.get(), *entry, pretend_);
  if (!pretend_) TakeOut(store.get(), *entry, place, file);
  return NameToTell(entry->manifest.path) + " was put back in its place.";
}

}  // namespace zendrix::family
