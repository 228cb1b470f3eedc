// zendrix-bench-generate KIND SIZE_OR_LINES SEED OUT: a monitoring file for benchmarks. KIND is home,
// alerts or admin; a size is a number with k or M behind it (thousands or millions of bytes), a number alone
// counts lines.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "generate.h"

int main(int argc, char** argv) {
  using zendrix::bench::Kind;
  const std::string_view kind_name = argc == 5 ? argv[1] : "";
  if (kind_name != "home" && kind_name != "alerts" && kind_name != "admin") {
    std::fputs("usage: zendrix-bench-generate home|alerts|admin SIZE[k|M]|LINES SEED OUT\n", stderr);
    return 2;
  }
  const Kind kind = kind_name == "home" ? Kind::kHome : kind_name == "alerts" ? Kind::kAlerts : Kind::kAdmin;
  char* unit = nullptr;
  const unsigned long long amount = std::strtoull(argv[2], &unit, 10);
  const unsigned long long seed = std::strtoull(argv[3], nullptr, 10);
  const std::string_view unit_name = unit;
  std::string text;
  if (unit_name.empty()) {
    text = zendrix::bench::GenerateLines(kind, amount, seed);
  } else if (unit_name == "k" || unit_name == "M") {
    text = zendrix::bench::GenerateBytes(kind, amount * (unit_name == "k" ? 1000 : 1'000'000), seed);
  } else {
    std::fprintf(stderr, "not a size: %s\n", argv[2]);
    return 2;
  }
  std::FILE* const out = std::fopen(argv[4], "wb");
  if (out == nullptr) {
    std::perror(argv[4]);
    return 1;
  }
  const bool written = std::fwrite(text.data(), 1, text.size(), out) == text.size();
  if (std::fclose(out) != 0 || !written) {
    std::perror(argv[4]);
    return 1;
  }
  return 0;
}
