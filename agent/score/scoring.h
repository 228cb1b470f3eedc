// The arithmetic of risk, without memory. A fact is one thing that speaks for an intrusion, with a weight
// between 0 and 1: the share of the remaining doubt that it takes away. Facts compose as doubt = product of
// (1 - w) and risk = 1 - doubt, cut at 0.99.
//  - What is new weighs 0.5 x 2^(-days/3), by the days before today on which it was seen.
//  - A soft rule of rules.h weighs its full weight the first time, and halves with every three days on which
//  the
//    same thing was seen: what a host has had for weeks is no sign of an intrusion.
//  - A hard rule keeps its weight and raises an alert whatever else is known.
//  - 0.3 times the risk for an unchanged file of a package that was being installed.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "agent/score/rules.h"

namespace zendrix::agent {

// What a fact is about; facts with one topic are told in one phrase.
enum class Topic : std::uint8_t {
  kPlace,    // where the program lies, what it calls itself
  kProgram,  // that it is new, or has new contents
  kParent,   // what started it
  kPort,
  kConnection,
  kAutostart,
  kAccount,
  kLogin,
  kFile,
  kMeasure,   // memory, transmission
  kGuessing,  // of passwords
  kBlocked,   // the user blocked it before
  kCrowd,     // there were more alerts than a person can read
};

// Beside the rules, which have the numbers of rules.h. The values are stored; never reuse one.
inline constexpr int kNewProgram = 1001;
inline constexpr int kChangedProgram = 1002;
inline constexpr int kNewParent = 1003;
inline constexpr int kNewConnection = 1004;
inline constexpr int kNewPort = 1005;
inline constexpr int kNewAutostart = 1006;
inline constexpr int kNewAccount = 1007;
inline constexpr int kNewFile = 1008;
inline constexpr int kNewLogin = 1009;
inline constexpr int kPasswordGuessing = 1101;
inline constexpr int kBlockedBefore = 1102;
inline constexpr int kAlertsLeftOut = 1103;

struct Fact {
  int number = 0;  // of the rule, or one of the above
  Topic topic = Topic::kMeasure;
  double weight = 0;       // as it counts
  double full_weight = 0;  // as it would count for what was never seen
  int days = 0;            // before today on which it was seen
  int count = 1;           // how often, or how many
  bool hard = false;
  std::string text;  // cleaned
};

inline constexpr double kNoveltyWeight = 0.5;
inline constexpr double kMostRisk = 0.99;
inline constexpr double kInstallingFactor = 0.3;
// What is no alert by a hard rule may leave this much doubt at most: the console calls it suspicious from
// there.
inline constexpr double kMostDoubt = 0.09;

// 2^(-days/3)
double Fading(int days);
Topic TopicOf(Rule rule);
// Whether one such fact raises an alert at any time.
bool IsHard(Rule rule);

double DoubtOf(const std::vector<Fact>& facts);
// 0 to 0.99; `factor` is 1, or kInstallingFactor.
double RiskOf(double doubt, double factor);

// At most three phrases, one for each topic, the heaviest topic first.
std::vector<std::string> Phrases(const std::vector<Fact>& facts);

// Keeps alerts that no hard rule raises rare: for a day behind one, only what leaves a quarter of its doubt
// or less is an alert. So one alert a day is the rule, and what is far more unusual than the last still
// comes.
class Budget {
 public:
  // The most doubt that an alert may leave now.
  double Limit(std::int64_t utc) const;
  void Spend(double doubt, std::int64_t utc);

 private:
  static constexpr std::int64_t kDay = 86400;
  static constexpr std::size_t kMost = 100;
  struct Spent {
    double doubt;
    std::int64_t utc;
  };
  std::vector<Spent> spent_;
};

}  // namespace zendrix::agent
