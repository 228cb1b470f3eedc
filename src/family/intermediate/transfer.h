// The ways into the quarantine and out of it: a rename within one file system; across two a copy that is
// complete and on the disk before the original goes. Each either does its work to the end or refuses and
// leaves what it found.
#pragma once

#include "family/intermediate/budget.h"
#include "family/intermediate/named_file.h"
#include "family/intermediate/store.h"

namespace zendrix::family {

// Makes a complete entry of the file and takes it from its place. What stands in its place at that moment
// without being the file that was described and checked is given back untouched.
void TakeIn(int store, const NamedFile& named, const Manifest& manifest, Budget& budget);

// Puts the entry's file, open and checked, into its place and removes the entry.
void TakeOut(int store, const Entry& entry, const Place& place, const Descriptor& file);

}  // namespace zendrix::family
