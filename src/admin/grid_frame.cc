#include "admin/grid_frame.h"

#include <utility>

#include "core/splash.h"
#include "platform/files.h"
#include "widgets/wait_pointer.h"

namespace zendrix::admin {

namespace {

constexpr char kMonitoringFile[] = "KorvessaMonitoring.kvl";
// Twips that a heading keeps clear of its cell's edge.
constexpr int kHeadingMargin = 300;

std::string Records(std::int32_t count) {
  return std::to_string(count) + (count == 1 ? " record" : " records");
}

}  // namespace

GridFrame::GridFrame(AdminParts parts, widgets::Form& the_window)
    : app(parts.state),
      log(parts.log),
      reg_ini(parts.reg_ini),
      screen(parts.screen),
      metrics(std::move(parts.metrics)),
      window(the_window),
      GridFilePath(std::move(parts.first_file)),
      rows(parts.state.seams.family, metrics, parts.grid_capacity),
      EventList("EventList", rows) {}

std::string GridFrame::AgentFilePath() const {
  return platform::JoinPath(app.ProgramFolder, kMonitoringFile);
}

void GridFrame::ShowSortArrow(EventGrid& grid, int column, bool up) {
  grid.SetHeading(kColDateTime, "Date/Time", widgets::Align::kLeft);
  grid.SetHeading(kColHostname, "Hostname", widgets::Align::kLeft);
  grid.SetHeading(kColMonitor, "Monitor", widgets::Align::kLeft);
  grid.SetHeading(kColChange, "Change", widgets::Align::kLeft);
  grid.SetHeading(kColDescription, "Description", widgets::Align::kLeft);
  std::string text = grid.column(column).heading;
  const int room = grid.column(column).width - kHeadingMargin;
  const std::size_t length = text.size();
  while (!text.empty() && metrics.twips(text) > room) text.resize(text.size() / 2);
  if (text.size() < length) text += "...";
  grid.SetHeading(column, text, widgets::Align::kLeft);
  for (int i = 0; i < grid.Cols(); ++i) {
    using widgets::SortArrow;
    grid.SetArrow(i, i != column ? SortArrow::kNone : up ? SortArrow::kUp : SortArrow::kDown);
  }
}

void GridFrame::ClearHeaderPictures() {
  for (int i = 0; i < EventList.Cols(); ++i) EventList.SetArrow(i, widgets::SortArrow::kNone);
}

void GridFrame::HeaderClick(EventGrid& grid, int column) {
  if (column < 1 || LoadRuns()) return;
  HeaderColumn = column;
  const widgets::WaitPointer wait(screen);
  SortGrid(grid, GridSort::KeyOfHeader(column));
}

void GridFrame::SortGrid(EventGrid& grid, int column) {
  const bool up = sort.Sort(grid, column);
  ShowSortArrow(grid, HeaderColumn, up);
  if (grid.Rows() >= 2) grid.Select(1, grid.Col, 1, grid.Col);
}

// After lines have come; the direction stays.
void GridFrame::SortAgain() {
  ShowSortArrow(EventList, HeaderColumn, sort.SortAgain(EventList));
  if (EventList.Rows() >= 2) EventList.Select(1, EventList.Col, 1, EventList.Col);
}

void GridFrame::ServeMessages(std::int64_t done, std::int64_t of) {
  DynamicPictureBox.Show(of > 0 ? done * 100 / of : 100);
  core::SetSplashProgress(app.forms, DynamicPictureBox.value);
  app.seams.loop.ProcessMessages();
}

void GridFrame::ShowRecordCount() {
  RecCnt.text = Records(GridLineCount);
}

GridsAtWork::GridsAtWork(GridFrame& frame, std::vector<EventGrid*> grids)
    : frame_(frame), grids_(std::move(grids)) {
  frame_.screen.MousePointer = widgets::kPointerHourglass;
  for (EventGrid* grid : grids_) {
    grid->SetRedraw(false);
    grid->enabled = false;
  }
}

GridsAtWork::~GridsAtWork() {
  frame_.DynamicPictureBox.Show(0);
  for (EventGrid* grid : grids_) {
    grid->SetRedraw(true);
    grid->enabled = true;
  }
  frame_.screen.MousePointer = widgets::kPointerDefault;
}

}  // namespace zendrix::admin
