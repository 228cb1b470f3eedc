// Sums of bytes and files: SHA-256, by which this project knows contents, and MD5, by which dpkg does (it
// tells a changed file from an unchanged one, and is no defence against one made to collide). Lower-case
// hexadecimal digits.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "agent/host/host_view.h"

struct evp_md_ctx_st;

namespace zendrix::agent {

enum class SumKind { kSha256, kMd5 };

class Sum {
 public:
  explicit Sum(SumKind kind);
  void Add(std::string_view bytes);
  // Called once, at the end. Empty where the computer's rules forbid this kind of sum.
  std::string Digits();

 private:
  struct Free {
    void operator()(evp_md_ctx_st* context) const;
  };
  std::unique_ptr<evp_md_ctx_st, Free> context_;
  bool works_ = false;
};

std::string Sha256Of(std::string_view bytes);

// The first 64 bits of the SHA-256.
std::uint64_t ShortSumOf(std::string_view bytes);

struct FileSums {
  std::string sha256;
  std::string md5;  // empty unless it was asked for
};
// No value when the file cannot be read to its end or is larger than `limit`. The MD5 takes twice as long as
// the SHA-256 where the processor helps with that.
std::optional<FileSums> SumsOfFile(HostView& host, const std::string& path, std::size_t limit, bool with_md5);

}  // namespace zendrix::agent
