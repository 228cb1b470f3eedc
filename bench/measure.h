// Runs one operation in a process of its own and measures it there, so that what one repetition leaves behind
// (memory above all) is not counted with the next.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace zendrix::bench {

struct Measured {
  double cpu_s = 0;  // processor time of the operation alone
  double wall_s = 0;
  std::int64_t rss_growth = 0;  // by how many bytes the peak of resident memory rose over the state before it
  std::uint64_t rows = 0;       // what the operation says it worked on
};

// What is measured, after everything that must stand ready: `prepare` is called first, `act` is measured and
// gives the number of rows.
struct Operation {
  std::function<void()> prepare;
  std::function<std::uint64_t()> act;
  int times = 1;  // how often `act` does the thing: times are divided by this
};

// Raises std::runtime_error when a repetition fails.
std::vector<Measured> Measure(const std::function<Operation()>& make, int repeat);

}  // namespace zendrix::bench
