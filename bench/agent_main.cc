// zendrix-bench-agent: what the Agent's sources see of a load, and what it costs the load. SOURCE is bpf,
// connector, or none for somebody else to watch.
//
//   zendrix-bench-agent starts SOURCE PROGRAM COUNT RATE   starts the program so often, at most RATE a second
//   zendrix-bench-agent connections COUNT RATE             connections within a network namespace of its own
//   zendrix-bench-agent cost SOURCE PROGRAM COUNT RUNS     time of a start with the source and without
//   zendrix-bench-agent load PROGRAM STARTS CONNECTIONS SECONDS
//
// "cost" takes turns; "load" makes both at these rates, for somebody else to watch.
// Prints one JSON line. A source is drained as the Agent does it: every 50 ms, or 100 times a second when it
// says that something waits.
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
#include <memory>
#include <stdexcept>
#include <thread>

#include "agent/host/text.h"
#include "agent/sources/bpf_source.h"
#include "agent/sources/connector_source.h"
#include "support/kernel_load.h"

namespace {

using namespace zendrix::agent;
using Clock = std::chrono::steady_clock;

constexpr std::chrono::milliseconds kTurn(50);
constexpr std::chrono::milliseconds kToldTurn(10);
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
Seen Watch(Source* source, pid_t child) {
  Seen seen;
  if (source == nullptr) {
    waitpid(child, nullptr, 0);
    return seen;
  }
  std::vector<Observation> part;
  const auto drain = [&] {
    part.clear();
    const double before = ProcessorSeconds();
    source->Drain(part);
    seen.processor += ProcessorSeconds() - before;
    for (const Observation& observation : part) {
      if (observation.kind == Observation::Kind::kCame) ++seen.came[observation.item.description];
      seen.lost += observation.lost;
    }
  };
  while (waitpid(child, nullptr, WNOHANG) == 0) {
    drain();
    std::this_thread::sleep_for(source->Handle() < 0 ? kTurn : kToldTurn);
  }
  // What the source kept for its next turn.
  drain();
  drain();
  return seen;
}

void Print(int count, int right, const Seen& seen, double seconds) {
  std::cout << "{\"events\": " << count << ", \"right\": " << right << ", \"lost\": " << seen.lost
            << ", \"per_second\": " << std::lround(count / seconds)
            << ", \"processor_us_each\": " << seen.processor / count * 1e6 << "}\n";
}

// One process after the other starts some 4,000 a second; two of them keep two cores busy.
int Starts(Source* source, const std::string& program, int count, double rate) {
  Shared pids(static_cast<std::size_t>(count) + 1);
  const int half = count / 2;
  const pid_t child = InChild([&] {
    const pid_t other = InChild([&] {
      AtRate(half, rate / 2, [&](int i) { pids[static_cast<std::size_t>(i)] = StartOnce(program); });
    });
    const auto start = Clock::now();
    AtRate(count - half, rate / 2,
           [&](int i) { pids[static_cast<std::size_t>(half + i)] = StartOnce(program); });
    waitpid(other, nullptr, 0);
    pids[static_cast<std::size_t>(count)] = SecondsSince(start);
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
  const Seen seen = Watch(&source, child);
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
int Cost(const std::function<std::unique_ptr<Source>()>& make, const std::string& program, int count,
         int runs) {
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
    Watch(source, child);
    return lowest[0];
  };
  const auto keep = [](double& best, double value) { best = best == 0 ? value : std::min(best, value); };
  for (int run = 0; run < runs; ++run) {
    keep(best_without, measure(nullptr));
    const auto source = make();
    if (!source) continue;
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

// Null for "none", and with a word on the reason where the kernel refuses.
std::unique_ptr<Source> MakeSource(const std::string& name, HostView& host, std::uint64_t own_pid) {
  std::unique_ptr<Source> source;
  if (name == "bpf") source = MakeBpfSource(host, own_pid);
  if (name == "connector") source = MakeConnectorSource(host, own_pid);
  if (source && source->level().level == Level::kNone) throw std::runtime_error(source->level().reason);
  return source;
}

int Run(const std::vector<std::string>& words) {
  const auto host = MakeLinuxHostView();
  const std::string task = words.empty() ? "" : words[0];
  // The Agent leaves out itself; this program has to know itself where the connections are its own.
  if (task == "cost" && words.size() == 5) {
    const auto make = [&] { return MakeSource(words[1], *host, static_cast<std::uint64_t>(getpid())); };
    return Cost(make, std::filesystem::canonical(words[2]).string(), std::stoi(words[3]),
                std::stoi(words[4]));
  }
  if (task == "load" && words.size() == 5)
    return Load(words[1], std::stod(words[2]), std::stod(words[3]), std::stod(words[4]));
  const bool starts = task == "starts" && words.size() == 5;
  if (!starts && !(task == "connections" && words.size() == 3)) {
    std::cerr
        << "zendrix-bench-agent starts SOURCE PROGRAM COUNT RATE | connections COUNT RATE | cost SOURCE "
           "PROGRAM COUNT RUNS | load PROGRAM STARTS CONNECTIONS SECONDS\n";
    return 2;
  }
  const auto source = MakeSource(starts ? words[1] : "bpf", *host, 0);
  std::vector<Observation> there;
  if (source) source->Drain(there);
  if (starts)
    return Starts(source.get(), std::filesystem::canonical(words[2]).string(), std::stoi(words[3]),
                  std::stod(words[4]));
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
