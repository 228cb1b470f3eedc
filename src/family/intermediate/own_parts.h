// What belongs to Zendrix itself: the console, its libraries, its browser, its data and the Agent,
// wherever they lie and by whatever path they are reached.
#pragma once

#include <string>

#include "family/intermediate/named_file.h"
#include "family/intermediate/outside.h"

namespace zendrix::family {

// By device and number:
// - what this process and the processes it started (the browser's) run and have mapped,
// - everything in the program folder,
// - in the folders where programs and services are kept, what is named like a part of Zendrix,
// - the programs that a system service named like one of ours starts.
bool IsOwnPart(const NamedFile& file, const std::string& program_folder, const Outside& outside);

}  // namespace zendrix::family
