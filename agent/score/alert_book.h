// The alerts as they were when they were raised, with every fact and its weight, so that they can be
// explained later; and what the user decided about their subjects. It lives in the scorer's file and keeps
// the newest.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "agent/score/keeper.h"
#include "agent/score/scoring.h"

namespace zendrix::agent {

enum class AlertState : std::uint8_t {
  kRaised = 0,
  kHeldBack = 1,  // not unusual enough for the day
  kLearning = 2,  // in the first week
  kAllowed = 3,   // the user said so
};

struct AlertRecord {
  std::int64_t number = 0;  // given by the book
  std::int64_t second = 0;  // UTC, as written; no two that were raised have the same
  std::string code;
  std::string change;
  std::string subject;
  std::string sha256;   // of the program; empty when it could not be had
  std::string package;  // empty: of no package, or not asked
  double risk = 0;
  double doubt = 1;            // before cut and factor
  double needed = kMostDoubt;  // the most that an alert without a hard rule might leave at that time
  double package_factor = 1;
  int days_watched = 0;
  AlertState state = AlertState::kRaised;
  std::vector<Fact> facts;  // heaviest first
};

struct Decision {
  bool block = false;
  std::string sha256;      // of the program when it was decided
  std::set<int> hard;      // the hard facts that the user had seen
  std::int64_t until = 0;  // second of the newest alert that it was about
};

// The newest alerts of a scorer's file, newest first; also of one that a running Agent has open.
std::vector<AlertRecord> ReadAlerts(const Database& database, std::size_t count);
// The newest that goes by this: its second, or its code or six digits of that at least. Null when none does.
const AlertRecord* FindAlert(const std::vector<AlertRecord>& newest_first, std::string_view id);

class AlertBook {
 public:
  static constexpr std::size_t kMostAlerts = 2000;
  static constexpr std::size_t kMostDecisions = 5000;

  explicit AlertBook(Keeper& keeper);

  void Add(AlertRecord record);
  std::optional<Decision> DecisionOn(const std::string& code) const;
  bool HasBlocks() const { return blocks_ > 0; }
  // Takes a decision on the alerts so far with this code. False when there are none, or nothing new in it.
  bool Decide(const std::string& code, bool block);

  const std::deque<AlertRecord>& records() const { return records_; }  // oldest first
  // Seconds of the alerts that this decision was about: those that came later are not decided.
  std::vector<std::int64_t> SecondsOf(const std::string& code, const Decision& decision) const;
  const std::map<std::string, Decision>& decisions() const { return decisions_; }

  void Save(std::int64_t utc);

 private:
  void Load();
  void CountBlocks();
  bool WriteAll(Database& database) const;

  Keeper& keeper_;
  int generation_ = 0;
  std::deque<AlertRecord> records_;  // oldest first
  std::map<std::string, Decision> decisions_;
  std::size_t blocks_ = 0;   // of the decisions
  std::size_t unsaved_ = 0;  // so many of the newest
  std::set<std::string> unsaved_decisions_;
  std::vector<std::int64_t> dropped_;
};

}  // namespace zendrix::agent
