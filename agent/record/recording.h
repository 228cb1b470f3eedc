// One folder that the Agent writes into: the monitoring file in one of its two forms, and the log beside it.
//
// What is to be written waits here until it can be: until the clock allows a new batch, or until a full disk
// takes it. What waits is bounded; when it becomes too much it is given up for a new session, which tells how
// things stand by then, and the number given up is written too.
#pragma once

#include <cstdint>
#include <optional>
#include <ostream>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "agent/record/event_file.h"
#include "agent/record/lines.h"
#include "agent/record/rights.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace zendrix::agent {

struct Author {
  std::string host;    // cleaned
  std::string thread;  // digits
};

class Recording {
 public:
  static constexpr std::size_t kMostWaiting = 25000;  // events; one file bears so many rows

  static constexpr std::int64_t kMostLogBytes = 4 << 20;  // then the log begins anew, beside the one before

  // The references outlive the object; `errors` is for the person who started the Agent. With `make_like` a
  // log that begins anew has the rights of the one before.
  Recording(platform::Files& files, platform::Clock& clock, std::ostream& errors, std::string folder,
            Form form, Author author, MakeLike make_like = {});

  // False, and told, when the folder or the file cannot be used.
  bool Open();

  // Whether the file has to begin with a session: at the start, after it was taken away or replaced, and when
  // it is full or its last line far ahead of the clock, which puts it aside. Looks at the file when there is
  // something to write, and every second.
  bool WantsSession();
  // What is there now, in place of everything that waits and is told by it.
  void Begin(std::vector<Event> present);

  void Add(const std::vector<Event>& events);
  // What waits is news and worth running a little ahead of the clock for.
  void Hurry() { hurry_ = true; }
  void AddAlerts(const std::vector<Alert>& alerts);

  // Whether a write may be tried now; false while the clock catches up or a refused write is not to be tried
  // again yet.
  bool MayWrite() const;
  bool HasWaiting() const;
  // Whether there is something to write that may be written, or is urgent enough to be.
  bool IsDue() const;
  // Writes what waits, and these alerts behind it. The second of the first line; nothing when there was
  // nothing to write or it could not be written: then everything but `alerts` goes on waiting.
  std::optional<std::int64_t> Write(const std::vector<Alert>& alerts = {});

  bool IsFailing() const { return failing_; }
  // Whether the folder is still there. What could not be written into one that was taken away is missed by
  // nobody.
  bool HasFolder() const { return files_.FolderExists(folder_); }
  bool HasSession() const { return has_session_; }
  // The second of the last line in the file that was taken up; 0 when there was none.
  std::int64_t LastSecond() const { return file_.LastSecondWritten(); }
  std::uint64_t TakeRows() { return std::exchange(rows_, 0); }

  // A line of the log. `message` holds no comma.
  void Log(const std::string& message);

 private:
  void BeginLogAnew();
  void Complain(const std::string& message);
  void PutAside();
  void TellInSession(const std::string& message);
  void GiveUpWaiting();

  platform::Files& files_;
  platform::Clock& clock_;
  std::ostream& errors_;
  const std::string folder_;
  const Form form_;
  const Author author_;
  const MakeLike make_like_;
  const std::string log_path_;
  EventFile file_;
  Batch waiting_;
  std::vector<Event> later_;  // for the batch behind that
  std::set<std::string> in_later_;
  std::set<std::string> came_;  // what came in waiting_
  std::vector<Event> own_;      // what the session that begins says of the writing itself
  std::uint64_t given_up_ = 0;
  std::uint64_t rows_ = 0;
  bool hurry_ = false;
  bool wants_session_ = true;
  bool has_session_ = false;  // once one was written
  bool failing_ = false;
  bool log_failing_ = false;
  bool put_aside_failing_ = false;
  std::int64_t retry_ms_ = 0;
  std::int64_t next_check_ms_ = 0;
  std::int64_t next_put_aside_ms_ = 0;
};

}  // namespace zendrix::agent
