// The program folder of an installed console: one folder for whoever asks, several on the disk, because an
// installed program shares none with its user. Every name of the program folder lies in exactly one layer:
//
//   data      description files and Images: everybody's, and nobody's to change
//   agent     what the Agent writes, and every name that is not known: to be read only
//   settings  the settings and the SMTP file with their side files: the user's
//   state     the console's log and the user's decisions: the user's
//
// A write into the first two is refused as access denied, whatever the rights of the process are. The folders
// of the other two are made when something is first written into them. Paths outside of the program folder
// are what they are. A file keeps its layer under every name that belongs to it (side files, notes of a
// save), so that an interrupted save is brought to its end as in a single folder.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/files.h"

namespace zendrix::platform {

// Absolute paths without a closing separator.
struct Layers {
  std::string program;  // the folder that the console asks for; the agent layer is this very folder
  std::string data;
  std::string settings;
  std::string state;
};

enum class Layer { kData, kAgent, kSettings, kState };

// Where the file of this name in the program folder lies.
Layer LayerOf(std::string_view name);

class LayeredFiles : public Files {
 public:
  // Makes a folder, and those above it that are missing, for this user alone.
  using MakeFolder = std::function<Status(const std::string& folder)>;

  // `below` outlives the object.
  LayeredFiles(Files& below, Layers layers, MakeFolder make_folder)
      : below_(below), layers_(std::move(layers)), make_folder_(std::move(make_folder)) {}

  bool Exists(const std::string& path) override;
  // The program folder is always there, if only in thought.
  bool FolderExists(const std::string& path) override;
  Result<std::int64_t> Size(const std::string& path) override;
  Result<std::unique_ptr<ReadStream>> Open(const std::string& path) override;
  Status WriteAll(const std::string& path, std::string_view bytes) override;
  Status Append(const std::string& path, std::string_view bytes) override;
  Status Remove(const std::string& path) override;
  // Within one layer.
  Status Rename(const std::string& from, const std::string& to) override;
  // Of the program folder all its layers together; a layer that is not there has no names.
  Result<std::vector<std::string>> List(const std::string& folder) override;

  // Whether this user has never had settings here: there is no folder of them, or one with nothing in it but
  // what a first save left behind that was interrupted.
  bool SettingsAreNew();

 private:
  struct Place {
    std::string path;
    std::optional<Layer> layer;  // none outside of the program folder
  };

  Place PlaceOf(const std::string& path) const;
  const std::string& FolderOf(Layer layer) const;
  // Whether something may be written there; makes the folder of a user's layer.
  Status Prepare(const Place& place);

  Files& below_;
  Layers layers_;
  MakeFolder make_folder_;
};

}  // namespace zendrix::platform
