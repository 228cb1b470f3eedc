// The commands on the monitoring file as a whole: another file is opened for viewing, rows of the grid are
// saved to a file of their own, the Agent's own file is deleted while the Agent rests, and the Agent is
// stopped and started by the toolbar.
//
// A dialog, a question and a wait serve the event loop. Meanwhile the window may go, rows may go, and the
// same command may be asked for once more, which does nothing.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "admin/grid_frame.h"
#include "control/agent_control.h"
#include "widgets/menu.h"

namespace zendrix::admin {

// What the commands set off in the window.
struct FileNeeds {
  std::function<void()> ResetClick;
  std::function<void()> InitSessionCursor = [] {};
};

class FileCommands {
 public:
  // `frame` outlives the commands.
  FileCommands(GridFrame& frame, FileNeeds needs);
  FileCommands(const FileCommands&) = delete;
  FileCommands& operator=(const FileCommands&) = delete;

  // Asks for a file and loads the grid from it. From then on the periodic check follows that file.
  void MnFOpen_Click();
  // Asks for a name and saves the selected rows, or all of them where one cell is selected.
  void MnFSaveAs_Click();
  // Deletes the Agent's file, whichever file is open. Works also while a load runs.
  void MnFDelete_Click();
  void TbarDisable_Click();

  // Writes these rows, whichever of the two is the higher number, oldest first: time key, host, monitor with
  // the blanks in front, change code and whole description, with commas between. Rows that are not there are
  // passed over. The file is replaced as a whole or, when that raises, not at all. Returns the number of its
  // lines.
  std::int32_t SaveRows(int first, int last, const std::string& name);

  // The window goes. An Agent that Delete has stopped and not started yet is started.
  void Form_Unload();
  // Whether the panel Msg tells of a Delete at present.
  bool Deleting() const { return deleting_; }

  // A file dialog of Open stands open, or what it chose is being loaded.
  bool OpenBusy = false;

  widgets::MenuItem MnFOpen{"MnFOpen", "&Open..."};
  widgets::MenuItem MnFSaveAs{"MnFSaveAs", "Sav&e As..."};
  widgets::MenuItem MnFDelete{"MnFDelete", "&Delete..."};
  widgets::MenuItem TbarOpen{"Open", "Open File"};
  widgets::MenuItem TbarSave{"Save", "Save File"};
  widgets::MenuItem TbarDisable{"Disable", "Disable Zendrix Monitoring"};

 private:
  void SaveSelection(const std::string& name);
  bool AskWhetherToDelete();
  void DeleteWhileTheAgentRests();
  void Tell(const std::string& text);
  bool Wait(std::int64_t milliseconds);

  GridFrame& frame_;
  FileNeeds needs_;
  control::AgentControl agent_;
  bool saving_ = false;
  bool deleting_ = false;
  bool agent_rests_ = false;
};

}  // namespace zendrix::admin
