// The rule of what may be put in quarantine. Everything that it does not allow stays, and one plain sentence
// says why:
// - a plain file with one name on the disk, that can be run or is an entry of an autostart place;
// - owned by the user who clicks, unless the superuser acts for him with his consent;
// - no part of Zendrix (own_parts.h), and no part of a package unless its contents are not the package's
//   (package_record.h);
// - the very file that the event's process runs (running_program.h); of an autostart event the entry itself,
//   never the command that it names;
// - when the superuser clicks nothing of the system's own folders, but for autostart entries that no package
//   has.
#pragma once

#include <string>

#include "family/intermediate/event.h"
#include "family/intermediate/outside.h"
#include "family/intermediate/subject.h"

namespace zendrix::family {

// Refuses; when it returns, the file may be taken and is open for reading.
void RequireMayTake(Subject& subject, const Event& event, const std::string& program_folder,
                    const Outside& outside);

}  // namespace zendrix::family
