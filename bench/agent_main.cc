// zendrix-bench-agent: what the Agent's source in the kernel sees of a load, and what it costs the load.
//
//   zendrix-bench-agent starts PROGRAM COUNT RATE        starts the program so often, at most RATE times a
//   second zendrix-bench-agent connections COUNT RATE           connections within a network namespace of its
//   own zendrix-bench-agent cost PROGRAM COUNT RUNS          time of a start with the source and without, in
//   turns zendrix-bench-agent load PROGRAM STARTS CONNECTIONS SECONDS   both at these rates, for somebody
//   else to watch
//
// Prints one JSON line. The source is drained every 50 ms, as the Agent does it.
#include <arpa/inet.h>
#include <sys/mman.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <filesystem>
#include <functional>
#include <iostream>
#include <map>
#include <thread>

#include "agent/host/text.h"
#include "agent/sources/bpf_source.h"
#include "support/kernel_load.h"

namespace {

using namespace zendrix::agent;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kTurn(50);
constexpr std::uint16_t kPort = 7777;

double SecondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

// Of this thread.
double ProcessorSeconds() {
  timespec used = {};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &used);
  return static_cast<double>(used.tv_sec) + static_cast<double>(used.tv_nsec) / 1e9;
}

// Numbers that a child process leaves for its parent.
class Shared {
 public:
  explicit Shared(std::size_t count)
      : numbers_(static_cast<double*>(mmap(nullptr, (count + 1) * sizeof(double), PROT_READ | PROT_WRITE,
                                           MAP_SHARED | MAP_ANONYMOUS, -1, 0))) {}
  double& operator[](std::size_t at) { return numbers_[at]; }

 private:
  double* numbers_;
};

// Does `work` `count` times, at most `rate` times a second; the seconds that it took.
double AtRate(int count, double rate, const std::function<void(int)>& work) {
  const auto start = Clock::now();
  for (int i = 0; i < count; ++i) {
    work(i);
    const double ahead = (i + 1) / rate - SecondsSince(start);
    if (ahead > 0.001) std::this_thread::sleep_for(std::chrono::duration<double>(ahead));
  }
  return SecondsSince(start);
}

int StartOnce(const std::string& program) {
  const pid_t pid = zendrix::test::Spawn(program);
  waitpid(pid, nullptr, 0);
  return pid;
}

pid_t InChild(const std::function<void()>& work) {
  const pid_t child = fork();
  if (child == 0) {
    work();
    _exit(0);
  }
  return child;
}

struct Seen {
  std::map<std::string, int> came;
  std::uint64_t lost = 0;
  double processor = 0;  // seconds that the drains took
};

// Drains the source until the child has ended.
Seen Watch(Source& source, pid_t child) {
  Seen seen;
  std::vector<Observation> part;
  const auto drain = [&] {
    part.clear();
    const double before = ProcessorSeconds();
    source.Drain(part);
    seen.processor += ProcessorSeconds() - before;
    for (const Observation& observation : part) {
      if (observation.kind == Observation::Kind::kCame) ++seen.came[observation.item.description];
      seen.lost += observation.lost;
    }
  };
  while (waitpid(child, nullptr, WNOHANG) == 0) {
    drain();
    std::this_thread::sleep_for(kTurn);
  }
  drain();
  return seen;
}

void Print(int count, int right, const Seen& seen, double seconds) {
  std::cout << "{\"events\": " << count << ", \"right\": " << right << ", \"lost\": " << seen.lost
            << ", \"per_second\": " << std::lround(count / seconds)
            << ", \"processor_us_each\": " << seen.processor / count * 1e6 << "}\n";
}

int Starts(Source& source, const std::string& program, int count, double rate) {
  Shared pids(static_cast<std::size_t>(count) + 1);
  const pid_t child = InChild([&] {
    pids[static_cast<std::size_t>(count)] =
        AtRate(count, rate, [&](int i) { pids[static_cast<std::size_t>(i)] = StartOnce(program); });
  });
  const Seen seen = Watch(source, child);
  std::map<std::string, int> expected;
  for (int i = 0; i < count; ++i) {
    ++expected[CleanName(program) + ":" + std::to_string(std::lround(pids[static_cast<std::size_t>(i)]))];
  }
  int right = 0;
  for (const auto& [description, times] : expected) {
    const auto found = seen.came.find(description);
    if (found != seen.came.end()) right += std::min(times, found->second);
  }
  Print(count, right, seen, pids[static_cast<std::size_t>(count)]);
  return 0;
}

int Connections(Source& source, const std::string& own, int count, double rate) {
  Shared seconds(1);
  const pid_t child = InChild([&] {
    if (!zendrix::test::EnterOwnNetwork()) return;
    const int listening = zendrix::test::ListenOn(kPort);
    seconds[0] = AtRate(count, rate, [&](int i) {
      zendrix::test::ConnectOnce(listening, zendrix::test::MeasuredAddress(i + 1, kPort));
    });
  });
  const Seen seen = Watch(source, child);
  if (seconds[0] == 0) {
    std::cerr << "zendrix-bench-agent: no network namespace may be made here\n";
    return 1;
  }
  int right = 0;
  for (int i = 1; i <= count; ++i) {
    char text[INET_ADDRSTRLEN] = {};
    const sockaddr_in address = zendrix::test::MeasuredAddress(i, kPort);
    inet_ntop(AF_INET, &address.sin_addr, text, sizeof text);
    right += static_cast<int>(seen.came.count(text + (":" + std::to_string(kPort) + ":" + own)));
  }
  Print(count, right, seen, seconds[0]);
  return 0;
}

// What nine in ten of them exceed: on a busy machine the others were held up.
double LowestTenth(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return values[values.size() / 10];
}

// Microseconds of a start: the best of the runs, since what else the machine does only ever adds.
int Cost(HostView& host, const std::string& program, int count, int runs) {
  double best_without = 0;
  double best_with = 0;
  Shared lowest(1);
  const auto measure = [&](Source* source) {
    const pid_t child = InChild([&] {
      std::vector<double> each;
      for (int i = 0; i < count; ++i) {
        const auto start = Clock::now();
        StartOnce(program);
        each.push_back(SecondsSince(start) * 1e6);
      }
      lowest[0] = LowestTenth(std::move(each));
    });
    if (source) {
      Watch(*source, child);
    } else {
      waitpid(child, nullptr, 0);
    }
    return lowest[0];
  };
  const auto keep = [](double& best, double value) { best = best == 0 ? value : std::min(best, value); };
  for (int run = 0; run < runs; ++run) {
    keep(best_without, measure(nullptr));
    const auto source = MakeBpfSource(host, static_cast<std::uint64_t>(getpid()));
    std::vector<Observation> there;
    source->Drain(there);
    keep(best_with, measure(source.get()));
  }
  std::cout << "{\"us_without\": " << best_without << ", \"us_with\": " << best_with
            << ", \"us_more\": " << best_with - best_without << "}\n";
  return 0;
}

int Load(const std::string& program, double starts, double connections, double seconds) {
  const pid_t child = InChild([&] {
    if (!zendrix::test::EnterOwnNetwork()) return;
    const int listening = zendrix::test::ListenOn(kPort);
    AtRate(static_cast<int>(connections * seconds), connections, [&](int i) {
      zendrix::test::ConnectOnce(listening, zendrix::test::MeasuredAddress(i % 100'000 + 1, kPort));
    });
  });
  const double took = AtRate(static_cast<int>(starts * seconds), starts, [&](int) { StartOnce(program); });
  waitpid(child, nullptr, 0);
  std::cout << "{\"starts_per_second\": " << std::lround(starts * seconds / took) << "}\n";
  return 0;
}

int Run(const std::vector<std::string>& words) {
  const auto host = MakeLinuxHostView();
  const std::string task = words.empty() ? "" : words[0];
  if (task == "cost" && words.size() == 4)
    return Cost(*host, std::filesystem::canonical(words[1]).string(), std::stoi(words[2]),
                std::stoi(words[3]));
  if (task == "load" && words.size() == 5)
    return Load(words[1], std::stod(words[2]), std::stod(words[3]), std::stod(words[4]));
  const bool starts = task == "starts" && words.size() == 4;
  if (!starts && !(task == "connections" && words.size() == 3)) {
    std::cerr << "zendrix-bench-agent starts PROGRAM COUNT RATE | connections COUNT RATE | cost PROGRAM "
                 "COUNT RUNS | "
                 "load PROGRAM STARTS CONNECTIONS SECONDS\n";
    return 2;
  }
  // The Agent leaves out itself; this program has to know itself, for the connections are its own.
  const auto source = MakeBpfSource(*host, 0);
  if (source->level().level == Level::kNone) {
    std::cerr << "zendrix-bench-agent: " << source->level().reason << "\n";
    return 1;
  }
  std::vector<Observation> there;
  source->Drain(there);
  if (starts)
    return Starts(*source, std::filesystem::canonical(words[1]).string(), std::stoi(words[2]),
                  std::stod(words[3]));
  const std::string own = CleanName(host->ReadLink("/proc/self/exe").value_or(""));
  return Connections(*source, own, std::stoi(words[1]), std::stod(words[2]));
}

}  // namespace

int main(int argc, char** argv) {
  try {
    return Run(std::vector<std::string>(argv + (argc > 0), argv + argc));
  } catch (const std::exception& error) {
    std::cerr << "zendrix-bench-agent: " << error.what() << "\n";
    return 2;
  }
}
