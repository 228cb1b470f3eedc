#include "family/intermediate/may_take.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <vector>

#include "family/intermediate/file_work.h"
#include "family/intermediate/own_parts.h"
#include "family/intermediate/package_record.h"
#include "family/intermediate/running_program.h"
#include "family/intermediate/same_file.h"

namespace zendrix::family {
namespace {

constexpr mode_t kCanBeRun = S_IXUSR | S_IXGRP | S_IXOTH;
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

void RequirePackages(const NamedFile& file, bool only_unpackaged, const Outside& outside) {
  const std::string name = NameToTell(file.place.path);
  const Packaged packaged = PackagedAs(file, outside);
  if (packaged == Packaged::kUnknown)
    throw Refused{"The package manager did not say whether " + name + " is its own. Nothing was changed."};
  if (packaged == Packaged::kAsBuilt || (packaged == Packaged::kAltered && only_unpackaged))
    throw Refused{name + " belongs to an installed package and stays where it is."};
}

// Whether the system lets the file go and come back.
void RequireMovable(const NamedFile& file) {
  const std::string name = NameToTell(file.place.path);
  if (!MayGiveGroup(file.status))
    throw Refused{name + " has the rights of a group that is not yours. Nothing was changed."};
  if (!MayChange(file.place.folder.get()))
    throw Refused{"You may not change the folder of " + name + ". Nothing was changed."};
  if (IsLocked(file.handle)) throw Refused{name + " is locked against changes. Nothing was changed."};
  if (file.status.st_size > kLargest)
    throw Refused{name + " is larger than 4 GB, too large for quarantine. Nothing was changed."};
}

}  // namespace

void RequireMayTake(Subject& subject, const Event& event, const std::string& program_folder,
                    const Outside& outside) {
  NamedFile& file = subject.file;
  const std::string name = NameToTell(file.place.path);
  const bool autostart = LeadsThroughAny(file.place, outside.autostart_places);
  const bool system = outside.user == 0 && LeadsThroughAny(file.place, outside.system_places) &&
                      !LeadsThroughAny(file.place, outside.system_exceptions);
  if (IsOwnPart(file, program_folder, outside))
    throw Refused{name + " belongs to Zendrix itself and stays where it is."};
  if (system && !autostart)
    throw Refused{name + " lies in a folder of the system, which Zendrix leaves alone when it runs as root."};
  if (file.status.st_uid != outside.user && !outside.any_owner)
    throw Refused{name + " belongs to somebody else. Nothing was changed.", true};
  if (subject.kind == DescriptionKind::kAutostartEntry && !autostart)
    throw Refused{name + " is no entry of an autostart folder. Nothing was changed."};
  if (!autostart && (file.status.st_mode & kCanBeRun) == 0)
    throw Refused{name + " is no program: it cannot be run. Nothing was changed."};
  RequireMovable(file);
  OpenNamedFile(file);
  RequirePackages(file, system, outside);
  RequireTheProgram(subject, event, outside);
}

}  // namespace zendrix::family
