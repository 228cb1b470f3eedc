#include "agent/score/digest.h"

#include <openssl/evp.h>

#include <array>
#include <charconv>

namespace zendrix::agent {

void Sum::Free::operator()(evp_md_ctx_st* context) const {
  EVP_MD_CTX_free(context);
}

Sum::Sum(SumKind kind) : context_(EVP_MD_CTX_new()) {
  const EVP_MD* const rule = kind == SumKind::kSha256 ? EVP_sha256() : EVP_md5();
  works_ = context_ && EVP_DigestInit_ex(context_.get(), rule, nullptr) == 1;
}

void Sum::Add(std::string_view bytes) {
  works_ = works_ && EVP_DigestUpdate(context_.get(), bytes.data(), bytes.size()) == 1;
}

std::string Sum::Digits() {
  std::array<unsigned char, EVP_MAX_MD_SIZE> sum = {};
  unsigned int length = 0;
  if (!works_ || EVP_DigestFinal_ex(context_.get(), sum.data(), &length) != 1) return "";
  std::string digits;
  for (unsigned int i = 0; i < length; ++i) {
    digits += "0123456789abcdef"[sum[i] >> 4U];
    digits += "0123456789abcdef"[sum[i] & 15U];
  }
  return digits;
}

std::string Sha256Of(std::string_view bytes) {
  Sum sum(SumKind::kSha256);
  sum.Add(bytes);
  return sum.Digits();
}

std::uint64_t ShortSumOf(std::string_view bytes) {
  const std::string digits = Sha256Of(bytes).substr(0, 16);
  std::uint64_t number = 0;
  std::from_chars(digits.data(), digits.data() + digits.size(), number, 16);
  return number;
}

std::optional<FileSums> SumsOfFile(HostView& host, const std::string& path, std::size_t limit) {
  Sum sha256(SumKind::kSha256);
  Sum md5(SumKind::kMd5);
  const bool whole = host.ReadPieces(path, limit, [&](std::string_view piece) {
    sha256.Add(piece);
    md5.Add(piece);
  });
  if (!whole) return {};
  return FileSums{sha256.Digits(), md5.Digits()};
}

}  // namespace zendrix::agent
