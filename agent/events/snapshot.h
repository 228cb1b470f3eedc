// The state of the host at one moment, and what differs between two moments. An item is one thing that a
// monitor reports: a process, an open port, an account. A measurement is one number of a monitor.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "agent/score/rules.h"

namespace zendrix::agent {

struct Item {
  std::string_view monitor;  // one of the constants in rules.h
  std::string description;   // ready for a line
  std::string identity;      // tells apart what two items of equal description are; not written
  std::string subject;       // facts with equal subjects are weighed together; mostly a program's path
  RuleSet rules;             // what is unusual about it, whenever it came
  std::string program = {};  // path of the program behind it, the host's bytes; empty when it cannot be told
  std::string parent = {};   // path of the program that started it, likewise; empty when it is not known
  std::string place = {};   // file that a look found it in, the host's bytes; empty where no look can miss it
  std::uint64_t inode = 0;  // of the file that the program was started from; 0: not told
  std::uint64_t process = 0;  // number of the process that runs it; 0: none
};

// Failed logins that came from one place.
struct FailedLogins {
  std::string where;  // ready for a line: "sshd from 192.0.2.7"; empty when it cannot be told
  std::uint64_t count = 0;
};

struct Snapshot {
  std::int64_t taken_ms = 0;  // by the clock that never goes back
  std::vector<Item> items;    // of all monitors, in the order of ItemMonitors()
  std::optional<double> memory_percent;
  std::vector<std::string> memory_users;  // names of the largest programs, largest first
  std::optional<std::uint64_t> traffic_bytes;
  std::optional<std::uint64_t> failed_logins;   // records so far
  std::vector<FailedLogins> new_failed_logins;  // where those since the look before were tried
};

struct Difference {
  std::vector<Item> removed;
  std::vector<Item> added;
};

// Items compare by monitor, description and identity. Several equal items count as one: of three equal
// connections the last one to go is the one that is reported.
Difference Compare(const std::vector<Item>& before, const std::vector<Item>& now);

}  // namespace zendrix::agent
