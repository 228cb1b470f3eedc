// What is known of each subject that did something unusual lately: its facts, each number once at its
// heaviest, and the items that they were seen on. A subject is mostly a program. Bounded: a subject is
// forgotten an hour after its last fact, and when there are too many at once, those without an alert to come.
#pragma once

#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "agent/events/events.h"
#include "agent/score/program_files.h"
#include "agent/score/scoring.h"

namespace zendrix::agent {

class Subject {
 public:
  // Whether the facts say anything that was not known of it.
  bool Add(const Item& item, std::vector<Fact> facts);

  // Heaviest first, told with their counts.
  std::vector<Fact> Facts() const;
  // Heaviest first.
  std::vector<Item> Members() const;
  RuleSet Rules() const;
  // It was told, or is not worth telling.
  void StopWaiting() {
    waits = put_off = false;
    blocked_processes.clear();
  }

  std::string name;
  std::string program;  // the host's bytes; empty when there is none
  Running running;      // of its process that came last
  bool is_program = false;
  std::int64_t touched_ms = 0;
  std::int64_t due_ms = 0;
  bool came = false;          // more than being there when a session began
  bool waits = false;         // to be weighed when it is due
  bool put_off = false;       // was due, and found no room in the minute
  std::set<int> quiet_facts;  // of the last quiet line about it
  // Processes of a blocked program that came since it was last weighed; a few, the newest last.
  std::vector<std::uint32_t> blocked_processes;

 private:
  static constexpr std::size_t kMostMembers = 24;
  static constexpr std::size_t kMostTexts = 50;
  struct Held {
    Fact fact;
    std::set<std::string> texts;  // different ones of this number
  };
  struct Member {
    Item item;
    double doubt = 1;
  };

  std::map<int, Held> facts_;
  std::vector<Member> members_;
};

class Subjects {
 public:
  static constexpr std::size_t kMost = 5000;
  static constexpr std::int64_t kForgetMs = 60 * 60 * 1000;

  // Null when there are too many that wait.
  Subject* At(const std::string& name, std::int64_t now_ms);
  std::map<std::string, Subject>& all() { return all_; }
  void KeepWaiting() {
    std::erase_if(all_, [](const auto& entry) { return !entry.second.waits; });
  }

 private:
  std::map<std::string, Subject> all_;
};

}  // namespace zendrix::agent
