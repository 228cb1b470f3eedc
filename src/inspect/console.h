// The console without a window: the same state, log and seams that the executable puts together, with message
// boxes collected instead of shown, the fatal path caught instead of ending the process, and (unless told to
// write) every change kept in memory.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "core/app_state.h"
#include "core/error_log.h"
#include "inspect/document.h"
#include "inspect/options.h"
#include "platform/linux/poll_loop.h"

namespace zendrix::inspect {

class Console {
 public:
  // With `live` timers run on the poll loop; without it none ever fires, and a yield lets nothing in.
  Console(const Options& options, bool live);
  ~Console();
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

  core::AppState& state();
  core::ErrorLog& log();
  platform::PollLoop& loop();
  // `behind` is called behind every timer that has fired on the loop.
  void OnTick(std::function<void()> behind);
  const Options& options() const { return options_; }

  // Adds "messages" and "log" (those since the last call) and prints the document as one line, or indented.
  void Print(Json document);
  // The same for a document with `count` "rows", which are made, printed and dropped one at a time: as a
  // document the cells of a table can take many times the memory of the table itself.
  void PrintWithRows(Json document, std::size_t count, const std::function<Json(std::size_t)>& row);
  // The document of the fatal path.
  Json FatalDocument() const;

  // A file argument: as given, or inside the program folder when it is only to be found there.
  std::string ResolveFile(const std::string& path);
  // Whole file as text, or null when it does not exist.
  Json FileText(const std::string& path);

 private:
  struct Parts;

  std::string Finished(Json document);
  std::string Dump(Json document) const;

  Options options_;
  std::unique_ptr<Parts> parts_;
};

}  // namespace zendrix::inspect
