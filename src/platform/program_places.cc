#include "platform/program_places.h"

#include <filesystem>

#include "platform/install_paths.h"

namespace zendrix::platform {
namespace {

// The system's folder may be reached through a link itself.
bool IsSameFolder(const std::string& canonical, const std::string& folder) {
  std::error_code error;
  const auto real = std::filesystem::canonical(folder, error);
  return canonical == (error ? folder : real.string());
}

}  // namespace

InstalledRoots BuiltInRoots() {
  return {kInstalledPrograms, kInstalledData, kInstalledLibraries, kServicesFolder};
}

ProgramPlaces PlacesOf(const std::string& executable_folder, const std::optional<std::string>& chosen_folder,
                       bool home_edition, const InstalledRoots& roots, const UserFolders& user) {
  const bool in_system = IsSameFolder(executable_folder, roots.programs);
  ProgramPlaces places;
  places.libraries = in_system ? roots.libraries : executable_folder;
  places.installed = in_system && !chosen_folder;
  if (!places.installed) {
    places.folder = chosen_folder.value_or(executable_folder);
    places.pictures = places.folder;
    places.quarantine = places.folder;
    return places;
  }
  places.folder = JoinPath(roots.services, home_edition ? "home" : "admin");
  places.pictures = roots.data;
  places.layers = {places.folder, roots.data, JoinPath(user.config, "zendrix"),
                   JoinPath(user.state, "zendrix")};
  // The helper has the one that counts; this is for what it does not answer for.
  places.quarantine = places.layers.state;
  return places;
}

}  // namespace zendrix::platform
