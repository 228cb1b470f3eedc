#include "admin/grid_loader.h"

#include <array>
#include <span>

#include "core/run_time_error.h"
#include "store/line_counter.h"
#include "store/line_reader.h"

namespace zendrix::admin {

namespace {
constexpr std::int32_t kLinesPerServing = 50;
constexpr std::size_t kLinesAtOnce = 32;
}  // namespace

void GridLoader::ReadAll(GridLoad& load) {
  bookmark_.Forget();
  const auto stream = core::ValueOrRaise(files_.Open(load.path));
  if (load.opened) load.opened();
  store::LineReader lines(*stream);
  TakeLines(load, lines);
  Remember(load, *stream, lines);
}

void GridLoader::ReadAdded(GridLoad& load) {
  const auto stream = core::ValueOrRaise(files_.Open(load.path));
  store::LineReader lines(*stream);
  const auto place = bookmark_.Find(load.path, load.lines, *stream);
  lines.Skip(place ? place->offset : 0);
  if (!(place ? PassRest(*place, lines) : PassKnown(load, lines))) return;
  TakeLines(load, lines);
  Remember(load, *stream, lines);
}

// The rest of a line that was read when it was half written has been counted with it. False when nothing has
// come.
bool GridLoader::PassRest(const FileBookmark::Place& place, store::LineReader& lines) {
  if (lines.AtEnd()) return false;
  if (place.line_is_open) lines.ReadLine();
  return true;
}

// False when the file has fewer lines than are known.
bool GridLoader::PassKnown(const GridLoad& load, store::LineReader& lines) {
  for (std::int32_t passed = 0; passed < load.lines; ++passed) {
    if (lines.AtEnd()) return false;
    lines.ReadLine();
  }
  return true;
}

void GridLoader::TakeLines(GridLoad& load, store::LineReader& lines) {
  RowTaker rows(targets_, load.settings, load.is_displayed, load.unknown_monitors);
  std::array<std::span<char>, kLinesAtOnce> read;
  std::array<RowTaker::Prepared, kLinesAtOnce> prepared;
  while (!lines.AtEnd()) {
    const std::size_t count = lines.ReadLines(read);
    for (std::size_t i = 0; i < count; ++i) prepared[i] = rows.Prepare(read[i]);
    rows.Fetch(std::span(prepared).first(count));
    for (std::size_t i = 0; i < count; ++i) {
      if (load.before_line) load.before_line();
      store::CountUp(load.lines);
      load.bytes += static_cast<std::int64_t>(read[i].size()) + 2;
      rows.Take(prepared[i], load.lines);
      if (load.lines % kLinesPerServing == 0) load.serve();
      if (load.behind_line) load.behind_line();
    }
  }
}

void GridLoader::Remember(const GridLoad& load, platform::ReadStream& stream,
                          const store::LineReader& lines) {
  bookmark_.Mark(load.path, stream, {load.lines, lines.Offset(), lines.LineIsOpen()});
}

}  // namespace zendrix::admin
