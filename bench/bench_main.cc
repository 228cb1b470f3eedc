// zendrix-bench OPERATION FILE [ARGS] [--repeat N]: measures one operation of the product's own libraries on
// a file and prints one JSON line. CPU and wall time in seconds, one value per repetition; rss_growth is the
// largest of them.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <string>
#include <vector>

#include "operations.h"

namespace {

using zendrix::bench::Measured;

int Usage() {
  std::fputs("usage: zendrix-bench OPERATION FILE [ARGS] [--repeat N]\n", stderr);
  for (const auto& operation : zendrix::bench::Operations()) {
    std::fprintf(stderr, "  %-12s %s\n", std::string(operation.name).c_str(),
                 std::string(operation.about).c_str());
  }
  return 2;
}

void PrintList(const char* name, const std::vector<Measured>& all, double Measured::*value) {
  std::printf(",\"%s\":[", name);
  for (std::size_t i = 0; i < all.size(); ++i) std::printf("%s%.9f", i == 0 ? "" : ",", all[i].*value);
  std::printf("]");
}

int Run(const std::vector<std::string>& words, int repeat) {
  const auto& operations = zendrix::bench::Operations();
  const auto operation = std::ranges::find(operations, words[0], &zendrix::bench::NamedOperation::name);
  if (operation == operations.end()) return Usage();
  const std::vector<std::string> arguments(words.begin() + 2, words.end());
  const auto all = zendrix::bench::Measure([&] { return operation->make(words[1], arguments); }, repeat);
  std::printf("{\"operation\":\"%s\",\"rows\":%llu", words[0].c_str(),
              static_cast<unsigned long long>(all.back().rows));
  PrintList("cpu_s", all, &Measured::cpu_s);
  PrintList("wall_s", all, &Measured::wall_s);
  const auto largest = std::ranges::max_element(all, {}, &Measured::rss_growth);
  std::printf(",\"rss_growth\":%lld}\n", static_cast<long long>(largest->rss_growth));
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  std::vector<std::string> words;
  int repeat = 5;
  for (int i = 1; i < argc; ++i) {
    if (std::string(argv[i]) == "--repeat" && i + 1 < argc) {
      repeat = std::atoi(argv[++i]);
    } else {
      words.emplace_back(argv[i]);
    }
  }
  if (words.size() < 2 || repeat < 1) return Usage();
  try {
    return Run(words, repeat);
  } catch (const std::exception& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
  }
}
