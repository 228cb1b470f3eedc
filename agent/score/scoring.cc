#include "agent/score/scoring.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace zendrix::agent {
namespace {

constexpr double kDaysToHalf = 3;
constexpr std::size_t kMostPhrases = 3;
constexpr double kBudgetShare = 0.25;
// What has the highest risk that a line can tell is an alert whatever was spent on decoys.
constexpr double kLeastLimit = 1 - kMostRisk;

// The phrase of a topic is that of its heaviest fact, but that a plain statement of what was done goes first.
bool IsBetterPhrase(const Fact& a, const Fact& b) {
  const auto is_deed = [](const Fact& fact) {
    return fact.number == kNewPort || fact.number == kNewConnection;
  };
  if (is_deed(a) != is_deed(b)) return is_deed(a);
  return a.weight > b.weight;
}

}  // namespace

double Fading(int days) {
  return std::exp2(-days / kDaysToHalf);
}

Topic TopicOf(Rule rule) {
  switch (FactsOf(rule).number / 100) {
    case 1:
      return Topic::kPlace;
    case 2:
      return Topic::kPort;
    case 3:
      return Topic::kConnection;
    case 4:
      return Topic::kLogin;
    case 5:
      return Topic::kAccount;
    case 6:
      return Topic::kAutostart;
    case 8:
      return Topic::kFile;
    default:
      return rule == Rule::kFailedLogins ? Topic::kGuessing : Topic::kMeasure;
  }
}

bool IsHard(Rule rule) {
  switch (rule) {
    case Rule::kProgramInMemory:
    case Rule::kNamedLikeKernelThread:
    case Rule::kSecondRoot:
    case Rule::kNoPassword:
    case Rule::kAutorunInTemporaryFolder:
    case Rule::kSetUserIdInTemporaryFolder:
    case Rule::kPreloadList:
      return true;
    default:
      return false;
  }
}

double DoubtOf(const std::vector<Fact>& facts) {
  double doubt = 1;
  for (const Fact& fact : facts) doubt *= 1 - fact.weight;
  return doubt;
}

double RiskOf(double doubt, double factor) {
  return std::min(1 - doubt, kMostRisk) * factor;
}

std::vector<std::string> Phrases(const std::vector<Fact>& facts) {
  struct Told {
    double doubt = 1;
    const Fact* best = nullptr;
  };
  std::map<Topic, Told> topics;
  for (const Fact& fact : facts) {
    Told& told = topics[fact.topic];
    told.doubt *= 1 - fact.weight;
    if (told.best == nullptr || IsBetterPhrase(fact, *told.best)) told.best = &fact;
  }
  std::vector<Told> order;
  for (const auto& [topic, told] : topics) order.push_back(told);
  std::stable_sort(order.begin(), order.end(),
                   [](const Told& a, const Told& b) { return a.doubt < b.doubt; });
  if (order.size() > kMostPhrases) order.resize(kMostPhrases);
  std::vector<std::string> phrases;
  for (const Told& told : order) phrases.push_back(told.best->text);
  return phrases;
}

double Budget::Limit(std::int64_t utc) const {
  double limit = kMostDoubt;
  for (const Spent& spent : spent_) {
    if (utc - spent.utc < kDay && utc >= spent.utc)
      limit = std::min(limit, std::max(spent.doubt * kBudgetShare, kLeastLimit));
  }
  return limit;
}

void Budget::Spend(double doubt, std::int64_t utc) {
  std::erase_if(spent_, [&](const Spent& spent) { return utc - spent.utc >= kDay; });
  if (spent_.size() >= kMost) spent_.erase(spent_.begin());
  spent_.push_back({doubt, utc});
}

}  // namespace zendrix::agent
