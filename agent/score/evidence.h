// From an event to the facts that speak for an intrusion: the rules that its item bears, faded by how long
// this host has had the same thing, and what is new about it. Looking at an event makes it known.
#pragma once

#include <deque>
#include <map>
#include <optional>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "agent/events/events.h"
#include "agent/score/baseline.h"
#include "agent/score/program_files.h"
#include "agent/score/scorer.h"
#include "agent/score/scoring.h"

namespace zendrix::agent {

class Evidence {
 public:
  // Logins that failed within this time are guessed passwords when there are that many.
  static constexpr std::int64_t kGuessingMs = 10 * 60 * 1000;
  static constexpr std::int64_t kGuesses = 10;
  // A program that talked to so many addresses since the start talks to everybody.
  static constexpr int kTalkerAddresses = 64;

  // Both outlive the object.
  Evidence(Baseline& baseline, ProgramFiles& files) : baseline_(baseline), files_(files) {}

  bool IsKnown(const Item& item) const;
  // Facts without weight are left out; what went is no evidence.
  std::vector<Fact> Of(const Event& event, Moment now);
  // Events of programs that could not be read at once because there was too much to read. Once a second.
  std::vector<Event> TakePutOff(Moment now);
  bool HasPutOff() const { return !put_off_.empty(); }
  // Passwords that are guessed, when what Of was asked about last was one of the guesses: by the source with
  // ten or more of its own, else by all sources together.
  struct Guessing {
    Item item;  // the last of the source with the most
    std::string subject;
    Fact fact;
  };
  const std::optional<Guessing>& Guessed() const { return guessed_; }

 private:
  struct Thing {
    Known kind;
    std::string key;
    int number;  // of the fact that it is new
    Topic topic;
    std::string text;
  };

  static std::optional<Thing> ThingOf(const Item& item);
  bool IsTalker(const Item& item) const;
  int OfProgram(const Item& item, Moment now, std::vector<Fact>& facts);
  bool PutOff(const Item& item);
  void OfParent(const Item& item, std::vector<Fact>& facts);
  std::optional<int> OfThing(const Thing& thing, const Item& item, std::vector<Fact>& facts);
  void OfRules(const Item& item, int program_days, std::optional<int> thing_days, std::vector<Fact>& facts);
  void OfGuessing(const Event& event, Moment now);
  std::string SinceText() const;

  std::vector<Item> put_off_;  // programs of which the contents are to be read yet
  std::int64_t put_off_second_ = 0;

  Baseline& baseline_;
  ProgramFiles& files_;
  std::unordered_map<std::string, int> addresses_;  // new ones by program, since the start
  struct Failure {
    std::int64_t at_ms;
    std::int64_t count;
    std::string subject;
  };
  struct Source {
    std::int64_t count = 0;
    Item item;
  };
  void DropOldestFailure();
  std::deque<Failure> failures_;           // of the last ten minutes, oldest first
  std::map<std::string, Source> sources_;  // of these, by subject
  std::int64_t failed_ = 0;                // all of them
  std::optional<Guessing> guessed_;
};

// What the file of the program behind an item is called in the baseline.
const std::string& ProgramKey(const Item& item);

}  // namespace zendrix::agent
