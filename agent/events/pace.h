// How soon an event is told, so that the file stays one that a person can read and a console can load.
//
// What this computer never had before, or what is unusual in itself, is told at once. A program or connection
// that is known is told only when it has lived five seconds; what ended earlier is counted, and one row a
// minute says how much that was. Each monitor has an allowance of rows that fills up again slowly, so a flood
// is told as its beginning and a number. What is not told when it comes is not told when it goes either.
#pragma once

#include <cstdint>
#include <deque>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

#include "agent/events/events.h"

namespace zendrix::agent {

class Pace {
 public:
  static constexpr std::int64_t kSettledMs = 5000;
  static constexpr std::int64_t kMinuteMs = 60000;
  static constexpr std::uint64_t kMostOfOneSubject = 30;  // told at once within a minute

  // `is_known` is asked whether an item was seen on this host before; without it, only this run counts.
  Pace(std::int64_t now_ms, std::function<bool(const Item&)> is_known = {});

  // What is there when a run begins: known, and told.
  void Begin(const std::vector<Event>& present);
  // Takes what happened, in order, and gives what to tell now.
  std::vector<Event> Take(std::vector<Event> events, std::int64_t now_ms);
  // Whether one more number of this item's monitor may be told now; it is counted when not.
  bool MayTellNumber(const Item& item, std::int64_t now_ms);
  // Whether what Take gave since the last call holds news; the rest can wait for a second of its own.
  bool TakeNews() { return std::exchange(gave_news_, false); }
  // The row of the minute, when one is over and there was something to count.
  std::optional<Event> Minute(std::int64_t now_ms);
  // The same before the minute is over, at the end of a run.
  std::optional<Event> Rest();

  // An alert names the item: when it was held back it has to be told after all.
  std::vector<Event> Release(const Item& item);
  // Whether an item that is there was told of.
  bool IsTold(const Item& item) const;

  // Counted, not told, since the beginning.
  std::uint64_t counted() const { return counted_; }

 private:
  struct Held {
    Event event;
    std::uint64_t number = 0;
  };
  struct Allowance {
    double rows = 0;
    std::int64_t filled_ms = 0;
  };
  enum class Why { kShort, kFlood };

  bool IsNews(const Item& item);
  bool Grant(const Item& item, bool at_once, std::int64_t now_ms);
  void TakeCame(Event event, std::int64_t now_ms, std::vector<Event>& told);
  void TakeWent(Event event, std::vector<Event>& told);
  void TellSettled(std::int64_t now_ms, std::vector<Event>& told);
  void Count(const Event& event, Why why);
  void Hold(Event event, std::int64_t now_ms);

  struct Due {
    std::int64_t at_ms;
    std::string key;
    std::uint64_t number;
  };

  const std::function<bool(const Item&)> is_known_;
  std::unordered_set<std::string> known_;       // in this run
  std::deque<std::string> known_order_;         // oldest first
  std::unordered_map<std::string, Held> held_;  // by KeyOf
  std::deque<Due> due_;                         // of held_, soonest first; may name what is held no more
  std::uint64_t next_number_ = 0;
  std::unordered_map<std::string, Event> silent_;  // there, and counted instead of told
  std::unordered_map<std::string, Event> ended_;   // counted and gone; the newest few
  std::deque<std::string> ended_order_;
  std::map<std::string_view, Allowance> allowances_;
  std::map<std::string, std::uint64_t> at_once_;  // by monitor and subject, of this minute

  bool gave_news_ = false;
  std::int64_t minute_began_ms_;
  std::uint64_t short_ = 0;
  std::uint64_t flood_ = 0;
  std::map<std::string, std::uint64_t> by_subject_;
  std::uint64_t counted_ = 0;
};

}  // namespace zendrix::agent
