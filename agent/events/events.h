// What the Agent reports: things that were there at the start, came, or went, and numbers that moved.
#pragma once

#include <string>
#include <vector>

#include "agent/events/snapshot.h"

namespace zendrix::agent {

enum class EventKind {
  kPresent,   // was there when the session began
  kAdded,     // came
  kRemoved,   // went
  kMeasured,  // a number that moved
  kHappened,  // came and left nothing behind, such as failed logins
};

struct Event {
  EventKind kind = EventKind::kPresent;
  Item item;
  double original = 0;  // the value before the change
  double change = 0;    // what was added to it
  // For a number: the texts that stand for it in a list of what is, now and before ("" for none before).
  std::string reading;
  std::string reading_before;
};

// Something came; it also bears the rule of its monitor for news.
Event CameEvent(Item item);
Event WentEvent(Item item);
Event HappenedEvent(Item item);

// The events of a session's first look.
std::vector<Event> PresentEvents(const std::vector<Item>& items);

// What went, then what came.
std::vector<Event> ChangeEvents(const Difference& difference);

}  // namespace zendrix::agent
