#include "admin/frm_log.h"

#include <algorithm>
#include <utility>

#include "core/fit_text.h"
#include "core/guards.h"
#include "core/number_rules.h"
#include "core/path_text.h"
#include "core/text_rules.h"
#include "core/window_helpers.h"
#include "widgets/wait_pointer.h"

namespace zendrix::admin {

namespace {

constexpr char kFilter[] = "log Files (*.kvl)|*EventLog.kvl";
constexpr char kNoLog[] = "Unable to display log or log file does not exist.";
// The grid without a log, and what a page is measured in.
constexpr int kBlankCols = 20;
constexpr int kBlankRows = 100;
// Twips.
constexpr int kDateWidth = 1980;
constexpr int kHostWidth = 900;
constexpr int kTextWidth = 8000;
constexpr int kHeaderHeight = 240;
constexpr int kRowHeightMin = 720;
constexpr int kCellMargin = 300;
constexpr int kPathMargin = 300;
// A field that the record does not have.
constexpr char kNull[] = " ";

// The table's first column, ID, is not shown.
constexpr std::size_t FieldOf(int col) {
  return static_cast<std::size_t>(col) + 1;
}

std::string CellOf(const store::EventLogTable& table, std::size_t record, int col) {
  if (record >= table.RowCount()) return {};
  if (table.IsNull(record, FieldOf(col))) return kNull;
  return std::string(core::Trim(table.Text(record, FieldOf(col))));
}

int ColsOf(const store::EventLogTable& table) {
  return static_cast<int>(table.ColumnCount()) - 1;
}

}  // namespace

frmLog::frmLog(LogNeeds needs) : Form(needs.state.forms, "frmLog"), needs_(std::move(needs)) {
  title = "Error Logs";
  ErrLog.HeaderHeight = kHeaderHeight;
  ErrLog.RowHeightMin = kRowHeightMin;
  FOpen.clicked.ConnectForever([this] { OpenLog(); });
  VScroll1.value.changed.ConnectForever([this] { VScroll1_Change(); });
  ErrLog.RowsInSight.changed.ConnectForever([this] { Form_Resize(); });
  SBar1.width.changed.ConnectForever([this] { ShowPath(); });
  VScroll1.enabled = false;
  ResetLogGrid();
}

void frmLog::OnLoad() {
  core::CentreForm(*this);
}

void frmLog::OnUnload() {
  CloseLog();
}

void frmLog::ResetLogGrid() {
  ErrLog.Show(kBlankCols, kBlankRows);
  ErrLog.ResetColWidths();
  ErrLog.SetColWidth(0, kDateWidth);
  ErrLog.SetColWidth(1, kHostWidth);
  ErrLog.SetColWidth(2, kTextWidth);
  ErrLog.CentreHeading(0);
  ErrLog.CentreHeading(1);
}

void frmLog::CloseLog() {
  LogLoaded = false;
  LogRecords.reset();
  LogFirstRow = 0;
  shown_path_.clear();
  ShowPath();
  VScroll1.enabled = false;
  ResetLogGrid();
}

void frmLog::OpenLog() {
  if (!enabled) return;
  const std::string chosen =
      needs_.state.seams.file_dialogs.Choose({"Open", needs_.state.ProgramFolder, kFilter, "", false});
  // The program may have been ended while the dialog stood open.
  if (chosen.empty() || !loaded()) return;
  const widgets::WaitPointer wait(needs_.screen);
  LogPath = chosen;
  shown_path_ = LogPath;
  ShowPath();
  LoadLog(LogPath);
}

void frmLog::ShowPath() {
  const std::string path = core::PathText(shown_path_);
  const int pixels = (SBar1.width - kPathMargin) / needs_.metrics.twips_per_pixel;
  SBar1.text = path.empty() ? path : core::CompactPath(path, pixels, needs_.metrics.pixels);
  SBar1.tip = path;
}

void frmLog::LoadLog(const std::string& path) {
  store::CLog log(needs_.state);
  log.InitClass(path);
  if (!log.table()) {
    needs_.state.seams.message_boxes.Show(
        {needs_.state.ProductName, kNoLog, platform::BoxIcon::kInformation});
    if (loaded()) CloseLog();
    return;
  }
  LogLoaded = false;
  LogFirstRow = 0;
  LogRecords = log.table();
  VScroll1.maximum = VScroll1.minimum.Get();
  MeasurePage();
  FillGrid(LogFirstRow, LogPageRows);
  FitColumns();
}

void frmLog::MeasurePage() {
  if (!LogRecords) return;
  core::OrLog(needs_.log, "frmLog : MeasurePage", [&] {
    LogPageRows = std::clamp(ErrLog.RowsInSight.Get(), 0, kBlankRows - 1);
    VScroll1.maximum = core::RoundToInt(static_cast<double>(LogRecords->RowCount()));
    VScroll1.minimum = 1;
    VScroll1.small_step = 1;
    VScroll1.large_step = std::max(LogPageRows - 1, 1);
  });
}

void frmLog::FillGrid(std::int32_t first, std::int32_t count) {
  if (!LogRecords) return;
  LogFirstRow = std::max(first, 1);
  const auto above = static_cast<std::size_t>(LogFirstRow) - 1;
  const std::size_t remaining = LogRecords->RowCount() - std::min(above, LogRecords->RowCount());
  const auto rows = std::clamp<std::size_t>(static_cast<std::size_t>(std::max(count, 0)) + 1, 0, remaining);
  // The grid needs a row under its fixed header.
  ErrLog.Show(ColsOf(*LogRecords), 1 + std::max(static_cast<int>(rows), 1),
              [table = LogRecords, above](int row, int col) {
                if (row == 0) return table->ColumnName(FieldOf(col));
                return CellOf(*table, above + static_cast<std::size_t>(row) - 1, col);
              });
  LogLoaded = true;
  VScroll1.enabled = true;
}

// The empty grid keeps its widest place for a short number, and a narrow one for the description behind it: a
// log's columns are as wide as its first page asks for.
void frmLog::FitColumns() {
  const int columns = std::min(ErrLog.Cols(), kBlankCols);
  for (int col = 0; col < columns; ++col) {
    int widest = col == 0 ? kDateWidth : col == 1 ? kHostWidth : widgets::PageGrid::kDefaultColWidth;
    for (int row = 0; row < ErrLog.Rows() && widest < kTextWidth; ++row)
      widest = std::max(widest, needs_.metrics.twips(ErrLog.Text(row, col)) + kCellMargin);
    ErrLog.SetColWidth(col, std::min(widest, kTextWidth));
  }
}

void frmLog::VScroll1_Change() {
  if (!LogLoaded) return;
  FillGrid(VScroll1.value, LogPageRows);
}

void frmLog::Form_Resize() {
  if (!LogLoaded) return;
  MeasurePage();
  FillGrid(LogFirstRow, LogPageRows);
}

}  // namespace zendrix::admin
