#include "family/korvessa_crypto_services.h"

#include <fcntl.h>
#include <openssl/evp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <memory>

namespace zendrix::family {
namespace {

constexpr std::size_t kDigestBytes = 32;
constexpr std::int32_t kTextSize = 2 * kDigestBytes + 1;

struct ContextDeleter {
  void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

class Sha256 {
 public:
  Sha256() : context_(EVP_MD_CTX_new()) {
    good_ = context_ && EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) == 1;
  }

  void Update(const void* bytes, std::size_t length) {
    good_ = good_ && EVP_DigestUpdate(context_.get(), bytes, length) == 1;
  }

  // Writes the digits and a NUL, or nothing at all.
  void Finish(char* text) {
    std::array<unsigned char, EVP_MAX_MD_SIZE> digest{};
    unsigned int length = 0;
    good_ =
        good_ && EVP_DigestFinal_ex(context_.get(), digest.data(), &length) == 1 && length == kDigestBytes;
    if (!good_) return;
    constexpr char kDigits[] = "0123456789abcdef";
    for (std::size_t i = 0; i < kDigestBytes; ++i) {
      text[2 * i] = kDigits[digest[i] >> 4];
      text[2 * i + 1] = kDigits[digest[i] & 15];
    }
    text[2 * kDigestBytes] = '\0';
  }

 private:
  std::unique_ptr<EVP_MD_CTX, ContextDeleter> context_;
  bool good_ = false;
};

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  ~Descriptor() {
    if (fd_ >= 0) close(fd_);
  }
  int get() const { return fd_; }

 private:
  int fd_;
};

}  // namespace

void HashFile(const char* path, char* buffer, std::int32_t size) {
  if (!path || !buffer || size < kTextSize) return;
  // Non-blocking, so that a pipe under the file's name cannot hold the caller up.
  const Descriptor file(open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY));
  struct stat status {};
  if (file.get() < 0 || fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode)) return;
  Sha256 hash;
  std::array<char, 65536> block;
  for (;;) {
    const ssize_t got = read(file.get(), block.data(), block.size());
    if (got < 0 && errno == EINTR) continue;
    if (got < 0) return;
    if (got == 0) break;
    hash.Update(block.data(), static_cast<std::size_t>(got));
  }
  hash.Finish(buffer);
}

void HashBytes(const void* bytes, std::uint64_t length, char* buffer, std::int32_t size) {
  if (!buffer || size < kTextSize) return;
  Sha256 hash;
  hash.Update(bytes, static_cast<std::size_t>(length));
  hash.Finish(buffer);
}

}  // namespace zendrix::family
