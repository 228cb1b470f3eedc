#include "platform/layered_files.h"

#include <algorithm>
#include <filesystem>
#include <iterator>

#include "platform/linux/left_overs.h"

namespace zendrix::platform {
namespace {

constexpr std::string_view kPictures = "Images";
constexpr std::string_view kSaveNote = ".pending";
constexpr std::string_view kSideFile = ".kvh";

Error ReadOnly(const std::string& path) {
  return {ErrorKind::kPermissionDenied, path + ": only to be read"};
}

std::string NormalPath(const std::string& path) {
  std::string normal = std::filesystem::path(path).lexically_normal().string();
  while (normal.size() > 1 && normal.back() == '/') normal.pop_back();
  return normal;
}

// "zendrix.ini.pending" -> "zendrix.ini"
std::string_view WithoutNote(std::string_view name) {
  if (name.ends_with(kSaveNote)) name.remove_suffix(kSaveNote.size());
  return name;
}

}  // namespace

Layer LayerOf(std::string_view name) {
  const std::string_view file = WithoutNote(name);
  const auto is_of = [&](std::string_view stem) { return file.substr(0, file.rfind('.')) == stem; };
  if (name == kPictures || name.starts_with("KorvessaDesc")) return Layer::kData;
  if (is_of("KorvessaSMTPConfig")) return Layer::kSettings;
  if (is_of("KorvessaAdministratorEventLog") || is_of("KorvessaActivations")) return Layer::kState;
  // The family's own names apart, a side file is one of a settings file, which has the executable's name.
  const bool is_settings =
      file.ends_with(".ini") || (file.ends_with(kSideFile) && !file.starts_with("Korvessa"));
  return is_settings ? Layer::kSettings : Layer::kAgent;
}

const std::string& LayeredFiles::FolderOf(Layer layer) const {
  switch (layer) {
    case Layer::kData:
      return layers_.data;
    case Layer::kSettings:
      return layers_.settings;
    case Layer::kState:
      return layers_.state;
    case Layer::kAgent:
      break;
  }
  return layers_.program;
}

LayeredFiles::Place LayeredFiles::PlaceOf(const std::string& path) const {
  const std::string normal = NormalPath(path);
  if (!normal.starts_with(layers_.program) || normal.size() < layers_.program.size() + 2 ||
      normal[layers_.program.size()] != '/')
    return {path, std::nullopt};
  const std::string inside = normal.substr(layers_.program.size() + 1);
  const std::size_t slash = inside.find('/');
  // In a folder of the program folder everything lies where that folder does.
  const Layer layer = slash == std::string::npos || inside.substr(0, slash) == kPictures
                          ? LayerOf(inside.substr(0, slash))
                          : Layer::kAgent;
  return {JoinPath(FolderOf(layer), inside), layer};
}

Status LayeredFiles::Prepare(const Place& place) {
  if (!place.layer) return Done{};
  if (*place.layer == Layer::kData || *place.layer == Layer::kAgent) return ReadOnly(place.path);
  const std::string& folder = FolderOf(*place.layer);
  return below_.FolderExists(folder) ? Status(Done{}) : make_folder_(folder);
}

bool LayeredFiles::Exists(const std::string& path) {
  return below_.Exists(PlaceOf(path).path);
}

bool LayeredFiles::FolderExists(const std::string& path) {
  return NormalPath(path) == layers_.program || below_.FolderExists(PlaceOf(path).path);
}

Result<std::int64_t> LayeredFiles::Size(const std::string& path) {
  return below_.Size(PlaceOf(path).path);
}

Result<std::unique_ptr<ReadStream>> LayeredFiles::Open(const std::string& path) {
  return below_.Open(PlaceOf(path).path);
}

Status LayeredFiles::WriteAll(const std::string& path, std::string_view bytes) {
  const Place place = PlaceOf(path);
  if (Status ready = Prepare(place); !ready) return ready;
  return below_.WriteAll(place.path, bytes);
}

Status LayeredFiles::Append(const std::string& path, std::string_view bytes) {
  const Place place = PlaceOf(path);
  if (Status ready = Prepare(place); !ready) return ready;
  return below_.Append(place.path, bytes);
}

Status LayeredFiles::Remove(const std::string& path) {
  const Place place = PlaceOf(path);
  if (place.layer == Layer::kData || place.layer == Layer::kAgent) return ReadOnly(place.path);
  return below_.Remove(place.path);
}

Status LayeredFiles::Rename(const std::string& from, const std::string& to) {
  const Place source = PlaceOf(from);
  const Place target = PlaceOf(to);
  if (source.layer == Layer::kData || source.layer == Layer::kAgent) return ReadOnly(source.path);
  if (Status ready = Prepare(target); !ready) return ready;
  if (source.layer != target.layer) return Error{ErrorKind::kOther, to + ": not in one folder with " + from};
  return below_.Rename(source.path, target.path);
}

Result<std::vector<std::string>> LayeredFiles::List(const std::string& folder) {
  if (NormalPath(folder) != layers_.program) return below_.List(PlaceOf(folder).path);
  std::vector<std::string> names;
  for (const Layer layer : {Layer::kData, Layer::kAgent, Layer::kSettings, Layer::kState}) {
    const auto listed = below_.List(FolderOf(layer));
    if (!listed && listed.error().kind != ErrorKind::kNotFound) return listed.error();
    if (!listed) continue;
    // What else lies in a layer's folder is no part of the program folder.
    std::copy_if(listed.value().begin(), listed.value().end(), std::back_inserter(names),
                 [&](const std::string& name) { return LayerOf(name) == layer; });
  }
  return names;
}

bool LayeredFiles::SettingsAreNew() {
  const auto listed = below_.List(layers_.settings);
  if (!listed) return listed.error().kind == ErrorKind::kNotFound;
  return std::all_of(listed.value().begin(), listed.value().end(), [](const std::string& name) {
    return name.ends_with(kSaveNote) ||
           (name.starts_with(kTemporaryPrefix) && name.ends_with(kTemporarySuffix));
  });
}

}  // namespace zendrix::platform
