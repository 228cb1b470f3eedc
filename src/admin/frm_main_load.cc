// Loading of the event grid: the whole file, what was added to it, and all of it again when it has shrunk.
#include <limits>
#include <new>

#include "admin/frm_main.h"
#include "core/fit_text.h"
#include "core/guards.h"
#include "core/letter_case.h"
#include "core/number_rules.h"
#include "core/path_text.h"
#include "core/splash.h"
#include "core/text_rules.h"

namespace zendrix::admin {

namespace {

constexpr std::int32_t kLinesPerServing = 50;
constexpr char kNoDataFound[] =
    "No Zendrix Data Found.  Please ensure that the Zendrix Product is properly installed.";
constexpr char kFormat[] = ">EventID |<Date/Time |<Hostname |<Monitor |>Change | | | |<Description";
constexpr int kFirstDescriptionWidth = 3945;
constexpr int kFewRows = 3;

// A notable row of one of these makes the icon in the notification area flash while the window is hidden.
bool IsFlashing(std::string_view monitor) {
  for (const char* name : {"Monitor Analysis Agent #1", "Monitoring Agent", "Monitor Analysis Agent #2",
                           "Test Monitoring Agent"})
    if (core::EqualNoCase(monitor, name)) return true;
  return false;
}

std::string Records(std::int32_t count) {
  return std::to_string(count) + (count == 1 ? " record" : " records");
}

}  // namespace

// Hourglass on, painting off and the grid out of use, for as long as a load runs.
class frmMain::LoadScope {
 public:
  explicit LoadScope(frmMain& form) : form_(form) {
    form_.parts_.screen.MousePointer = widgets::kPointerHourglass;
    form_.EventList.SetRedraw(false);
    form_.EventList.enabled = false;
  }
  ~LoadScope() {
    form_.DynamicPictureBox.Show(0);
    form_.EventList.SetRedraw(true);
    form_.EventList.enabled = true;
    form_.parts_.screen.MousePointer = widgets::kPointerDefault;
  }
  LoadScope(const LoadScope&) = delete;
  LoadScope& operator=(const LoadScope&) = delete;

 private:
  frmMain& form_;
};

void frmMain::DisplayData(const std::string& status_text) {
  LoadScope scope(*this);
  core::OrLog(parts_.log, "frmMain : DisplayData", [&] {
    for (auto* list : {&GridMonitorList, &GridHostList, &GridChangeList, &GridDescList}) list->Clear();
    GridFileSize = 0;
    GridLineCount = 0;
    if (!FileIsThere()) return FileMissing();
    Load load(app_, DateOrder);
    try {
      ReadWholeFile(load, status_text);
    } catch (const core::RunTimeError& error) {
      if (error.number != core::kOutOfMemory) throw;
      GridIsFull();
    } catch (const std::bad_alloc&) {
      GridIsFull();
    }
    GridLineCount = load.lines;
    RegisterMonitors(load);
    ShowRecordCount();
  });
}

void frmMain::ReadWholeFile(Load& load, const std::string& status_text) {
  GridFileSize = core::ValueOrRaise(app_.seams.files.Size(GridFilePath));
  load.bytes_total = GridFileSize;
  GridLines lines(app_.seams.files, GridFilePath);
  ShowPath();
  std::string line;
  while (lines.Next(line)) {
    ++load.lines;
    TakeLine(line, load);
    if (load.lines % kLinesPerServing != 0) continue;
    RecCnt.text = status_text.empty() ? "Loading... " + std::to_string(load.lines) + " records" : status_text;
    ServeMessages(load);
  }
}

void frmMain::TakeLine(const std::string& raw, Load& load) {
  load.bytes += static_cast<std::int64_t>(raw.size()) + 2;
  const std::string clean = core::CleanLine(raw);
  const auto fields = SplitGridLine(core::Trim(clean));
  if (!fields) return;
  const std::string monitor = core::ProperCase(fields->monitor);
  GridMonitorList.SetItemData(fields->monitor, monitor);
  GridHostList.SetItemData(fields->host, fields->host);
  GridChangeList.SetItemData(fields->code, fields->code);
  GridDescList.SetItemData(fields->description, fields->description);
  const auto [displayed, is_new] = load.displayed.try_emplace(monitor, true);
  if (is_new) displayed->second = IsMonitorDisplayed(monitor, load);
  if (!displayed->second) return;
  const std::string fitted =
      core::FitTextToWidth(fields->description, EventList.column(kColDescription).width, parts_.metrics.twips,
                           parts_.metrics.pixels, parts_.metrics.twips_per_pixel);
  std::string time;
  TakeTime(fields->time, load, time);
  EventList.InsertTop(
      {load.lines, time, fields->host, monitor, fields->code, fields->description, load.time_key, fitted});
}

void frmMain::TakeTime(std::string_view field, Load& load, std::string& time) {
  const auto& locale = app_.seams.locale.Current();
  const double value = core::IsNumeric(field, locale) ? core::CDbl(field, locale) : 0;
  const bool fits = value >= std::numeric_limits<std::int32_t>::min() - 0.5 &&
                    value < std::numeric_limits<std::int32_t>::max() + 0.5;
  // A number outside the range of times is shown unchanged, like a text that is no number.
  if (!core::IsNumeric(field, locale) || !fits) {
    time = field;
    return;
  }
  load.time_key = core::RoundToLong(value);
  time = load.moments.Format(load.time_key);
}

bool frmMain::IsMonitorDisplayed(const std::string& monitor, Load& load) {
  for (const auto& [name, value] : app_.settings.MonitorStates)
    if (core::EqualNoCase(name, monitor)) return value != "0";
  load.unknown_monitors.push_back(monitor);
  return true;
}

// Once for a whole load: each of thousands of names would have the settings read and verified twice.
void frmMain::RegisterMonitors(const Load& load) {
  if (load.unknown_monitors.empty()) return;
  parts_.reg_ini.RegisterMonitors(load.unknown_monitors);
  parts_.reg_ini.ReadRegInfo();
}

void frmMain::ServeMessages(const Load& load) {
  const std::int64_t percent = load.bytes_total > 0 ? load.bytes * 100 / load.bytes_total : 100;
  DynamicPictureBox.Show(percent);
  core::SetSplashProgress(app_.forms, DynamicPictureBox.value);
  app_.seams.loop.ProcessMessages();
}

void frmMain::RedisplayData(bool filter_active) {
  (void)filter_active;  // the filtered view brings its own rows up to date
  bool reload = false;
  {
    LoadScope scope(*this);
    core::OrLog(parts_.log, "frmMain : RedisplayData", [&] {
      if (!FileIsThere()) return FileMissing();
      const std::int64_t new_size = core::ValueOrRaise(app_.seams.files.Size(GridFilePath));
      reload = new_size < GridFileSize;
      if (reload) return;
      Load load(app_, DateOrder);
      load.lines = GridLineCount;
      try {
        if (new_size > GridFileSize) ReadAddedLines(load, new_size);
      } catch (const core::RunTimeError& error) {
        if (error.number != core::kOutOfMemory) throw;
        return GridIsFull();
      } catch (const std::bad_alloc&) {
        return GridIsFull();
      }
      GridFileSize = new_size;
      GridLineCount = load.lines;
      RegisterMonitors(load);
      ShowPath();
      if (sort.SortColumn > 0) {
        SortGrid(EventList, sort.SortColumn);
        SortGrid(EventList, sort.SortColumn);
      }
      if (BackgroundUpdate) ShowRecordCount();
    });
  }
  if (!reload) return;
  Reload();
  BackgroundUpdate = false;
}

void frmMain::ReadAddedLines(Load& load, std::int64_t new_size) {
  load.bytes_total = new_size - GridFileSize;
  GridLines lines(app_.seams.files, GridFilePath);
  if (lines.Skip(GridLineCount) < GridLineCount) return;
  std::string line;
  while (lines.Next(line)) {
    ++load.lines;
    TakeLine(line, load);
    NoteArrival();
    if (load.lines % kLinesPerServing == 0) ServeMessages(load);
  }
}

void frmMain::NoteArrival() {
  if (EventList.Rows() < 2 || visible) return;
  TrayFlashPhase = true;
  NotablePending = true;
  if (IsFlashing(EventList.Monitor(1)) && !Timer2_->Running()) Timer2_->Start(1000);
}

void frmMain::Reload() {
  RecCnt.text = std::string("file shortened, reloading");
  const bool first_fill = EventList.Rows() < kFewRows;
  const std::vector<int> widths = EventList.ColWidths();
  const int left_col = SavedLeftCol;
  HeadAndEmptyGrid();
  if (first_fill) {
    EventList.SetColWidth(kColDescription, kFirstDescriptionWidth);
  } else {
    EventList.SetColWidths(widths);
    EventList.LeftCol = left_col;
  }
  DisplayData("Event View is full, Reloading...");
  if (first_fill) AutoSizeColumns();
  ApplyColumnSettings();
  ClearHeaderPictures();
  ShowSortArrow(EventList, kColDateTime, false);
}

void frmMain::HeadAndEmptyGrid() {
  EventList.Clear();
  EventList.SetFormatString(kFormat);
}

void frmMain::UpgradeGrid() {
  if (UpdateBusy || RefreshBusy) return;
  Timer1_->Stop();
  UpdateBusy = true;
  RedisplayData(false);
  ApplyColumnSettings();
  if (SavedLeftCol > 0) EventList.LeftCol = SavedLeftCol;
  UpdateBusy = false;
  Timer1_->Start(kTimer1Ms);
}

void frmMain::ResetClick() {
  if (UpdateBusy || RefreshBusy) return;
  RefreshBusy = true;
  Timer1_->Stop();
  parts_.screen.MousePointer = widgets::kPointerHourglass;
  const bool first_fill = EventList.Rows() < kFewRows;
  const std::vector<int> widths = EventList.ColWidths();
  HeadAndEmptyGrid();
  if (first_fill) EventList.SetColWidth(kColDescription, kFirstDescriptionWidth);
  DisplayData("");
  if (first_fill) {
    AutoSizeColumns();
  } else {
    EventList.SetColWidths(widths);
    EventList.LeftCol = SavedLeftCol;
  }
  ApplyColumnSettings();
  ClearHeaderPictures();
  ShowSortArrow(EventList, kColDateTime, false);
  parts_.screen.MousePointer = widgets::kPointerDefault;
  RefreshBusy = false;
  Timer1_->Start(kTimer1Ms);
}

bool frmMain::FileIsThere() {
  return app_.seams.files.Exists(GridFilePath);
}

void frmMain::FileMissing() {
  const std::string text =
      GridFilePath == DefaultPath() ? kNoDataFound : "File " + core::PathText(GridFilePath) + " not found.";
  app_.seams.message_boxes.Show({app_.ProductName, text, platform::BoxIcon::kStop});
  path_shown_ = false;
  Msg.text = std::string("No Zendrix Data Found");
}

void frmMain::GridIsFull() {
  const std::string text = "The Event View grid is full. The size of the kvl file: \r\n" +
                           core::PathText(GridFilePath) + "\r\nneeds to be reduced.";
  app_.seams.message_boxes.Show({app_.ProductName, text, platform::BoxIcon::kInformation});
}

void frmMain::ShowRecordCount() {
  RecCnt.text = Records(GridLineCount);
}

}  // namespace zendrix::admin
