// What decides which events are alerts. The loop hands it everything that happens, also what it does not
// write line by line, and writes the alerts that come back. Nothing is taken for raised until Raised says so:
// a batch that could not be written is weighed again, and the same alerts come back.
//
// Members of an alert are items of events that were handed over, now or earlier. The console looks for their
// rows in front of the alert, so what was held back of them is written first.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "agent/events/events.h"
#include "agent/host/host_view.h"
#include "agent/score/alert.h"

namespace zendrix::agent {

struct Moment {
  std::int64_t utc = 0;           // seconds since 1970
  std::int64_t monotonic_ms = 0;  // of a clock that never goes back
};

struct DecidedAlert {
  std::int64_t second = 0;  // UTC, as the alert was written
  bool block = false;
};

class Scorer {
 public:
  virtual ~Scorer() = default;

  // Whether this was seen on this host before. Asked in front of Weigh, which makes it known.
  virtual bool IsKnown(const Item& item) const = 0;

  // The alerts that are due, the heaviest last, since the console shows the newest on top. Called at every
  // turn of the loop, also without events: an alert may wait a moment for what else its program does. What
  // went (EventKind::kRemoved) is not among them.
  virtual std::vector<Alert> Weigh(const std::vector<Event>& events, Moment now) = 0;

  // Whether there is anything that time alone makes due.
  virtual bool IsWaiting() const { return false; }

  // What still waits, at the end of a run.
  virtual std::vector<Alert> Rest(Moment now) = 0;

  // These alerts were written in a batch that began with `first_second` (UTC; see SecondOfAlert).
  virtual void Raised(const std::vector<Alert>& alerts, std::int64_t first_second, Moment now) = 0;

  // A new monitoring file begins: it holds no rows and no alerts yet. What is there comes again as events.
  virtual void BeginFile() = 0;

  // What is to be told in the log since the last call.
  virtual std::vector<std::string> TakeMessages() { return {}; }

  // What the user decided about the alerts with this code ("AG," and digits): the file that tells it is the
  // desktop user's, and only raises or lowers what is no alert by a hard rule. False when that is nothing
  // new.
  virtual bool Decide(const std::string& /*code*/, bool /*block*/) { return false; }
  // The alerts that a decision was made about, oldest first.
  virtual std::vector<DecidedAlert> Decided() const { return {}; }
};

// In the folder of the lock.
inline constexpr char kBaselineFile[] = "zendrix-baseline.db";

struct ScorerParts {
  HostView& host;        // for the programs' files and the package manager's records; outlives the scorer
  std::string path;      // of its memory; empty: as long as the run
  std::int64_t utc = 0;  // now
  std::int64_t settle_ms = 2000;  // how long an alert waits for what else its subject does
};

// Weighs what happens against what is usual on this host (see docs/scoring.md).
std::unique_ptr<Scorer> MakeBaselineScorer(const ScorerParts& parts);

}  // namespace zendrix::agent
