#include "family/intermediate/sha256.h"

#include <openssl/evp.h>

#include <array>
#include <new>

#include "family/intermediate/hex.h"

namespace zendrix::family {

void Sha256::Free::operator()(evp_md_ctx_st* context) const {
  EVP_MD_CTX_free(context);
}

// Nothing in here fails but for want of memory.
Sha256::Sha256() : context_(EVP_MD_CTX_new()) {
  if (!context_ || EVP_DigestInit_ex(context_.get(), EVP_sha256(), nullptr) != 1) throw std::bad_alloc();
}

void Sha256::Add(const char* bytes, std::size_t size) {
  if (EVP_DigestUpdate(context_.get(), bytes, size) != 1) throw std::bad_alloc();
}

std::string Sha256::Digits() {
  std::array<unsigned char, EVP_MAX_MD_SIZE> digest = {};
  unsigned int length = 0;
  if (EVP_DigestFinal_ex(context_.get(), digest.data(), &length) != 1) throw std::bad_alloc();
  return Hex(digest.data(), length);
}

std::string Sha256Of(std::string_view bytes) {
  Sha256 hash;
  hash.Add(bytes.data(), bytes.size());
  return hash.Digits();
}

}  // namespace zendrix::family
