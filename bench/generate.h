// Monitoring files as a real host makes them, for benchmarks and long tests: the same paths, ports and users
// again and again, stamps that rise by seconds, descriptions of several parts, and now and then an alert with
// the events it speaks of. The same seed gives the same bytes.
#pragma once

#include <cstdint>
#include <string>

namespace zendrix::bench {

enum class Kind {
  kHome,    // full lines: stamp|original|change|description|reaction|code|0
  kAlerts,  // the same on a host with much to report: an alert every twenty lines
  kAdmin,   // five comma-separated fields: seconds,host,monitor,change code,description
};

class Generator {
 public:
  Generator(Kind kind, std::uint64_t seed) : kind_(kind), state_(seed * 2 + 1) {}

  // Adds what happens next: one line, or an alert with its companions.
  void Append(std::string& text);
  // Lines written so far.
  std::uint64_t lines() const { return lines_; }

 private:
  struct Event {
    std::string monitor;
    std::string description;
    std::string original;
    std::string change;
    std::string reaction;
    std::string code;
  };

  std::uint64_t Random(std::uint64_t below);
  // Small numbers far more often than large ones, as with everything that people and programs come back to.
  std::uint64_t Skewed(std::uint64_t below);
  std::string Process();
  std::string Connection();
  Event Next();
  void AppendAlert(std::string& text);
  void Line(std::string& text, const Event& event);

  Kind kind_;
  std::uint64_t state_;
  std::int64_t seconds_ = 1'700'000'000;
  std::uint64_t lines_ = 0;
  Event recent_[4];
};

// Whole lines until the text has at least so many bytes, or so many lines.
std::string GenerateBytes(Kind kind, std::uint64_t bytes, std::uint64_t seed);
std::string GenerateLines(Kind kind, std::uint64_t lines, std::uint64_t seed);

}  // namespace zendrix::bench
