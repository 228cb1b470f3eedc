#include "core/hash_utils.h"

#include "core/run_time_error.h"
#include "core/text_rules.h"

namespace zendrix::core {
namespace {

constexpr char kNoteSuffix[] = ".pending";
constexpr char kNoteTag[] = "zendrix pending save 1";
// Side files and notes are a line or two; whatever else lies under their names is not read to its end.
constexpr std::size_t kSmallFile = 4096;

std::string NotePath(const std::string& path) {
  return path + kNoteSuffix;
}

// The beginning of a plain file; nothing when there is none or it cannot be read.
std::optional<std::string> ReadHead(platform::Files& files, const std::string& path) {
  if (!files.Exists(path)) return std::nullopt;  // also keeps away from pipes, which would block
  auto stream = files.Open(path);
  if (!stream) return std::nullopt;
  std::string head(kSmallFile, '\0');
  std::size_t size = 0;
  while (size < head.size()) {
    const auto got = stream.value()->Read(head.data() + size, head.size() - size);
    if (!got) return std::nullopt;
    if (got.value() == 0) break;
    size += got.value();
  }
  head.resize(size);
  return head;
}

// Side files come with LF as well as CR LF.
std::string FirstLine(const std::string& text) {
  std::string line = text.substr(0, text.find('\n'));
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return line;
}

// A note: tag, hash of the contents being saved, hash of those two lines.
std::string NoteText(platform::FamilyLibraries& family, const std::string& hash) {
  const std::string body = std::string(kNoteTag) + "\r\n" + hash + "\r\n";
  return body + family.HashBytes(body) + "\r\n";
}

// The hash that a note promises; nothing when it isn't whole.
std::optional<std::string> HashOfNote(platform::FamilyLibraries& family, const std::string& note) {
  const auto lines = Split(note, "\r\n");
  if (lines.size() < 2) return std::nullopt;
  std::string hash(lines[1]);
  if (NoteText(family, hash) != note) return std::nullopt;
  return hash;
}

}  // namespace

std::string SideFilePath(const std::string& path) {
  const std::size_t name = path.rfind('/') + 1;  // npos + 1 is the beginning
  const std::size_t dot = path.rfind('.');
  const std::string extension = dot == std::string::npos || dot < name ? "." : path.substr(dot);
  return Replace(path, extension, ".kvh");
}

std::optional<std::string> HashUtils::ReadVerified(const std::string& path) {
  FinishInterruptedSave(path);
  if (!files_.Exists(path)) return std::nullopt;
  auto bytes = files_.ReadAll(path);
  if (!bytes || family_.HashBytes(bytes.value()) != ReadStoredHash(SideFilePath(path))) return std::nullopt;
  return std::move(bytes.value());
}

std::string HashUtils::ComputeFileHash(const std::string& path) {
  const auto bytes = files_.ReadAll(path);
  // The library leaves its buffer without the closing NUL when it gets no file, and cutting there is the
  // error.
  if (!bytes) Raise(kInvalidProcedureCall);
  return family_.HashBytes(bytes.value());
}

std::string HashUtils::ReadStoredHash(const std::string& side_path) {
  return FirstLine(ReadHead(files_, side_path).value_or(""));
}

void HashUtils::StoreFileHash(const std::string& path) {
  if (!files_.Exists(path)) return;
  if (const auto bytes = files_.ReadAll(path)) StoreHashOf(path, bytes.value());
}

void HashUtils::StoreHashOf(const std::string& path, std::string_view bytes) {
  const std::string side_path = SideFilePath(path);
  // A path without any dot is its own side file: hashing it into itself would only destroy it.
  if (side_path == path) return;
  const std::string hash = family_.HashBytes(bytes);
  if (ReadStoredHash(side_path) != hash) WriteHashFile(side_path, hash);
}

void HashUtils::WriteHashFile(const std::string& side_path, std::string_view text) {
  (void)files_.WriteAll(side_path, std::string(text) + "\r\n").ok();
}

void HashUtils::SaveWithHash(const std::string& path, std::string_view bytes) {
  const std::string side_path = SideFilePath(path);
  if (side_path == path) Raise(kInvalidProcedureCall);
  // The note of an earlier save must have done its work before this save's takes its place.
  ValueOrRaise(Settle(path));
  std::optional<std::string> old_bytes;
  if (auto old = files_.ReadAll(path)) {
    old_bytes = std::move(old.value());
  } else if (old.error().kind != platform::ErrorKind::kNotFound) {
    throw FromPlatform(old.error());
  }
  const std::string hash = family_.HashBytes(bytes);
  ValueOrRaise(WriteNote(path, hash));
  if (const auto written = files_.WriteAll(path, bytes); !written) {
    FinishInterruptedSave(path);
    throw FromPlatform(written.error());
  }
  if (const auto written = files_.WriteAll(side_path, hash + "\r\n"); !written) {
    // Back to the old file. Should that fail as well, the note stays and the next verification completes the
    // new pair.
    const auto restored = old_bytes ? files_.WriteAll(path, *old_bytes) : files_.Remove(path);
    if (restored) (void)files_.Remove(NotePath(path)).ok();
    throw FromPlatform(written.error());
  }
  (void)files_.Remove(NotePath(path)).ok();
}

platform::Status HashUtils::WriteNote(const std::string& path, const std::string& hash) {
  const std::string note_path = NotePath(path);
  auto written = files_.WriteAll(note_path, NoteText(family_, hash));
  if (written || written.error().kind != platform::ErrorKind::kNotRegular) return written;
  // Somebody put a link there; nothing of ours is lost with it.
  (void)files_.Remove(note_path).ok();
  return files_.WriteAll(note_path, NoteText(family_, hash));
}

void HashUtils::FinishInterruptedSave(const std::string& path) {
  (void)Settle(path).ok();  // what cannot be settled now is tried again at the next verification
}

platform::Status HashUtils::Settle(const std::string& path) {
  const std::string note_path = NotePath(path);
  const auto note = ReadHead(files_, note_path);
  if (!note) return platform::Done{};
  if (const auto hash = HashOfNote(family_, *note)) {
    const auto bytes = files_.ReadAll(path);
    if (!bytes && bytes.error().kind != platform::ErrorKind::kNotFound) return bytes.error();
    // The note is obeyed only while the file holds the very bytes that were being saved. Any other contents
    // are the old ones, whose side file still fits, or younger than the note, which then has nothing to say
    // about them.
    const std::string side_path = SideFilePath(path);
    if (bytes && family_.HashBytes(bytes.value()) == *hash && ReadStoredHash(side_path) != *hash) {
      if (auto written = files_.WriteAll(side_path, *hash + "\r\n"); !written) return written;
    }
  }
  // A settled note that stays does no harm: it says only what is true of the pair.
  (void)files_.Remove(note_path).ok();
  return platform::Done{};
}

}  // namespace zendrix::core
