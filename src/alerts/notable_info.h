// The alert last looked up with its contributing events, and what the lookup and the renderers leave for one
// another. There is one of these in the program; every renderer reads it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace zendrix::alerts {

// Copies of the columns of one row of the event table.
struct NotableRecord {
  std::int16_t ID = 0;
  std::string DateUTC;   // empty on entries found by the backward scan
  std::string DateTime;  // first 10 characters the date, last 11 the time
  std::string Original;
  std::string Change;
  std::string Monitor;
  std::string Description;
  // Entry 0: the alert's own. Others: what the Agent's reaction did about this monitor; empty when nothing is
  // known.
  std::string Reaction;
  // Earlier rows with the same Description and Change; not set on entry 0.
  std::optional<std::int32_t> TimesObserved;
};

struct AlertContext {
  // Entry 0 is the alert, the others its events in the order found. Emptied to one blank entry, never to
  // none, by each lookup.
  std::vector<NotableRecord> NotableInfo{1};
  // Of the first row of the table: since when history exists.
  std::string FirstEventDateTime;
  std::string FirstEventDateUTC;
  // Date and time of the alert last rendered by GetCurrDesc.
  std::string AlertDate;
  std::string AlertTime;

  void Reset() { NotableInfo.assign(1, NotableRecord{}); }
};

}  // namespace zendrix::alerts
