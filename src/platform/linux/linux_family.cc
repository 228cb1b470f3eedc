#include "platform/linux/linux_family.h"

#include <dlfcn.h>
#include <sys/stat.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <optional>

#include "family/description_reading.h"
#include "family/intermediate/korvessa_intermediate_types.h"
#include "family/korvessa_crypto_services.h"
#include "family/korvessa_fundamental_types.h"
#include "platform/files.h"
#include "platform/windows_1252.h"

namespace zendrix::platform {
namespace {

constexpr std::int32_t kMessageSize = 256;
constexpr std::int32_t kHostIdSize = 5120;
constexpr char kNoAnswer[] =
    "No answer came in time. Whether the file was moved, the list of what is in quarantine tells.";

// Both other kinds of function take text, buffer, size of the buffer.
using TextFunction = std::int32_t (*)(const char* text, char* buffer, std::int32_t size);

using EventFunction = std::int32_t (*)(const family::QuarantineArguments* event, char* message,
                                       std::int32_t size);
using ListFunction = std::int32_t (*)(char* text, std::int32_t size);
using ConfigureFunction = void (*)(const char* program_folder, std::int32_t pretend);

Error LoaderError() {
  const char* text = dlerror();
  return {ErrorKind::kNotFound, text ? text : "KorvessaIntermediateTypes: not found"};
}

template <class Number>
bool ReadNumber(std::string_view text, Number& number, int base = 10) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number, base);
  return error == std::errc() && end == text.data() + text.size();
}

// "%0a" and the like, for a path may hold any byte.
std::string Unescaped(std::string_view text) {
  std::string bytes;
  for (; !text.empty(); text.remove_prefix(1)) {
    unsigned char byte = 0;
    const bool coded = text[0] == '%' && text.size() > 2 && ReadNumber(text.substr(1, 2), byte, 16);
    bytes += coded ? static_cast<char>(byte) : text[0];
    if (coded) text.remove_prefix(2);
  }
  return bytes;
}

// One line of the list, as QuarantineListExport tells it; a line that is none gives nothing.
std::optional<QuarantineEntry> EntryOfLine(std::string_view line) {
  std::vector<std::string_view> fields;
  for (std::size_t start = 0; start <= line.size();) {
    const std::size_t end = std::min(line.find('\t', start), line.size());
    fields.push_back(line.substr(start, end - start));
    start = end + 1;
  }
  QuarantineEntry entry;
  if (fields.size() != 7 || !ReadNumber(fields[1], entry.size) || !ReadNumber(fields[3], entry.when) ||
      !ReadNumber(fields[4], entry.owner))
    return std::nullopt;
  entry.name = fields[0];
  entry.sha256 = fields[2];
  entry.alert = Unescaped(fields[5]);
  entry.path = Unescaped(fields[6]);
  return entry;
}

std::vector<QuarantineEntry> EntriesOfText(std::string_view text) {
  std::vector<QuarantineEntry> entries;
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    if (auto entry = EntryOfLine(text.substr(start, end - start))) entries.push_back(std::move(*entry));
    start = end + 1;
  }
  return entries;
}

// As the library fills it: ended by a NUL within its size.
void FillMessage(std::string& message, std::string_view sentence) {
  constexpr std::size_t kMost = kMessageSize - 1;
  message = std::string(sentence.substr(0, kMost)) + '\0';
  message.resize(kMessageSize, ' ');
}

// The newest entry of the file that the event names, one that belongs to its alert before all others.
std::vector<QuarantineEntry>::const_iterator EntryFor(const QuarantineEvent& event,
                                                      const std::vector<QuarantineEntry>& entries) {
  const auto kind = family::KindOfMonitor(event.monitor);
  const auto named = kind ? family::ReadDescription(*kind, event.description).path : std::string_view();
  const auto is_named = [&](const QuarantineEntry& entry) {
    return !named.empty() && (entry.path == named || entry.path == Utf8FromBytes(named));
  };
  const auto of_alert = std::find_if(entries.begin(), entries.end(), [&](const QuarantineEntry& entry) {
    return is_named(entry) && entry.alert == event.alert;
  });
  return of_alert != entries.end() ? of_alert : std::find_if(entries.begin(), entries.end(), is_named);
}

}  // namespace

LinuxFamily::~LinuxFamily() {
  if (library_) dlclose(library_);
}

LocalTime LinuxFamily::FromUTC(std::int32_t seconds) {
  LocalTime local;
  family::FromUTC(seconds, &local.day, &local.month, &local.year, &local.hour, &local.minute, &local.second);
  return local;
}

std::int32_t LinuxFamily::ToUTC(const LocalTime& local) {
  std::int32_t seconds = 0;
  family::ToUTC(local.day, local.month, local.year, local.hour, local.minute, local.second, &seconds);
  return seconds;
}

std::string LinuxFamily::HashBytes(std::string_view bytes) {
  std::array<char, 65> text{};
  family::HashBytes(bytes.data(), bytes.size(), text.data(), static_cast<std::int32_t>(text.size()));
  return text.data();
}

Result<void*> LinuxFamily::Function(const char* name) {
  if (!library_) {
    library_ = dlopen(JoinPath(folder_, "libKorvessaIntermediateTypes.so").c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!library_) return LoaderError();
  }
  void* const function = dlsym(library_, name);
  if (!function) {
    const Error missing = LoaderError();
    // Not kept: a later call finds the complete library once it has been put there.
    dlclose(library_);
    library_ = nullptr;
    return missing;
  }
  return function;
}

Result<void*> LinuxFamily::QuarantineFunction(const char* name) {
  const auto found = Function(name);
  if (!found) return found;
  // A library that has no folder to be told of works without.
  if (void* const configure = dlsym(library_, "ConfigureExport"))
    reinterpret_cast<ConfigureFunction>(configure)(program_folder_.c_str(), pretend_ ? 1 : 0);
  return found;
}

Result<std::int32_t> LinuxFamily::Quarantine(const char* function, const QuarantineEvent& event,
                                             std::string& message) {
  const auto found = QuarantineFunction(function);
  if (!found) return found.error();
  family::QuarantineArguments arguments;
  arguments.monitor = event.monitor.c_str();
  arguments.description = event.description.c_str();
  arguments.event_utc = event.event_utc.c_str();
  arguments.alert = event.alert.c_str();
  arguments.shown = event.shown ? 1 : 0;
  message.resize(kMessageSize, ' ');
  return reinterpret_cast<EventFunction>(found.value())(&arguments, message.data(), kMessageSize);
}

Status LinuxFamily::QuarantineExport(const QuarantineEvent& event, std::string& message) {
  const bool asked_first = prefer_helper_ && MayAskHelper();
  if (asked_first && HelperBlocks(event, message)) return Done{};
  const auto number = Quarantine("QuarantineEventExport", event, message);
  if (!number) return number.error();
  if (number.value() == family::kForWantOfRights && MayAskHelper() && !asked_first)
    HelperBlocks(event, message);
  return Done{};
}

bool LinuxFamily::HelperBlocks(const QuarantineEvent& event, std::string& message) {
  const auto answer = helper_->Block(event);
  if (!answer && answer.error().kind == ErrorKind::kUnavailable) return false;
  FillMessage(message, answer ? answer.value().sentence : kNoAnswer);
  return true;
}

Status LinuxFamily::UnquarantineExport(const QuarantineEvent& event, std::string& message) {
  const auto number = Quarantine("UnquarantineEventExport", event, message);
  if (!number) return number.error();
  if (number.value() == 0 || !MayAskHelper()) return Done{};
  const auto entries = HelpersList();
  const auto entry = EntryFor(event, entries);
  if (entry == entries.end()) return Done{};
  const auto answer = helper_->Allow(entry->name);
  FillMessage(message, answer ? answer.value().sentence : kNoAnswer);
  return Done{};
}

std::vector<QuarantineEntry> LinuxFamily::HelpersList() {
  const auto list = helper_->List();
  return list && list.value().done ? EntriesOfText(list.value().sentence) : std::vector<QuarantineEntry>();
}

Result<std::vector<QuarantineEntry>> LinuxFamily::QuarantineList() {
  auto own = OwnList();
  // A list changes nothing, and where the helper is preferred it has what counts.
  if (!own || !(MayAskHelper() || (helper_ != nullptr && prefer_helper_))) return own;
  auto& entries = own.value();
  for (QuarantineEntry& entry : HelpersList()) entries.push_back(std::move(entry));
  std::stable_sort(
      entries.begin(), entries.end(),
      [](const QuarantineEntry& one, const QuarantineEntry& other) { return one.when > other.when; });
  return own;
}

Result<std::vector<QuarantineEntry>> LinuxFamily::OwnList() {
  // A user's own store comes into being with his first file in it; until then there is nothing to list.
  struct stat status {};
  if (prefer_helper_ && !program_folder_.empty() && stat(program_folder_.c_str(), &status) != 0 &&
      errno == ENOENT)
    return std::vector<QuarantineEntry>();
  const auto found = QuarantineFunction("QuarantineListExport");
  if (!found) return found.error();
  const auto list = reinterpret_cast<ListFunction>(found.value());
  std::string text(kMessageSize, '\0');
  // Asked again while the list grows: another process may put a file away at the same time.
  for (;;) {
    const std::int32_t needed = list(text.data(), static_cast<std::int32_t>(text.size()));
    if (needed < 0) return Error{ErrorKind::kOther, text.substr(0, text.find('\0'))};
    if (needed < static_cast<std::int32_t>(text.size())) break;
    text.assign(static_cast<std::size_t>(needed) + 1, '\0');
  }
  text.resize(std::min(text.find('\0'), text.size()));
  return EntriesOfText(text);
}

Result<std::vector<QuarantineEntry>> LinuxFamily::QuarantineListOf(const std::string& alert) {
  auto all = QuarantineList();
  if (!all) return all;
  return EntriesOf(alert, std::move(all.value()));
}

Result<bool> LinuxFamily::RestoreExport(const std::string& name, std::string& message) {
  const auto found = QuarantineFunction("RestoreExport");
  if (!found) return found.error();
  message.resize(kMessageSize, ' ');
  if (reinterpret_cast<TextFunction>(found.value())(name.c_str(), message.data(), kMessageSize) == 0)
    return true;
  const auto entries = MayAskHelper() ? HelpersList() : std::vector<QuarantineEntry>();
  if (std::none_of(entries.begin(), entries.end(), [&](const auto& entry) { return entry.name == name; }))
    return false;
  const auto answer = helper_->Allow(name);
  FillMessage(message, answer ? answer.value().sentence : kNoAnswer);
  return answer && answer.value().done;
}

Result<std::string> LinuxFamily::GetHostIDExport(const std::string& product) {
  const auto found = Function("GetHostIDExport");
  if (!found) return found.error();
  std::string buffer(kHostIdSize, ' ');
  reinterpret_cast<TextFunction>(found.value())(product.c_str(), buffer.data(), kHostIdSize);
  const std::size_t end = buffer.find('\0');
  if (end == std::string::npos) return Error{ErrorKind::kOther, "GetHostIDExport: no host identifier"};
  buffer.resize(end);
  return buffer;
}

}  // namespace zendrix::platform
