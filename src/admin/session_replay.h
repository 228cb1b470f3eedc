// Session replay: a cursor row of the event grid marks a moment, the tree under the grid shows what was there
// at that moment, and the toolbar moves the cursor like a tape recorder: row by row, from session to session,
// to the last notable event, or by itself every four seconds. Rows number downward and the grid is normally
// newest first, so that a row above is a later event.
//
// The unit owns the tree, the toolbar keys and the cursor; the grid belongs to the frame. All keys but Stop
// rest while a load runs or the grid is not sorted by time, and everything rests while a filter is shown.
// There is room for 31 monitors; a longer list of settings raises run-time error 9, which is logged, and the
// command ends where it stands.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "admin/grid_frame.h"
#include "admin/system_state.h"
#include "widgets/menu.h"
#include "widgets/tree.h"

namespace zendrix::admin {

inline constexpr std::size_t kReplayMonitors = 31;
// Between two steps while the replay runs.
inline constexpr std::int64_t kTimer3Ms = 4000;
// Of a cursor's row whose own colour was never read.
inline constexpr std::int32_t kNoColourYet = -1;

struct ReplayNeeds {
  // Takes the mark of a search off the grid.
  std::function<void()> ResetCellColor = [] {};
};

class SessionReplay {
 public:
  // `frame` outlives the replay.
  explicit SessionReplay(GridFrame& frame, ReplayNeeds needs = {});
  SessionReplay(const SessionReplay&) = delete;
  SessionReplay& operator=(const SessionReplay&) = delete;

  // The grid was loaded anew: it counts as sorted by time, and the cursor goes to row 1.
  void InitSessionCursor();
  // Paints the marked rows in the colour of the settings.
  void SelectedColorChange();
  // A line is about to be added on top.
  void LineComes();
  // The file was read again because it had shrunk: what stood on rows that are no more stands on none.
  void RowsHaveGone();
  // Forgets which monitors of the tree were open, and which had no node.
  void ClearShape();
  // Off while a filter is shown.
  void SetUsable(bool usable);

  void PreviousSession();
  void NextSession();
  void StepBack();
  void StepForward();
  void GoToNotable();
  void StartReplay();
  void EndReplay();
  // A click on a row of the grid; 0: on none.
  void EventList_Click(int row);
  // Builds the tree for a row.
  void tvVCR1(int row);
  // Marks the events of the monitors that the description of a row names.
  void NotableHL(int row);

  int CurrentRow = 0;                           // 0: none
  std::int32_t CurrentRowColor = kNoColourYet;  // to be given back to it
  // By the index of the monitor in the settings: a row that NotableHL marked, 0 for none, and its colour.
  std::array<int, kReplayMonitors> RelatedRow{};
  std::array<widgets::Colour, kReplayMonitors> RelatedRowColor{};
  // Whether the monitor's node was open, and its key where it has no node; else one blank.
  std::array<bool, kReplayMonitors> NodeExpanded{};
  std::array<std::string, kReplayMonitors> NodeOmitted;
  bool Playing = false;

  widgets::Tree tvVCR{"tvVCR"};
  // Toolbar buttons, by their keys; their captions are their tips.
  widgets::MenuItem TbarPlay{"Play", "Play"};
  widgets::MenuItem TbarStp{"Stp", "Stop"};
  widgets::MenuItem TbarPrev{"Prev", "Previous Session"};
  widgets::MenuItem TbarBack{"Back", "Step Back"};
  widgets::MenuItem TbarStep{"Step", "Step"};
  widgets::MenuItem TbarNxt{"Nxt", "Next Session"};
  widgets::MenuItem TbarNotable{"Notable", "Go To Last Notable Event"};

 private:
  void Connect(widgets::MenuItem& key, void (SessionReplay::*command)());
  // Runs a command that has an error handler of this name.
  void Guarded(const char* procedure, const std::function<void()>& command);
  bool MayMove();
  bool IsThere(int row) const { return row >= 1 && row <= grid_.DataRows(); }
  bool IsNotable(int row) const { return grid_.Code(row) == "N"; }
  bool BeginsSession(int row) const;
  // The row of the grid's own cursor; 1 where it has none.
  int GridCursor() const;
  // Leaves the cursor's row for another one.
  void MoveTo(int row);
  void EnterSession(int row);
  // Raises 9 where the row is not there.
  void Enter(int row);
  void ReadColour();
  void Mark(int row);
  void GiveBack(int row, std::int32_t colour);
  int NextRowOf(const std::string& monitor, int from) const;
  void SaveShape();
  void AddNode(const SystemState& state, const std::string& name, std::size_t monitor,
               std::vector<widgets::Tree::Branch>& nodes);

  GridFrame& frame_;
  EventGrid& grid_;
  ReplayNeeds needs_;
  bool usable_ = true;
  std::unique_ptr<platform::Timer> Timer3_;
  std::vector<widgets::Connection> links_;
};

}  // namespace zendrix::admin
