#include "measure.h"

#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <exception>
#include <stdexcept>

namespace zendrix::bench {
namespace {

double Seconds(clockid_t clock) {
  timespec now{};
  clock_gettime(clock, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// A line of /proc/self/status in bytes.
std::int64_t StatusBytes(const char* name) {
  std::FILE* const status = std::fopen("/proc/self/status", "r");
  if (status == nullptr) return 0;
  char line[256];
  long long kilobytes = 0;
  while (std::fgets(line, sizeof line, status) != nullptr) {
    if (std::strncmp(line, name, std::strlen(name)) == 0)
      std::sscanf(line + std::strlen(name), ": %lld", &kilobytes);
  }
  std::fclose(status);
  return kilobytes * 1024;
}

// Lets the peak start again at the present state, where the kernel allows it.
void ResetPeak() {
  std::FILE* const refs = std::fopen("/proc/self/clear_refs", "w");
  if (refs == nullptr) return;
  std::fputs("5", refs);
  std::fclose(refs);
}

Measured MeasureHere(const Operation& operation) {
  if (operation.prepare) operation.prepare();
  ResetPeak();
  const std::int64_t before = StatusBytes("VmRSS");
  Measured measured;
  const double wall = Seconds(CLOCK_MONOTONIC);
  const double cpu = Seconds(CLOCK_PROCESS_CPUTIME_ID);
  measured.rows = operation.act();
  measured.cpu_s = (Seconds(CLOCK_PROCESS_CPUTIME_ID) - cpu) / operation.times;
  measured.wall_s = (Seconds(CLOCK_MONOTONIC) - wall) / operation.times;
  measured.rss_growth = StatusBytes("VmHWM") - before;
  return measured;
}

Measured MeasureInChild(const std::function<Operation()>& make) {
  int ends[2];
  if (pipe(ends) != 0) throw std::runtime_error("pipe");
  const pid_t child = fork();
  if (child < 0) throw std::runtime_error("fork");
  if (child == 0) {
    close(ends[0]);
    int status = 1;
    try {
      const Measured measured = MeasureHere(make());
      if (write(ends[1], &measured, sizeof measured) == static_cast<ssize_t>(sizeof measured)) status = 0;
    } catch (const std::exception& error) {
      std::fprintf(stderr, "%s\n", error.what());
    } catch (...) {
      std::fputs("the operation ended the process\n", stderr);
    }
    _exit(status);
  }
  close(ends[1]);
  Measured measured;
  const bool whole = read(ends[0], &measured, sizeof measured) == static_cast<ssize_t>(sizeof measured);
  close(ends[0]);
  int status = 0;
  waitpid(child, &status, 0);
  if (!whole || status != 0) throw std::runtime_error("a repetition failed");
  return measured;
}

}  // namespace

std::vector<Measured> Measure(const std::function<Operation()>& make, int repeat) {
  std::vector<Measured> all;
  for (int i = 0; i < repeat; ++i) all.push_back(MeasureInChild(make));
  return all;
}

}  // namespace zendrix::bench
