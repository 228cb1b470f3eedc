#include "family/intermediate/subject.h"

#include <array>

namespace zendrix::family {
namespace {

constexpr std::array kKinds = {DescriptionKind::kRunningProcess, DescriptionKind::kListeningPort,
                               DescriptionKind::kConnection, DescriptionKind::kAutostartEntry,
                               DescriptionKind::kFolderEntry};

constexpr char kNoFile[] =
    "This event names no file on this computer, so there is nothing to put in quarantine.";

bool IsNumber(std::string_view text) {
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

// Whether a description looks like one of the kind. What is of no other form is the path of a file.
bool HasFormOf(DescriptionKind kind, std::string_view description) {
  const DescriptionReading reading = ReadDescription(kind, description);
  if (!reading.path.starts_with('/')) return false;
  switch (kind) {
    case DescriptionKind::kRunningProcess:
      return !reading.process.empty();
    case DescriptionKind::kListeningPort:
      return IsNumber(reading.port);
    case DescriptionKind::kConnection:
      return IsNumber(reading.port) && !reading.address.empty() && !reading.address.starts_with('/');
    case DescriptionKind::kAutostartEntry:
      return reading.path.size() < description.size();
    case DescriptionKind::kFolderEntry:
      break;
  }
  return true;
}

DescriptionKind KindByForm(std::string_view description) {
  std::optional<DescriptionKind> kind;
  for (const DescriptionKind one : kKinds) {
    if (!HasFormOf(one, description) || (kind && one == DescriptionKind::kFolderEntry)) continue;
    if (kind) throw Refused{"This event can be read in two ways. Nothing was changed."};
    kind = one;
  }
  if (!kind) throw Refused{kNoFile};
  return *kind;
}

DescriptionKind KindOf(const Event& event) {
  if (event.monitor.empty()) return KindByForm(event.description);
  const auto kind = KindOfMonitor(event.monitor);
  if (!kind) throw Refused{kNoFile};
  return *kind;
}

std::vector<std::string> PathsOf(DescriptionKind kind, const Event& event) {
  const DescriptionReading reading = ReadDescription(kind, event.description);
  auto paths = PathsWritten(reading.path);
  // A file whose own name ends in a colon and digits looks like a program with its process.
  if (!reading.process.empty())
    for (auto& path : PathsWritten(event.description)) paths.push_back(std::move(path));
  return paths;
}

}  // namespace

std::vector<std::string> PathsOf(const Event& event) {
  return PathsOf(KindOf(event), event);
}

Subject SubjectOf(const Event& event) {
  Subject subject;
  subject.kind = KindOf(event);
  subject.reading = ReadDescription(subject.kind, event.description);
  if (!event.shown) throw Refused{"The page of this alert does not show this event. Nothing was changed."};
  // The page leaves out what stands in front of the last "\".
  if (subject.reading.path.find('\\') != std::string_view::npos)
    throw Refused{"The page of this alert shows another name for this event. Nothing was changed."};
  subject.file = FindNamedFile(PathsOf(subject.kind, event));
  return subject;
}

}  // namespace zendrix::family
