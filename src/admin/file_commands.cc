#include "admin/file_commands.h"

#include <algorithm>
#include <string_view>
#include <utility>

#include "core/guards.h"
#include "core/path_text.h"
#include "widgets/busy_mark.h"
#include "widgets/wait_pointer.h"

namespace zendrix::admin {

namespace {

constexpr char kOpenFilter[] = "kvl Files (*.kvl)|*.kvl";
constexpr char kSaveFilter[] = "All Files (*.*)|*.*|kvl Files (*.kvl)|*.kvl";
constexpr int kFilterIndex = 2;

constexpr char kDeleteQuestion[] =
    "This will delete your .kvl Monitoring File.\r\nAre you sure You want to do it?";
constexpr char kDisable[] = "Disable Zendrix Monitoring";
constexpr char kEnable[] = "Enable Zendrix Monitoring";

constexpr std::int64_t kBehindStopMs = 1000;
constexpr std::int64_t kRefusalShownMs = 1000;
constexpr std::int64_t kBehindStartMs = 500;

std::string FolderOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  return slash == std::string::npos ? std::string() : path.substr(0, std::max<std::size_t>(slash, 1));
}

std::size_t LineLength(const EventRows& rows, std::uint32_t row) {
  constexpr std::size_t kLongestKey = 11;
  constexpr std::size_t kCommasAndEnd = 6;
  return kLongestKey + rows.Host(row).size() + kPictureRoom.size() + rows.Monitor(row).size() +
         rows.Code(row).size() + rows.Whole(row).size() + kCommasAndEnd;
}

void AppendLine(std::string& bytes, const EventRows& rows, std::uint32_t row) {
  bytes += std::to_string(rows.row(row).time_key);
  bytes.append(",").append(rows.Host(row)).append(",").append(kPictureRoom).append(rows.Monitor(row));
  bytes.append(",").append(rows.Code(row)).append(",").append(rows.Whole(row)).append("\r\n");
}

}  // namespace

FileCommands::FileCommands(GridFrame& frame, FileNeeds needs)
    : frame_(frame), needs_(std::move(needs)), agent_(frame.app, frame.screen) {
  MnFOpen.shortcut = "Ctrl+O";
  MnFSaveAs.shortcut = "Ctrl+S";
  TbarDisable.checkable = true;
  TbarDisable.begins_group = true;
  for (widgets::MenuItem* item : {&MnFOpen, &TbarOpen})
    item->clicked.ConnectForever([this] { MnFOpen_Click(); });
  for (widgets::MenuItem* item : {&MnFSaveAs, &TbarSave})
    item->clicked.ConnectForever([this] { MnFSaveAs_Click(); });
  MnFDelete.clicked.ConnectForever([this] { MnFDelete_Click(); });
  TbarDisable.clicked.ConnectForever([this] { TbarDisable_Click(); });
}

void FileCommands::MnFOpen_Click() {
  if (!frame_.TakesCommands() || OpenBusy) return;
  const widgets::BusyMark busy(OpenBusy);
  frame_.Timer1->Stop();
  const std::string chosen = frame_.app.seams.file_dialogs.Choose(
      {"Open", FolderOf(frame_.GridFilePath), kOpenFilter, "", false, kFilterIndex});
  // The program may have been ended while the dialog stood open.
  if (!frame_.window.loaded()) return;
  if (!chosen.empty()) {
    frame_.GridFilePath = chosen;
    needs_.ResetClick();
  }
  frame_.Timer1->Start(kTimer1Ms);
}

void FileCommands::MnFSaveAs_Click() {
  if (!frame_.TakesCommands() || saving_) return;
  const widgets::BusyMark busy(saving_);
  frame_.Timer1->Stop();
  const std::string chosen = frame_.app.seams.file_dialogs.Choose(
      {"Save As", FolderOf(frame_.GridFilePath), kSaveFilter, "", true, kFilterIndex});
  if (!frame_.window.loaded()) return;
  if (!chosen.empty()) SaveSelection(chosen);
  if (frame_.window.loaded()) frame_.Timer1->Start(kTimer1Ms);
}

void FileCommands::SaveSelection(const std::string& name) {
  const EventGrid& grid = frame_.EventList;
  const bool all = grid.OneCellSelected();
  const bool saved = core::OrLog(frame_.log, "frmMain : MnFSaveAs_Click", [&] {
    const widgets::WaitPointer wait(frame_.screen);
    SaveRows(all ? 1 : grid.Row.Get(), all ? grid.DataRows() : grid.RowSel.Get(), name);
  });
  if (saved) return;
  frame_.app.seams.message_boxes.Show({frame_.app.ProductName,
                                       "Unable to write the file " + core::PathText(name) + ".",
                                       platform::BoxIcon::kExclamation});
}

std::int32_t FileCommands::SaveRows(int first, int last, const std::string& name) {
  const EventGrid& grid = frame_.EventList;
  const int low = std::max(std::min(first, last), 1);
  const int high = std::min(std::max(first, last), grid.DataRows());
  std::size_t length = 0;
  for (int row = low; row <= high; ++row) length += LineLength(grid.rows(), grid.RowNumber(row));
  // Made at once: a text that grows needs the memory of several.
  std::string bytes;
  bytes.reserve(length);
  for (int row = high; row >= low; --row) AppendLine(bytes, grid.rows(), grid.RowNumber(row));
  core::ValueOrRaise(frame_.app.seams.files.WriteAll(name, bytes));
  return std::max(high - low + 1, 0);
}

void FileCommands::MnFDelete_Click() {
  if (!frame_.window.enabled || deleting_) return;
  const widgets::BusyMark busy(deleting_);
  // Taken only behind a Yes; without one the panel is emptied.
  std::string before;
  if (AskWhetherToDelete()) {
    before = frame_.Msg.text;
    DeleteWhileTheAgentRests();
  }
  if (frame_.window.loaded()) frame_.Msg.text = before;
}

bool FileCommands::AskWhetherToDelete() {
  const platform::BoxAnswer answer =
      frame_.app.seams.message_boxes.Show({frame_.app.ProductName, kDeleteQuestion,
                                           platform::BoxIcon::kExclamation, platform::BoxButtons::kYesNo});
  return answer == platform::BoxAnswer::kYes && frame_.window.loaded();
}

// The outcome of neither command is looked at.
void FileCommands::DeleteWhileTheAgentRests() {
  Tell("Stopping the Korvessa Service...");
  agent_rests_ = true;
  agent_.StopAgent(true);
  if (!Wait(kBehindStopMs)) return;
  if (!frame_.app.seams.files.Remove(frame_.AgentFilePath())) {
    Tell("Unable to delete the Monitoring file. Please try again later.");
    if (!Wait(kRefusalShownMs)) return;
  }
  Tell("Starting the Korvessa Service...");
  agent_rests_ = false;
  agent_.StartAgent(true);
  if (!Wait(kBehindStartMs)) return;
  needs_.InitSessionCursor();
}

void FileCommands::Form_Unload() {
  if (std::exchange(agent_rests_, false)) agent_.StartAgent(true);
}

// What follows may keep the event loop waiting.
void FileCommands::Tell(const std::string& text) {
  frame_.Msg.text = text;
  frame_.window.repaint.Raise();
}

// Returns false when the window has gone meanwhile.
bool FileCommands::Wait(std::int64_t milliseconds) {
  platform::Seams& seams = frame_.app.seams;
  const std::int64_t end = seams.clock.MonotonicMs() + milliseconds;
  while (frame_.window.loaded()) {
    const std::int64_t left = end - seams.clock.MonotonicMs();
    if (left <= 0) return true;
    seams.loop.WaitForMessages(left);
  }
  return false;
}

void FileCommands::TbarDisable_Click() {
  if (!frame_.TakesCommands()) return;
  const bool pressed = !TbarDisable.checked;
  TbarDisable.checked = pressed;
  TbarDisable.caption = std::string(pressed ? kEnable : kDisable);
  if (pressed)
    agent_.StopAgent(true);
  else
    agent_.StartAgent(true);
}

}  // namespace zendrix::admin
