#include "home/update_file.h"

#include "core/guards.h"
#include "core/initial.h"
#include "core/path_text.h"
#include "core/version.h"
#include "core/version_text.h"
#include "platform/pe_version.h"

namespace zendrix::home {
namespace {

constexpr char kParameters[] = "/silent /log =\"KorvessaZendrixSetup.log\" /NOCANCEL";
constexpr char kUpdateFilePlace[] = "frmNewUpdate";

}  // namespace

std::string UpdateFile::Path() const {
  return platform::JoinPath(app_.ProgramFolder, core::kUpdateFileName);
}

bool UpdateFile::IsThere() const {
  return app_.seams.files.Exists(Path());
}

std::string UpdateFile::Version() const {
  std::string version;
  core::OrIgnore([&] { version = platform::PeFileVersion(app_.seams.files, Path()); });
  return version;
}

void UpdateFile::Remove() const {
  (void)app_.seams.files.Remove(Path()).ok();
}

bool UpdateFile::Start() const {
  bool started = false;
  const auto error =
      core::ErrorOf([&] { started = app_.seams.shell.OpenInstaller(Path(), kParameters).ok(); });
  if (started) return true;
  const std::string path = core::PathText(Path());
  std::string text = "Unable to load Installer.";
  if (error) text += " Error " + std::to_string(error->number) + ": " + error->description + ". cmd: " + path;
  log_.WriteLog(kUpdateFilePlace, text);
  app_.seams.message_boxes.Show({app_.ProductName, text + "\r\n" + path, platform::BoxIcon::kStop});
  return false;
}

std::string RunningVersion() {
  return core::FormatVersion(core::kVersionMajor, core::kVersionMinor, core::kVersionRevision);
}

}  // namespace zendrix::home
