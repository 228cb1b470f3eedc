// Loaded into the program in front of the C library: a disk that yields large blocks in small pieces, each a
// moment later, so that what is shown during a long read stands there long enough to be looked at.
#include <dlfcn.h>
#include <sys/types.h>
#include <unistd.h>

namespace {

constexpr size_t kLargeBlock = 64 * 1024;
constexpr useconds_t kDelayUs = 5'000;
constexpr size_t kPiece = 4 * 1024;

using Pread = ssize_t (*)(int, void*, size_t, off_t);

}  // namespace

extern "C" [[gnu::visibility("default")]] ssize_t pread64(int file, void* buffer, size_t size, off_t offset) {
  static const auto real = reinterpret_cast<Pread>(dlsym(RTLD_NEXT, "pread64"));
  if (size < kLargeBlock) return real(file, buffer, size, offset);
  usleep(kDelayUs);
  return real(file, buffer, kPiece, offset);
}

extern "C" [[gnu::visibility("default")]] ssize_t pread(int file, void* buffer, size_t size, off_t offset) {
  return pread64(file, buffer, size, offset);
}
