// Where a console and its inspector keep things. Installed (the executable stands in the system's folder of
// programs, and nobody chose another folder) that is several folders, see layered_files.h; otherwise one real
// folder holds everything.
#pragma once

#include <optional>
#include <string>

#include "platform/layered_files.h"
#include "platform/linux/user_folders.h"

namespace zendrix::platform {

// Absolute paths without a closing separator.
struct InstalledRoots {
  std::string programs;   // what makes an executable an installed one
  std::string data;       // description files and Images
  std::string libraries;  // KorvessaIntermediateTypes
  std::string services;   // what the Agent writes, in folders "home" and "admin"
};
// Those that the program was built for.
InstalledRoots BuiltInRoots();

struct ProgramPlaces {
  bool installed = false;
  std::string folder;      // the program folder
  std::string pictures;    // the folder that holds Images, for those who read them past the files
  std::string libraries;   // where KorvessaIntermediateTypes is
  std::string quarantine;  // where the library makes its own store
  Layers layers;           // of an installed console
};

// `executable_folder` is canonical. `chosen_folder` is the folder that the command line names, if it does.
ProgramPlaces PlacesOf(const std::string& executable_folder, const std::optional<std::string>& chosen_folder,
                       bool home_edition, const InstalledRoots& roots, const UserFolders& user);

}  // namespace zendrix::platform
