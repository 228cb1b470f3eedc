#include "store/reader.h"

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

#include "core/guards.h"
#include "core/moments.h"
#include "core/number_rules.h"
#include "core/run_time_error.h"
#include "store/line_counter.h"
#include "store/line_fields.h"
#include "store/line_reader.h"
#include "store/row_maker.h"

namespace zendrix::store {
namespace {

constexpr int kNoDescr = 9;
constexpr std::int32_t kLinesPerYield = 50;
constexpr std::int64_t kLargestLong = std::numeric_limits<std::int32_t>::max();

// Counts a line of this length, its end taken as two bytes whatever it was.
void CountBytes(std::int64_t& running, std::size_t length) {
  running += static_cast<std::int64_t>(length) + 2;
  if (running > kLargestLong) core::Raise(core::kOverflow);
}

// The date at the head of a line, as it is written. A line without a comma has none, which is an error.
std::string_view DateKey(std::span<const char> line) {
  const std::string_view text(line.data(), line.size());
  const std::size_t comma = text.find(',');
  if (comma == std::string_view::npos) core::Raise(core::kInvalidProcedureCall);
  return text.substr(0, comma);
}

}  // namespace

CMkvlf::CMkvlf(core::AppState& state, core::ErrorLog& log, std::function<void(int)> progress)
    : state_(state), log_(log), progress_(std::move(progress)) {}

CMkvlf::~CMkvlf() = default;

// The fatal style, but for a file that is locked at the moment: that is only logged.
template <class Body>
void CMkvlf::Guarded(const std::string& logged_as, const std::string& fatal_as, Body body) {
  core::OrFatal(log_, fatal_as, [&] {
    try {
      body();
    } catch (const core::RunTimeError& error) {
      if (error.number != core::kPermissionDenied) throw;
      log_.WriteLog(logged_as, std::to_string(error.number) + ": " + error.description);
    }
  });
}

void CMkvlf::InitClass(const std::string& path) {
  if (!loading_) {
    struct Busy {
      explicit Busy(bool& busy) : flag(busy) { flag = true; }
      ~Busy() { flag = false; }
      bool& flag;
    } busy(loading_);
    const std::string kept_path = path;
    Guarded("CMkvlf:InitClass (0).", "CMkvlf:InitClass (0).", [&] { Load(kept_path); });
  }
  Arm();
}

void CMkvlf::Load(const std::string& path) {
  ReaderDateOrder = core::CInt(core::GetLocaleValue(core::kLocaleDateOrder, state_.seams.locale),
                               state_.seams.locale.Current());
  LastFileSize = 0;
  LastLineNumber = 0;
  LastDateUTC.clear();
  MonitorList.Clear();
  HostList.Clear();
  OriginalList.Clear();
  rows_.reset();
  EventTable.reset();
  if (!state_.seams.files.Exists(path)) {
    CreateEventTable(kNoDescr);
    ReloadedFlag = true;
    return;
  }
  ReaderFilePath = path;
  LastFileSize = SizeOf(path);
  const auto stream = core::ValueOrRaise(state_.seams.files.Open(path));
  if (LastFileSize == 0) {
    CreateEventTable(kNoDescr);
    ReloadedFlag = true;
    return;
  }
  LineReader lines(*stream);
  LoadLines(lines);
}

void CMkvlf::LoadLines(LineReader& lines) {
  std::int32_t counter = 1;
  std::int64_t running_bytes = 0;
  LineFields fields;
  // The current line is copied: asking for the end of the file invalidates it.
  std::vector<char> line;
  const auto next = [&] {
    const auto read = lines.ReadLine();
    line.assign(read.begin(), read.end());
    CountBytes(running_bytes, line.size());
    fields.Split(line);
  };
  next();
  const bool full_at_once = fields.full();
  while (!fields.full() && !lines.AtEnd()) {
    CountUp(counter);
    next();
  }
  if (!full_at_once && lines.AtEnd()) return CreateEventTable(kNoDescr);

  CreateEventTable(fields.last() + 3);
  rows_->AddFirstLine(fields, counter);
  while (!lines.AtEnd()) {
    CountUp(counter);
    const auto read = lines.ReadLine();
    CountBytes(running_bytes, read.size());
    fields.Split(read);
    if (fields.full()) rows_->AddLine(fields, counter);
    if (counter % kLinesPerYield == 0) Progress(running_bytes);
  }
  LastLineNumber = counter;
  EventTable->cursor()->MoveFirst();
  ReloadedFlag = true;
}

// The percentage is computed in 32 bits: a file of more than about 21 million bytes cannot be loaded.
void CMkvlf::Progress(std::int64_t running_bytes) {
  if (running_bytes * 100 > kLargestLong) core::Raise(core::kOverflow);
  const double percent = static_cast<double>(running_bytes * 100) / LastFileSize;
  EventTable->cursor()->MoveFirst();
  if (progress_) progress_(static_cast<int>(std::min(percent, 100.0)));
  state_.seams.loop.ProcessMessages();
}

void CMkvlf::LoadNewEvents() {
  if (loading_) return;
  Guarded("CMkvlf:LoadNewEvents (0).", "CMkvlf:loadNewEvents (0).", [this] { Follow(); });
}

void CMkvlf::Follow() {
  ReloadedFlag = false;
  if (!state_.seams.files.Exists(ReaderFilePath)) return;
  const std::int32_t size = SizeOf(ReaderFilePath);
  if (size == LastFileSize) return;
  if (size < LastFileSize) {
    ReloadedFlag = true;
    if (EventTable) {
      rows_.reset();
      EventTable.reset();
      LastBookmark.reset();
    }
    InitClass(ReaderFilePath);
  } else {
    const auto stream = core::ValueOrRaise(state_.seams.files.Open(ReaderFilePath));
    LineReader lines(*stream);
    Append(lines);
    LastFileSize = size;
    EventTable->cursor()->MoveFirst();
  }
  newAlert.Raise();
}

void CMkvlf::Append(LineReader& lines) {
  std::int32_t counter = LastLineNumber;
  lines.Skip(LastFileSize);
  auto line = lines.ReadLine();
  std::string_view key = DateKey(line);
  bool newer = key > LastDateUTC;
  while (!newer && !lines.AtEnd()) {
    line = lines.ReadLine();
    key = DateKey(line);
    newer = key > LastDateUTC;
  }
  if (!EventTable) CreateEventTable(kNoDescr);  // the full load was refused before it came to a line
  if (EventTable->RowCount() > 0) LastBookmark = EventTable->RowCount() - 1;

  rows_->BeginLoad(RowMaker::Load::kIncremental);
  LineFields fields;
  const auto add = [&](std::span<char> read) {
    CountUp(counter);
    fields.Split(read);
    if (fields.full()) rows_->AddLine(fields, counter);
  };
  if (newer) add(line);
  while (!lines.AtEnd()) add(lines.ReadLine());
  LastLineNumber = counter;
}

void CMkvlf::CreateEventTable(int last_descr) {
  EventTable = store::EventTable::CreateEventTable(last_descr, state_.seams.locale.Current());
  rows_ = std::make_unique<RowMaker>(state_, log_, EventTable,
                                     RowMaker::Traces{MonitorList, HostList, OriginalList, LastDateUTC},
                                     ReaderDateOrder);
}

std::int32_t CMkvlf::SizeOf(const std::string& path) {
  const std::int64_t size = core::ValueOrRaise(state_.seams.files.Size(path));
  if (size > kLargestLong) core::Raise(core::kOverflow);
  return static_cast<std::int32_t>(size);
}

void CMkvlf::cbTimer() {
  LoadNewEvents();
  Arm();
}

void CMkvlf::Arm() {
  const auto spent = std::ranges::find_if(shots_, [](const auto& shot) { return !shot->armed; });
  Shot* shot = spent == shots_.end() ? nullptr : spent->get();
  if (shot == nullptr) {
    shots_.push_back(std::make_unique<Shot>());
    shot = shots_.back().get();
    shot->timer = state_.seams.timers.MakeTimer([this, shot] {
      shot->timer->Stop();
      shot->armed = false;
      cbTimer();
    });
  }
  shot->armed = true;
  shot->timer->StartOnce(kPollMs);
}

}  // namespace zendrix::store
