#include "agent/score/left_out.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace zendrix::agent {
namespace {

constexpr double kWeight = 0.96;

}  // namespace

void LeftOut::Add(std::vector<Fact> facts, const Item& member) {
  ++count_;
  for (const Fact& fact : facts) {
    const auto [at, is_new] = kinds_.try_emplace(fact.number, fact);
    if (is_new) {
      at->second.count = 1;
    } else if (at->second.count < std::numeric_limits<int>::max()) {
      ++at->second.count;
    }
  }
  subject_.Add(member, std::move(facts));
}

bool LeftOut::IsDue(std::int64_t utc) const {
  return count_ > 0 && !subject_.Members().empty() &&
         (told_utc_ == 0 || utc < told_utc_ || utc - told_utc_ >= kEverySeconds);
}

void LeftOut::WasTold(std::int64_t utc) {
  told_utc_ = utc;
  count_ = 0;
  kinds_.clear();
  subject_ = Subject();
}

std::vector<Fact> LeftOut::Facts() const {
  std::vector<Fact> kinds;
  for (const auto& [number, fact] : kinds_) kinds.push_back(fact);
  std::stable_sort(kinds.begin(), kinds.end(), [](const Fact& a, const Fact& b) {
    return std::pair(a.hard, a.weight) > std::pair(b.hard, b.weight);
  });
  if (kinds.size() > kMostKinds) kinds.resize(kMostKinds);
  Fact fact;
  fact.number = kAlertsLeftOut;
  fact.topic = Topic::kCrowd;
  fact.weight = fact.full_weight = kWeight;
  fact.hard = true;
  fact.count = static_cast<int>(std::min<std::size_t>(count_, std::numeric_limits<int>::max()));
  fact.text = std::to_string(count_) + (count_ == 1 ? " alert" : " alerts") + " found no room";
  kinds.insert(kinds.begin(), std::move(fact));
  return kinds;
}

Subject LeftOut::AsSubject() const {
  Subject subject = subject_;
  subject.name = kSubject;
  return subject;
}

}  // namespace zendrix::agent
