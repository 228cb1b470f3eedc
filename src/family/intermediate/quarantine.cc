#include "family/intermediate/quarantine.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <vector>

#include "family/intermediate/file_work.h"
#include "family/intermediate/may_take.h"
#include "family/intermediate/subject.h"
#include "family/intermediate/transfer.h"

namespace zendrix::family {
namespace {

// Texts of an event are kept with the file, but not at any length.
constexpr std::size_t kLongestAlert = 64;

Manifest Describe(const NamedFile& named, const Event& event, Budget& budget) {
  Manifest manifest;
  manifest.path = named.place.path;
  manifest.owner = named.status.st_uid;
  manifest.group = named.status.st_gid;
  manifest.mode = named.status.st_mode & 07777U;
  manifest.accessed = named.status.st_atim;
  manifest.modified = named.status.st_mtim;
  manifest.size = static_cast<std::uint64_t>(named.status.st_size);
  manifest.sha256 = HashAndCopy(named.file, manifest.size, -1, &budget);
  manifest.alert = event.alert.substr(0, kLongestAlert);
  manifest.alert.erase(std::remove(manifest.alert.begin(), manifest.alert.end(), '\0'), manifest.alert.end());
  manifest.event = event.moment;
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
  clock_.Look(outside_.proc);
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

std::string Quarantine::PutAway(const Event& event) {
  taken_.reset();
  clock_.Look(outside_.proc);
  outside_.clock_set = clock_.clock_set();
  Budget budget(outside_);
  const Descriptor home = OpenHome();
  // First of all, for the file may be one that an interrupted operation has left half way.
  Descriptor store = OpenSweptStore(home);
  Subject subject = SubjectOf(event);
  RequireMayTake(subject, event, program_folder_, outside_);
  if (!store.valid() && !MayChange(home.get()))
    throw Refused{"You may not change the folder of Zendrix, where the quarantine is. Nothing was changed."};
  if (!OutlivesRestart(store.valid() ? store : home, outside_.memory_file_systems))
    throw Refused{
        "The folder of Zendrix would not outlive a restart, so there is no way back. Nothing was changed."};
  const Manifest manifest = Describe(subject.file, event, budget);
  if (!event.sha256.empty() && manifest.sha256 != event.sha256)
    throw Refused{NameToTell(manifest.path) + " has other contents than were meant. Nothing was changed."};
  if (!pretend_) {
    if (!store.valid()) store = MakeStore(home);
    TakeIn(store.get(), subject.file, manifest, budget);
  }
  taken_ = Taken{manifest, subject.file.status.st_dev, subject.file.status.st_ino};
  return NameToTell(manifest.path) +
         " was moved to quarantine and can no longer be started. Allow brings it back.";
}

std::string Quarantine::PutBack(const Event& event) {
  const Descriptor home = OpenHome();
  const Descriptor store = OpenSweptStore(home);
  const Refused nothing{"Nothing that this event names is in quarantine."};
  if (!store.valid()) throw nothing;
  const auto entry = FindEntry(store.get(), PathsOf(event), event.alert);
  if (!entry) throw nothing;
  return BringBack(store, *entry);
}

std::vector<Entry> Quarantine::List() {
  const Descriptor store = OpenSweptStore(OpenHome());
  return store.valid() ? ListEntries(store.get()) : std::vector<Entry>();
}

std::string Quarantine::PutBackEntry(const std::string& name) {
  const Descriptor store = OpenSweptStore(OpenHome());
  for (const auto& entry : store.valid() ? ListEntries(store.get()) : std::vector<Entry>())
    if (entry.name == name) return BringBack(store, entry);
  throw Refused{"There is no such entry in quarantine."};
}

std::string Quarantine::BringBack(const Descriptor& store, const Entry& entry) const {
  const Place place = FreePlaceOf(entry);
  const Descriptor file = OpenUndamaged(store.get(), entry, pretend_);
  if (!pretend_) TakeOut(store.get(), entry, place, file);
  return NameToTell(entry.manifest.path) + " was put back in its place.";
}

std::string LinesOf(const std::vector<Entry>& entries) {
  std::string text;
  for (const auto& [name, manifest] : entries)
    text += name + "\t" + std::to_string(manifest.size) + "\t" + manifest.sha256 + "\t" +
            std::to_string(manifest.moved.tv_sec) + "\t" + std::to_string(manifest.owner) + "\t" +
            Escape(manifest.alert) + "\t" + Escape(manifest.path) + "\n";
  return text;
}

}  // namespace zendrix::family
