// Which file an event means: the one that its description names when it is read as the alert's page reads it.
// Where two readings are possible, or where the page shows no row or another name, no file is meant.
#pragma once

#include <string>
#include <vector>

#include "family/description_reading.h"
#include "family/intermediate/event.h"
#include "family/intermediate/named_file.h"

namespace zendrix::family {

struct Subject {
  DescriptionKind kind = DescriptionKind::kFolderEntry;
  DescriptionReading reading;  // views into the event's description
  NamedFile file;
};

// The paths that the event may mean; refuses a description that can be of two kinds, or of none.
std::vector<std::string> PathsOf(const Event& event);

// The one plain file; refuses when there are several or none. Nothing is opened that does not have to be.
Subject SubjectOf(const Event& event);

}  // namespace zendrix::family
