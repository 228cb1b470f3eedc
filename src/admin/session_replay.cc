#include "admin/session_replay.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "alerts/monitor_catalogue.h"
#include "core/guards.h"
#include "core/letter_case.h"
#include "widgets/wait_pointer.h"

namespace zendrix::admin {

namespace {

constexpr std::string_view kBeginSession = "Begin Session Refresh.";
constexpr char kSystemState[] = "System State";
constexpr char kSystemStateAt[] = "System State @ ";
constexpr char kNotOmitted[] = " ";
// How many rows from a notable one its related ones are looked for.
constexpr int kReach = 30;
// Rows of the view above the cursor that a step down keeps in sight, and that a session's beginning has.
constexpr int kRowsInSight = 25;
constexpr int kRowsAbove = 2;

// The element of one of the arrays of 31.
template <class Places>
auto& Of(Places& places, std::size_t monitor) {
  if (monitor >= places.size()) core::Raise(core::kSubscriptOutOfRange);
  return places[monitor];
}

// The pieces of a text between its blanks, in upper case.
std::vector<std::string> Words(std::string_view text) {
  std::vector<std::string> words;
  while (true) {
    const std::size_t blank = text.find(' ');
    words.push_back(core::UpperCase(text.substr(0, blank)));
    if (blank == std::string_view::npos) return words;
    text.remove_prefix(blank + 1);
  }
}

}  // namespace

SessionReplay::SessionReplay(GridFrame& frame, ReplayNeeds needs)
    : frame_(frame), grid_(frame.EventList), needs_(std::move(needs)) {
  NodeOmitted.fill(kNotOmitted);
  TbarPlay.begins_group = true;
  TbarStp.enabled = false;
  Connect(TbarPlay, &SessionReplay::StartReplay);
  Connect(TbarStp, &SessionReplay::EndReplay);
  Connect(TbarPrev, &SessionReplay::PreviousSession);
  Connect(TbarBack, &SessionReplay::StepBack);
  Connect(TbarStep, &SessionReplay::StepForward);
  Connect(TbarNxt, &SessionReplay::NextSession);
  Connect(TbarNotable, &SessionReplay::GoToNotable);
  links_.push_back(grid_.row_clicked.Connect([this](int row) { EventList_Click(row); }));
  links_.push_back(grid_.header_clicked.Connect([this](int) {
    if (Playing) EndReplay();
  }));
  // The texts of the items are those of the rows, which go next.
  links_.push_back(grid_.cleared.Connect([this] { tvVCR.KeepTexts(); }));
  Timer3_ = frame_.app.seams.timers.MakeTimer([this] { StepForward(); });
}

void SessionReplay::Connect(widgets::MenuItem& key, void (SessionReplay::*command)()) {
  key.clicked.ConnectForever([this, command] {
    if (frame_.TakesCommands()) (this->*command)();
  });
}

void SessionReplay::InitSessionCursor() {
  Guarded("InitSessionCursor", [this] {
    frame_.sort.TimeSorted = frame_.sort.TimeDescending = true;
    CurrentRow = 0;
    CurrentRowColor = kNoColourYet;
    for (std::size_t i = 0; i < frame_.app.settings.MonitorStates.size(); ++i) {
      Of(NodeExpanded, i) = false;
      Of(RelatedRow, i) = 0;
      Of(RelatedRowColor, i) = 0;
    }
    if (grid_.DataRows() == 0) return tvVCR.Fill(kSystemState);
    {
      const widgets::PaintingPause pause(grid_);
      ReadColour();
      Enter(1);
      if (IsNotable(1)) NotableHL(1);
    }
    tvVCR1(1);
  });
}

void SessionReplay::SelectedColorChange() {
  const widgets::PaintingPause pause(grid_);
  if (IsThere(CurrentRow)) Mark(CurrentRow);
  for (const int row : RelatedRow)
    if (IsThere(row)) Mark(row);
}

void SessionReplay::LineComes() {
  if (CurrentRow != 0) ++CurrentRow;
  for (int& row : RelatedRow)
    if (row != 0) ++row;
}

void SessionReplay::RowsHaveGone() {
  if (!IsThere(CurrentRow)) CurrentRow = 0;
  for (int& row : RelatedRow)
    if (!IsThere(row)) row = 0;
}

void SessionReplay::ClearShape() {
  NodeExpanded.fill(false);
  NodeOmitted.fill(kNotOmitted);
}

void SessionReplay::SetUsable(bool usable) {
  usable_ = usable;
  tvVCR.enabled = usable;
  for (widgets::MenuItem* key : {&TbarPrev, &TbarBack, &TbarStep, &TbarNxt, &TbarPlay}) key->enabled = usable;
  TbarStp.enabled = false;
}

bool SessionReplay::MayMove() {
  if (!usable_ || frame_.LoadRuns()) return false;
  if (!frame_.sort.TimeSorted) tvVCR.Clear();
  return frame_.sort.TimeSorted;
}

void SessionReplay::Guarded(const char* procedure, const std::function<void()>& command) {
  core::OrLog(frame_.log, std::string("frmMain : ") + procedure, command);
}

int SessionReplay::GridCursor() const {
  return std::clamp<int>(grid_.Row, 1, std::max(grid_.DataRows(), 1));
}

bool SessionReplay::BeginsSession(int row) const {
  return grid_.WholeDescription(row) == kBeginSession;
}

void SessionReplay::StepForward() {
  if (!MayMove()) return;
  const int row = CurrentRow - 1;
  if (row < 1) return;
  Guarded("StepForward", [&] {
    MoveTo(row);
    if (row < grid_.TopRow) grid_.TopRow = row;
  });
}

// The bound is that of the lines of the file. Where some of them have no row, the step past the last row is
// an error.
void SessionReplay::StepBack() {
  if (!MayMove()) return;
  const int row = CurrentRow + 1;
  if (row > frame_.GridLineCount) return;
  Guarded("StepBack", [&] {
    MoveTo(row);
    if (row > grid_.TopRow + kRowsInSight) grid_.TopRow = row - kRowsInSight;
  });
}

// Sessions are looked for from the grid's own cursor, which a click or a search may have put elsewhere.
void SessionReplay::NextSession() {
  if (!MayMove()) return;
  Guarded("NextSession", [this] {
    int row = GridCursor() - 1;
    while (row > 1 && !BeginsSession(row)) --row;
    GiveBack(CurrentRow, CurrentRowColor);
    EnterSession(std::max(row, 1));
  });
}

void SessionReplay::PreviousSession() {
  if (!MayMove()) return;
  Guarded("PreviousSession", [this] {
    int row = GridCursor() + 1;
    while (row <= grid_.DataRows() && !BeginsSession(row)) ++row;
    GiveBack(CurrentRow, CurrentRowColor);
    ReadColour();
    EnterSession(row <= grid_.DataRows() ? row : GridCursor());
  });
}

void SessionReplay::EnterSession(int row) {
  Enter(row);
  grid_.Row = row;
  tvVCR1(row);
  grid_.TopRow = row > kRowsAbove ? row - kRowsAbove : row;
}

// The last row is never looked at.
void SessionReplay::GoToNotable() {
  if (!usable_ || frame_.LoadRuns() || !frame_.sort.TimeSorted) return;
  int row = 1;
  while (row < grid_.DataRows() && !IsNotable(row)) ++row;
  if (row >= grid_.DataRows()) return;
  Guarded("GoToNotable", [&] {
    MoveTo(row);
    grid_.TopRow = row;
  });
}

void SessionReplay::StartReplay() {
  if (!MayMove()) return;
  TbarPlay.picture = std::string("Playing");
  TbarPlay.caption = std::string("Playing");
  TbarStp.enabled = true;
  StepForward();
  Timer3_->Start(kTimer3Ms);
  Playing = true;
}

void SessionReplay::EndReplay() {
  TbarPlay.picture = std::string();
  TbarPlay.caption = std::string("Play");
  Timer3_->Stop();
  TbarStp.enabled = false;
  Playing = false;
}

void SessionReplay::EventList_Click(int row) {
  if (Playing) EndReplay();
  if (frame_.LoadRuns()) return;
  {
    // It leads the cursor to the cell that was found; the click has put it elsewhere.
    const int cursor_row = grid_.Row, col = grid_.Col, row_sel = grid_.RowSel, col_sel = grid_.ColSel;
    const widgets::PaintingPause pause(grid_);
    needs_.ResetCellColor();
    grid_.Select(cursor_row, col, row_sel, col_sel);
  }
  if (!IsThere(row)) return;
  if (frame_.sort.TimeDescending) return Guarded("EventList_Click", [&] { MoveTo(row); });
  tvVCR.Fill(kSystemState);
  const widgets::PaintingPause pause(grid_);
  GiveBack(CurrentRow, 0);
  Enter(row);
}

void SessionReplay::MoveTo(int row) {
  {
    const widgets::PaintingPause pause(grid_);
    GiveBack(CurrentRow, CurrentRowColor);
    for (std::size_t i = 0; i < kReplayMonitors; ++i) {
      GiveBack(RelatedRow[i], static_cast<std::int32_t>(RelatedRowColor[i]));
      RelatedRow[i] = 0;
    }
    ReadColour();
    Enter(row);
    if (IsNotable(row)) NotableHL(row);
  }
  SaveShape();
  tvVCR1(row);
}

// Whatever row is entered, this is the colour that it is given when it is left.
void SessionReplay::ReadColour() {
  CurrentRowColor = static_cast<std::int32_t>(grid_.ColourUnderPointer());
}

void SessionReplay::Enter(int row) {
  if (!IsThere(row)) core::Raise(core::kSubscriptOutOfRange);
  Mark(row);
  CurrentRow = row;
}

void SessionReplay::Mark(int row) {
  grid_.SetRowColor(row, static_cast<widgets::Colour>(frame_.app.settings.SSColor));
}

// Rows that have gone with an earlier load have no colour to be given back.
void SessionReplay::GiveBack(int row, std::int32_t colour) {
  if (IsThere(row)) grid_.SetRowColor(row, colour == kNoColourYet ? 0 : static_cast<widgets::Colour>(colour));
}

// A monitor is named by the last word of its name.
void SessionReplay::NotableHL(int row) {
  const widgets::PaintingPause pause(grid_);
  const std::vector<std::string> words = Words(grid_.WholeDescription(row));
  std::size_t monitor = 0;
  for (const auto& [name, value] : frame_.app.settings.MonitorStates) {
    const std::size_t i = monitor++;
    if (std::ranges::find(words, Words(name).back()) == words.end()) continue;
    const int related = NextRowOf(name, row);
    if (related == 0) continue;
    Of(RelatedRowColor, i) = grid_.CellColor(related, kColDateTime);
    Mark(related);
    Of(RelatedRow, i) = related;
  }
}

// From a row on into the past, within the reach; 0 for none.
int SessionReplay::NextRowOf(const std::string& monitor, int from) const {
  const int step = frame_.sort.TimeDescending ? 1 : -1;
  for (int i = 0, row = from; i <= kReach && IsThere(row); ++i, row += step)
    if (core::EqualNoCase(grid_.Monitor(row), monitor)) return row;
  return 0;
}

void SessionReplay::SaveShape() {
  std::size_t monitor = 0;
  for (const auto& [name, value] : frame_.app.settings.MonitorStates) {
    const std::size_t i = monitor++;
    if (value != "1" || std::ranges::find(NodeOmitted, name) != NodeOmitted.end()) continue;
    if (const widgets::Tree::Branch* node = tvVCR.Find(name)) Of(NodeExpanded, i) = node->expanded;
  }
}

void SessionReplay::tvVCR1(int row) {
  const widgets::WaitPointer wait(frame_.screen);
  const std::string root = kSystemStateAt + grid_.Text(row, kColDateTime);
  std::vector<widgets::Tree::Branch> nodes;
  Guarded("tvVCR1", [&] {
    const SystemState state(grid_, row);
    std::size_t monitor = 0;
    for (const auto& [name, value] : frame_.app.settings.MonitorStates) {
      const std::size_t i = monitor++;
      if (value == "1") AddNode(state, name, i, nodes);
    }
  });
  tvVCR.Fill(root, std::move(nodes));
}

// A monitor without items gets no node. The newest item comes first.
void SessionReplay::AddNode(const SystemState& state, const std::string& name, std::size_t monitor,
                            std::vector<widgets::Tree::Branch>& nodes) {
  std::vector<store::TextId> items;
  Guarded("StateofMonitor", [&] { items = state.StateofMonitor(name); });
  if (items.empty()) {
    Of(NodeOmitted, monitor) = name;
    return;
  }
  const std::size_t count = items.size();
  const auto texts = std::make_shared<const std::vector<store::TextId>>(std::move(items));
  nodes.push_back(
      {name, name, alerts::AdminPicture(name), false, {count, [this, texts](std::size_t place) {
                                                         return std::string(frame_.rows.pool().Text(
                                                             (*texts)[texts->size() - 1 - place]));
                                                       }}});
  nodes.back().expanded = Of(NodeExpanded, monitor);
}

}  // namespace zendrix::admin
