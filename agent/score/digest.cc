#include "agent/score/digest.h"

#include <openssl/evp.h>

#include <array>

namespace zendrix::agent {
namespace {

// Found once: looking a rule up by its kind costs more than the sum of a short text.
const EVP_MD* RuleOf(SumKind kind) {
  static const EVP_MD* const kSha256 = EVP_MD_fetch(nullptr, "SHA256", nullptr);
  static const EVP_MD* const kMd5 = EVP_MD_fetch(nullptr, "MD5", nullptr);
  return kind == SumKind::kSha256 ? kSha256 : kMd5;
}

}  // namespace

void Sum::Free::operator()(evp_md_ctx_st* context) const {
  EVP_MD_CTX_free(context);
}

Sum::Sum(SumKind kind) : context_(EVP_MD_CTX_new()) {
  const EVP_MD* const rule = RuleOf(kind);
  works_ = context_ && rule != nullptr && EVP_DigestInit_ex(context_.get(), rule, nullptr) == 1;
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

// Every event asks for several of them, so the room for the work is made once.
std::uint64_t ShortSumOf(std::string_view bytes) {
  struct Free {
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
  };
  static thread_local const std::unique_ptr<EVP_MD_CTX, Free> kContext(EVP_MD_CTX_new());
  const EVP_MD* const rule = RuleOf(SumKind::kSha256);
  std::array<unsigned char, EVP_MAX_MD_SIZE> sum = {};
  if (!kContext || rule == nullptr || EVP_DigestInit_ex(kContext.get(), rule, nullptr) != 1 ||
      EVP_DigestUpdate(kContext.get(), bytes.data(), bytes.size()) != 1 ||
      EVP_DigestFinal_ex(kContext.get(), sum.data(), nullptr) != 1) {
    return 0;
  }
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < sizeof number; ++i) number = number << 8U | sum[i];
  return number;
}

std::optional<FileSums> SumsOfFile(HostView& host, const std::string& path, std::size_t limit,
                                   bool with_md5) {
  Sum sha256(SumKind::kSha256);
  std::optional<Sum> md5;
  if (with_md5) md5.emplace(SumKind::kMd5);
  const bool whole = host.ReadPieces(path, limit, [&](std::string_view piece) {
    sha256.Add(piece);
    if (md5) md5->Add(piece);
  });
  if (!whole) return {};
  return FileSums{sha256.Digits(), md5 ? md5->Digits() : std::string()};
}

}  // namespace zendrix::agent
