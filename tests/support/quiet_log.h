// A test's ear at the console's log: every line has to be announced, or it fails the test. Announce a line
// before it is written with Expect, or take what was written with Take and compare; what is left over when
// the object is destroyed is a failure, and so is an announced line that never came. Lines are the message
// field, for instance
// "'Initial': Start UI.".
#pragma once

#include <gtest/gtest.h>

#include <deque>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "core/error_log.h"

namespace zendrix::testing {

class QuietLog {
 public:
  // Listens from now on; a listener that is already there is called as well. `log` outlives this object.
  explicit QuietLog(core::ErrorLog& log) : log_(log), before_(log.on_line) {
    log_.on_line = [this](const std::string& line) { Hear(line); };
  }
  ~QuietLog() {
    log_.on_line = before_;
    for (const std::string& line : heard_) ADD_FAILURE() << "unannounced log line: " << line;
    for (const std::string& line : expected_) ADD_FAILURE() << "announced log line never came: " << line;
  }
  QuietLog(const QuietLog&) = delete;
  QuietLog& operator=(const QuietLog&) = delete;

  // Announces one line. Announced lines come in the order of their announcement.
  void Expect(std::string line) { expected_.push_back(std::move(line)); }
  // The unannounced lines so far; they count as announced from now on.
  std::vector<std::string> Take() { return std::exchange(heard_, {}); }
  // Every line so far, announced or not.
  const std::vector<std::string>& All() const { return all_; }

 private:
  void Hear(const std::string& line) {
    all_.push_back(line);
    if (!expected_.empty() && expected_.front() == line) {
      expected_.pop_front();
    } else {
      heard_.push_back(line);
    }
    if (before_) before_(line);
  }

  core::ErrorLog& log_;
  std::function<void(const std::string&)> before_;
  std::deque<std::string> expected_;
  std::vector<std::string> heard_;
  std::vector<std::string> all_;
};

}  // namespace zendrix::testing
