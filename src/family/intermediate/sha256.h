// SHA-256 as lower-case hexadecimal digits, all at once or piece by piece.
#pragma once

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

struct evp_md_ctx_st;

namespace zendrix::family {

inline constexpr std::size_t kSha256Digits = 64;

class Sha256 {
 public:
  Sha256();
  void Add(const char* bytes, std::size_t size);
  // Called once, at the end.
  std::string Digits();

 private:
  struct Free {
    void operator()(evp_md_ctx_st* context) const;
  };
  std::unique_ptr<evp_md_ctx_st, Free> context_;
};

std::string Sha256Of(std::string_view bytes);

}  // namespace zendrix::family
