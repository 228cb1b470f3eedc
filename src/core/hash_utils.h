// Data-file hashes. Each guarded file has a side file with the extension ".kvh" whose first line is its hash;
// a file whose hash does not match is not used.
//
// Files that the console itself writes change together with their side file: SaveWithHash leaves, when the
// process is killed at any instant, a state that FinishInterruptedSave turns into the old pair or the new
// one. It is called before every verification, so a verified pair is always one of the two. A verification
// hands back the bytes that it verified: whoever read the file once more could be given another one. The
// means is a note beside the file, "<path>.pending", with the hash of the contents being saved: it can
// complete the side file of exactly these contents and nothing else, so an old or a planted note changes no
// contents and brings none back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "core/app_state.h"

namespace zendrix::core {

class HashUtils {
 public:
  HashUtils(platform::Files& files, platform::FamilyLibraries& family) : files_(files), family_(family) {}

  // The file's bytes, read once, only if the file exists and their hash equals the first line of the side
  // file, exactly. Quiet.
  std::optional<std::string> ReadVerified(const std::string& path);
  // Whether there are such bytes. For those who do not use the file; everybody else takes them.
  bool VerifyFileHash(const std::string& path) { return ReadVerified(path).has_value(); }
  // 64 lower-case hexadecimal digits (SHA-256, as sha256sum prints it). Raises 5 when the file cannot be
  // read.
  std::string ComputeFileHash(const std::string& path);
  // First line of a side file; empty when it is missing or cannot be read. Quiet.
  std::string ReadStoredHash(const std::string& side_path);
  // Hashes the file into its side file; a missing file is passed over. A side file that holds this hash
  // already is not written. Quiet.
  void StoreFileHash(const std::string& path);
  // The same for a file whose bytes have just been read.
  void StoreHashOf(const std::string& path, std::string_view bytes);

  // Replaces the file and its side file as one. Raises when that fails; both are then as they were (or, when
  // not even the old contents can be put back, the next verification completes the new pair).
  void SaveWithHash(const std::string& path, std::string_view bytes);
  // Brings a save that was interrupted to its end. Quiet.
  void FinishInterruptedSave(const std::string& path);

 private:
  // Writes the side file: the text and a line end. Quiet.
  void WriteHashFile(const std::string& side_path, std::string_view text);
  // Completes or drops the note of an interrupted save; an error when it cannot be told yet what to do.
  platform::Status Settle(const std::string& path);
  platform::Status WriteNote(const std::string& path, const std::string& hash);

  platform::Files& files_;
  platform::FamilyLibraries& family_;
};

// The side file of a path: every occurrence of its extension (dot and letters) in the whole path replaced by
// ".kvh". A folder name that holds the extension is changed too; that is how the files are looked for.
// Without an extension it is every dot that is replaced; a path that has none is returned as it is, and such
// a file is never hashed into itself.
std::string SideFilePath(const std::string& path);

}  // namespace zendrix::core
