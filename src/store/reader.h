// CMkvlf: reads the Agent's monitoring file into an EventTable, all of it at the start and what is new at
// every tick of its own one-shot timer (2500 ms). Polling is the only means: nothing is locked and the file
// is never held open between reads. Everything runs on the user-interface thread.
//
// A full load yields to the event loop now and then, so other code can run in the middle of it and sees a
// table that is still being filled. What it finds there is consistent, only incomplete: a load or poll that
// re-enters meanwhile returns at once, and the next tick reads what it would have read.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/error_log.h"
#include "platform/message_loop.h"
#include "store/event_table.h"
#include "store/ulist.h"
#include "widgets/signal.h"

namespace zendrix::store {

class LineReader;
class RowMaker;

inline constexpr std::int64_t kPollMs = 2500;

class CMkvlf {
 public:
  // `progress` takes the percentage of the full load (the splash's bar, if it is open).
  CMkvlf(core::AppState& state, core::ErrorLog& log, std::function<void(int)> progress = {});
  ~CMkvlf();
  CMkvlf(const CMkvlf&) = delete;
  CMkvlf& operator=(const CMkvlf&) = delete;

  // Full load into a new table; arms the timer on every path. Error 70 is logged and ends the load where it
  // is; any other run-time error is fatal ("CMkvlf:InitClass (0).").
  void InitClass(const std::string& path);
  // What was added since the last read. Error 70 is logged and the next tick tries again; others are fatal
  // ("CMkvlf:loadNewEvents (0).").
  void LoadNewEvents();
  // One tick: LoadNewEvents, then arm the timer again. Every replaced file leaves one chain of ticks more.
  void cbTimer();

  // Raised synchronously after every change of the table.
  widgets::Signal<> newAlert;

  // Null before the first load, or when it failed early. A reload puts a new table here: a caller that yields
  // to the event loop while it reads keeps a copy of this pointer, a clone or the shared cursor's handle.
  std::shared_ptr<store::EventTable> EventTable;
  std::optional<Bookmark> LastBookmark;  // last row as it stood before the newest batch
  bool ReloadedFlag = false;
  CUList MonitorList;
  CUList HostList;
  CUList OriginalList;
  std::string ReaderFilePath;
  int ReaderDateOrder = 0;
  std::int32_t LastLineNumber = 0;
  std::int32_t LastFileSize = 0;
  std::string LastDateUTC;

 private:
  // One one-shot timer of a chain of ticks; those that have fired are armed again.
  struct Shot {
    std::unique_ptr<platform::Timer> timer;
    bool armed = false;
  };

  template <class Body>
  void Guarded(const std::string& logged_as, const std::string& fatal_as, Body body);
  void Load(const std::string& path);
  void LoadLines(LineReader& lines);
  void Progress(std::int64_t running_bytes);
  void Follow();
  void Append(LineReader& lines);
  void CreateEventTable(int last_descr);
  std::int32_t SizeOf(const std::string& path);
  void Arm();

  core::AppState& state_;
  core::ErrorLog& log_;
  std::function<void(int)> progress_;
  std::unique_ptr<RowMaker> rows_;  // of EventTable; null when there is none
  bool loading_ = false;
  std::vector<std::unique_ptr<Shot>> shots_;
};

}  // namespace zendrix::store
