// Hash side files lie beside the files they guard and can be written by anybody who can write there. An input
// is the guarded file and, each behind a byte 1F, its side file, the note of an interrupted save and a file
// name.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "core/hash_utils.h"
#include "platform/memory/memory_platform.h"

using namespace zendrix;

namespace {

void Require(bool holds) {
  if (!holds) std::abort();
}

std::string TakeField(std::string_view& input) {
  const auto end = input.find('\x1F');
  const std::string field(input.substr(0, end));
  input = end == std::string_view::npos ? std::string_view() : input.substr(end + 1);
  return field;
}

// A verified file is one whose side file names its hash, whatever else lies about; its bytes are the file's.
void CheckVerification(core::HashUtils& hashes, platform::Files& files, const std::string& path) {
  const auto verified = hashes.ReadVerified(path);
  Require(verified.has_value() ==
          (hashes.ComputeFileHash(path) == hashes.ReadStoredHash(core::SideFilePath(path))));
  Require(hashes.ReadVerified(path) == verified);
  const auto bytes = files.ReadAll(path);
  Require(bytes.ok() && (!verified || *verified == bytes.value()));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string bytes = TakeField(input);
  const std::string side = TakeField(input);
  const std::string note = TakeField(input);
  const std::string name = TakeField(input);

  platform::MemoryPlatform platform;
  platform::Files& files = platform.files;
  core::HashUtils hashes(files, platform.family);
  const std::string path = "/program/zendrix.ini";
  Require(files.WriteAll(path, bytes).ok());
  Require(files.WriteAll(core::SideFilePath(path), side).ok());
  Require(files.WriteAll(path + ".pending", note).ok());

  CheckVerification(hashes, files, path);
  Require(files.ReadAll(path).value() == bytes);
  hashes.StoreFileHash(path);
  Require(hashes.ReadVerified(path) == bytes);
  hashes.SaveWithHash(path, side);
  Require(hashes.VerifyFileHash(path));
  Require(files.ReadAll(path).value() == side);
  (void)core::SideFilePath(name);
  return 0;
}
