// The lines of the monitoring file. A batch is everything that one look gives; it becomes one text that is
// written at once, every event with the same second. All text comes cleaned from the observers (see text.h);
// the functions here only arrange it. Lines end in CR LF.
//
// Home form, fields separated by "|":
//   seconds,host,thread,monitor | original | change | description | reaction | code | 0
// Events of one monitor with one code share a line, their descriptions joined by " * ". An alert is an
// "Aggregation" line followed at once by its "Community" line; the first with its Change stands twice, since
// the console drops a decision for which it finds no earlier line. The console knows the user's decision on
// an alert by the alert's second alone, so no two alerts share one: the first has the second of the events,
// each further one the next second, if need be a little ahead of the clock.
//
// Admin form, fields separated by ",":
//   seconds,host,monitor,code,description     code A came, R went, N notable, B marker of a session
// In the notable line of an alert the last words of its monitors' names stand as words of their own, and
// those of no other monitor do: the console marks the newest row of each monitor that is named so.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "agent/events/events.h"
#include "agent/score/alert.h"

namespace zendrix::agent {

enum class Form { kHome, kAdmin };

struct Batch {
  bool begins_session = false;  // the first batch of a run or of a file
  std::vector<Event> events;
  std::vector<Alert> alerts;
};

struct Stamp {
  std::int64_t seconds = 0;
  std::string host;    // cleaned
  std::string thread;  // digits
};

struct BatchText {
  std::string bytes;
  std::int64_t last_second = 0;  // of the last line
  std::size_t rows = 0;          // numbers of rows that the console uses up for it
};

BatchText RenderBatch(Form form, const Stamp& stamp, const Batch& batch);

// Description of an "Aggregation" line: "Monitor=description" pairs joined by ";", descriptions of one
// monitor joined by " * ". Only as many members as fit into the console's 1536 characters.
std::string AggregationDescription(const std::vector<Item>& members);

}  // namespace zendrix::agent
