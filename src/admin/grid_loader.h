// The road from the monitoring file to the rows of the event grid: all of it, or what was added since. It
// remembers how far it has read, so that a poll reads what is new and nothing else, as long as it finds the
// same file with the same bytes in front of that place; otherwise it passes over the known lines from the
// start. The owner keeps the counters, shows progress and serves the message loop in the hooks; a hook may
// not call the loader again.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "admin/file_bookmark.h"
#include "admin/row_taker.h"
#include "platform/files.h"

namespace zendrix::store {
class LineReader;
}

namespace zendrix::admin {

// One load: what it begins with, what it has come to and whom it asks.
struct GridLoad {
  std::string path;
  LoadSettings settings;
  MonitorQuestion is_displayed;
  std::function<void()> opened;       // the whole file is about to be read; may be empty
  std::function<void()> serve;        // behind every fiftieth line of the file
  std::function<void()> before_line;  // of a line that is added; may be empty
  std::function<void()> behind_line;  // likewise

  // Lines of the file so far; at the beginning of a load of added lines, those that are known.
  std::int32_t lines = 0;
  // Bytes of the lines that this load has taken, two for each line's end.
  std::int64_t bytes = 0;
  // Monitors that the settings do not know, each once.
  std::vector<std::string> unknown_monitors;
};

class GridLoader {
 public:
  // Both outlive the loader.
  GridLoader(platform::Files& files, LoadTargets targets) : files_(files), targets_(targets) {}

  // Reads the whole file. Raises what the file refuses, 6 beyond 32 bits of lines and 7 when the rows are
  // full; `load` then tells how far it came.
  void ReadAll(GridLoad& load);
  // Reads what stands behind `load.lines` lines, nothing if there are fewer. Raises the same; the next call
  // for the same number of lines then reads the same ones again.
  void ReadAdded(GridLoad& load);

 private:
  static bool PassRest(const FileBookmark::Place& place, store::LineReader& lines);
  static bool PassKnown(const GridLoad& load, store::LineReader& lines);
  void TakeLines(GridLoad& load, store::LineReader& lines);
  void Remember(const GridLoad& load, platform::ReadStream& stream, const store::LineReader& lines);

  platform::Files& files_;
  LoadTargets targets_;
  FileBookmark bookmark_;
};

}  // namespace zendrix::admin
