#include "family/intermediate/transfer.h"

#include <sys/stat.h>
#include <unistd.h>

#include "family/intermediate/attributes.h"
#include "family/intermediate/file_work.h"

namespace zendrix::family {
namespace {

[[noreturn]] void RefuseExchanged(const Place& place) {
  throw Refused{NameToTell(place.path) +
                " was exchanged or changed by another program meanwhile. It was not put in quarantine."};
}

// The name leads to the file that was described, and that is as it was.
bool IsAsDescribed(int folder, const std::string& name, const NamedFile& named) {
  struct stat now = {};
  return IsStill(folder, name, named.status) && ::fstat(named.file.get(), &now) == 0 && now.st_nlink == 1 &&
         now.st_size == named.status.st_size && now.st_mtim.tv_sec == named.status.st_mtim.tv_sec &&
         now.st_mtim.tv_nsec == named.status.st_mtim.tv_nsec;
}

// False when the file is on another file system.
bool MoveIn(int store, const std::string& name, const NamedFile& named) {
  const Place& place = named.place;
  if (!RenameNoReplace(place.folder.get(), place.name, store, name)) return false;
  if (!IsAsDescribed(store, name, named)) {
    GiveBack(store, name, place);
    RefuseExchanged(place);
  }
  if (!MakeOwn(named.file)) {
    GiveBack(store, name, place);
    throw Refused{"You may not change " + NameToTell(place.path) + ". Nothing was changed."};
  }
  return true;
}

// What the copy cannot have would be lost.
void CopyAttributes(const Descriptor& from, const Descriptor& to, const std::string& path) {
  if (!GiveAttributes(to, AttributesOf(from)))
    throw Refused{"The extended attributes of " + NameToTell(path) +
                  " cannot be kept on the other disk. Nothing was changed."};
}

void CopyIn(int store, const std::string& name, const NamedFile& named, const Manifest& manifest,
            Budget& budget) {
  const std::string part = name + kPartEnding;
  const Descriptor copy = CreateFile(store, part);
  try {
    if (HashAndCopy(named.file, manifest.size, copy.get(), &budget) != manifest.sha256)
      throw Refused{NameToTell(manifest.path) + " is being written to. Try again in a moment."};
    // Whether it can have its owner back is better known now than later.
    Restore(copy, manifest);
    CopyAttributes(named.file, copy, manifest.path);
    if (!MakeOwn(copy)) throw Refused{"The disk did not take the change. Nothing was changed."};
    SyncFile(copy);
    RenameNoReplace(store, part, store, name);
  } catch (const Refused&) {
    Remove(store, part);
    throw;
  }
  SyncFolder(store);
}

// The entry is complete; the original leaves its name for one that nobody knows first, so that what is
// removed is what was copied. When it may not go, the copy goes.
void RemoveOriginal(int store, const std::string& name, const NamedFile& named) {
  const Place& place = named.place;
  const int folder = place.folder.get();
  const std::string aside = AsideName(name);
  try {
    RenameNoReplace(folder, place.name, folder, aside);
    if (!IsAsDescribed(folder, aside, named)) {
      GiveBack(folder, aside, place);
      RefuseExchanged(place);
    }
    if (::unlinkat(folder, aside.c_str(), 0) != 0) {
      GiveBack(folder, aside, place);
      throw Refused{"You may not change the folder of " + NameToTell(place.path) + ". Nothing was changed."};
    }
  } catch (const Refused&) {
    Remove(store, name);
    throw;
  }
}

void CopyOut(int store, const Entry& entry, const Place& place, const Descriptor& file) {
  const int folder = place.folder.get();
  const std::string part = AsideName(entry.name);
  const Descriptor copy = CreateFile(folder, part);
  try {
    if (HashAndCopy(file, entry.manifest.size, copy.get()) != entry.manifest.sha256)
      throw Refused{NameToTell(place.path) + " is damaged, so it stays in quarantine."};
    CopyAttributes(file, copy, place.path);
    Restore(copy, entry.manifest);
    SyncFile(copy);
    RenameNoReplace(folder, part, folder, place.name);
  } catch (const Refused&) {
    Remove(folder, part);
    throw;
  }
  struct stat status = {};
  if (::fstat(copy.get(), &status) != 0 || !IsStill(folder, place.name, status))
    throw Refused{NameToTell(place.path) + " was exchanged by another program, so it stays in quarantine."};
  SyncFolder(folder);
  Remove(store, entry.name);
}

}  // namespace

void TakeIn(int store, const NamedFile& named, const Manifest& manifest, Budget& budget) {
  const std::string name = RandomName();
  try {
    WriteNewFile(store, name + kInEnding, "");
    WriteNewFile(store, name + kManifestEnding, LineOf(manifest));
    SyncFolder(store);
    if (!MoveIn(store, name, named)) {
      CopyIn(store, name, named, manifest, budget);
      RemoveOriginal(store, name, named);
    }
  } catch (const Refused&) {
    // Knows what is where: drops a copy whose original is in its place, tries again to give back what is not
    // ours.
    SweepEntry(store, name);
    throw;
  }
  SyncFolder(named.place.folder.get());
  Remove(store, name + kInEnding);
  SyncFolder(store);
}

void TakeOut(int store, const Entry& entry, const Place& place, const Descriptor& file) {
  try {
    // Given back before the move, in a folder that nobody else can enter: what appears in its place is whole.
    Restore(file, entry.manifest);
    if (!RenameNoReplace(store, entry.name, place.folder.get(), place.name)) {
      WriteNewFile(store, entry.name + kOutEnding, "");
      SyncFolder(store);
      CopyOut(store, entry, place, file);
    }
  } catch (const Refused&) {
    SweepEntry(store, entry.name);
    throw;
  }
  SyncFolder(place.folder.get());
  Remove(store, entry.name + kManifestEnding);
  Remove(store, entry.name + kOutEnding);
  SyncFolder(store);
}

}  // namespace zendrix::family
