// The monitoring file as the Agent writes it. It is only appended to, one whole batch at a time and in one
// write, so that a reader never meets half a line of a batch. Two rules of its readers bind the writer:
//  - A reader that follows the file drops new lines as long as their second is not later than that of the
//    last line it has. So a batch never begins with the second that the batch before it ended with, but with
//    a later one, if need be a little ahead of the clock; the writer then waits until the clock has caught
//    up. When the computer's clock was put back it goes on from the last second written; when that lies more
//    than a day ahead, the file is to be put aside, and a reader that follows loads the new one from its
//    beginning.
//  - The Home console numbers rows in 16 bits and cannot load a file of 21 MB. So a file that is nearly full
//    is put aside, under a name with its last second, and a new one begins.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "agent/record/lines.h"
#include "platform/clock.h"
#include "platform/files.h"

namespace zendrix::agent {

class EventFile {
 public:
  static constexpr std::size_t kMostRows = 30000;
  static constexpr std::int64_t kMostBytes = 16 << 20;
  static constexpr std::size_t kMostAside = 50;
  // Seconds that a batch may begin ahead of the clock, so that what is urgent need not wait for the next one.
  static constexpr std::int64_t kMostLead = 2;
  // A file whose last line is further ahead was written by a clock that went wrong, and going on from there
  // would give every later event a wrong time.
  static constexpr std::int64_t kMostAhead = 24 * 60 * 60;

  // `path` ends in ".kvl". Both references outlive the object.
  EventFile(platform::Files& files, platform::Clock& clock, std::string path, Form form);

  // Takes up a file that is there: its last second, its rows, a last line without an end. An error when it
  // cannot be read or holds lines of the other form.
  platform::Status Open();

  // The second for the next batch, which lasts so many seconds more. Where nothing was written lately it lies
  // that much before now, so that the batch ends with the clock and the next one need not wait.
  std::int64_t NextSecond(std::int64_t more = 0);

  // Of the last line that has one; 0 when there is none.
  std::int64_t LastSecondWritten() const { return last_second_; }

  // Whether a batch may be written now, or the clock has to catch up with the last one first. A clock that
  // was put back is not waited for.
  bool MayWrite() const { return clock_.MonotonicMs() >= wait_until_ms_; }

  // The same for a batch that is not urgent: it does not run ahead of the clock either.
  bool MayWriteInTime() const {
    return MayWrite() && (last_second_ < clock_.NowUtc() || last_second_ > clock_.NowUtc() + kMostLead);
  }

  // Appends a batch that begins with NextSecond()'s result. When it fails, nothing is taken for written, but
  // a part that is in the file all the same has its seconds.
  platform::Status Append(const BatchText& batch);

  // True when the file is gone, shorter than it was left, or another one: somebody began anew.
  bool WasReplaced() const;

  bool IsFull() const { return rows_ >= kMostRows || size_ >= kMostBytes; }
  bool IsFarAhead() const { return size_ > 0 && last_second_ > clock_.NowUtc() + kMostAhead; }
  // Whether the file bears a batch of so many rows: a row's number has 15 bits.
  bool HasRoomFor(std::size_t rows) const { return rows_ == 0 || rows_ + rows <= kHighestNumber; }
  // Renames the file, so that the next Append begins a new one. The result is the new path. After one that
  // was far ahead MayWrite is false until every reader has seen that the new file is short.
  platform::Result<std::string> PutAside();
  // Deletes the oldest of the files that were put aside when they are more than kMostAside. How many these
  // were.
  std::size_t DropOldest();
  // Takes the file for new; after WasReplaced().
  void Forget();

 private:
  static constexpr std::size_t kHighestNumber = 32000;

  void TakeUp(std::string_view bytes);
  void EndAt(std::int64_t second);
  void NotePart(std::string_view bytes);
  std::optional<platform::FileIdentity> IdentityNow() const;

  platform::Files& files_;
  platform::Clock& clock_;
  const std::string path_;
  const Form form_;
  std::int64_t last_second_ = 0;    // 0: no batch to follow
  std::int64_t first_second_ = 0;   // of the batch that comes next, as NextSecond said
  std::int64_t wait_until_ms_ = 0;  // by the clock that never goes back
  std::int64_t size_ = 0;
  std::optional<platform::FileIdentity> identity_;  // of the file that size_ is about
  std::size_t rows_ = 0;
  bool line_open_ = false;  // the last line has no end
};

}  // namespace zendrix::agent
