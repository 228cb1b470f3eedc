#include "family/description_reading.h"

#include <algorithm>
#include <array>
#include <utility>

namespace zendrix::family {
namespace {

constexpr auto kNone = std::string_view::npos;

bool IsNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == kNone;
}

}  // namespace

DescriptionReading ReadRunningProcess(std::string_view description) {
  const auto folder_end = description.rfind('\\');
  const auto colon = description.rfind(':');
  DescriptionReading reading;
  reading.program = reading.path = description;
  if (folder_end != kNone) {
    const bool colon_behind = colon != kNone && colon > folder_end;
    reading.program = description.substr(folder_end + 1, colon_behind ? colon - folder_end - 1 : kNone);
  }
  if (colon == kNone) return reading;
  reading.behind_colon = description.substr(colon + 1);
  if (IsNumber(*reading.behind_colon)) {
    reading.process = *reading.behind_colon;
    reading.path = description.substr(0, colon);
  }
  return reading;
}

DescriptionReading ReadListeningPort(std::string_view description) {
  const auto colon = description.find(':');
  DescriptionReading reading;
  if (colon == kNone) return reading;
  reading.port = description.substr(0, colon);
  reading.path = description.substr(colon + 1);
  return reading;
}

DescriptionReading ReadConnection(std::string_view description) {
  const auto first = description.find(':');
  const auto second = first == kNone ? kNone : description.find(':', first + 1);
  DescriptionReading reading;
  if (first == kNone) return reading;
  reading.address = description.substr(0, first);
  reading.port = description.substr(first + 1, second == kNone ? kNone : second - first - 1);
  if (second == kNone) return reading;
  reading.path = description.substr(second + 1);
  return reading;
}

DescriptionReading ReadAutostartEntry(std::string_view description) {
  const auto equals = description.find('=');
  DescriptionReading reading;
  reading.path = description.substr(0, equals);
  if (equals != kNone) reading.command = description.substr(equals + 1);
  return reading;
}

DescriptionReading ReadFolderEntry(std::string_view description) {
  DescriptionReading reading;
  reading.path = description;
  return reading;
}

std::optional<DescriptionKind> KindOfMonitor(std::string_view monitor) {
  static constexpr std::array<std::pair<std::string_view, DescriptionKind>, 5> kKinds = {
      {{"Running Processes", DescriptionKind::kRunningProcess},
       {"Listening Ports", DescriptionKind::kListeningPort},
       {"TCP Connections", DescriptionKind::kConnection},
       {"Autorun Registry", DescriptionKind::kAutostartEntry},
       {"Windows Folder", DescriptionKind::kFolderEntry}}};
  const auto found =
      std::find_if(kKinds.begin(), kKinds.end(), [&](const auto& one) { return one.first == monitor; });
  if (found == kKinds.end()) return std::nullopt;
  return found->second;
}

DescriptionReading ReadDescription(DescriptionKind kind, std::string_view description) {
  switch (kind) {
    case DescriptionKind::kRunningProcess:
      return ReadRunningProcess(description);
    case DescriptionKind::kListeningPort:
      return ReadListeningPort(description);
    case DescriptionKind::kConnection:
      return ReadConnection(description);
    case DescriptionKind::kAutostartEntry:
      return ReadAutostartEntry(description);
    case DescriptionKind::kFolderEntry:
      break;
  }
  return ReadFolderEntry(description);
}

}  // namespace zendrix::family
