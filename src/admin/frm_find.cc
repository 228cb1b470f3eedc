#include "admin/frm_find.h"

#include "admin/row_search.h"
#include "widgets/wait_pointer.h"

namespace zendrix::admin {
namespace {

// As for the filter's pattern: a search takes as long as it is.
constexpr std::size_t kLongestText = 1000;
constexpr widgets::Colour kGrey = 0xC0C0C0;

}  // namespace

frmFind::frmFind(GridFrame& frame) : Form(frame.app.forms, "frmFind"), frame_(frame) {
  title = "Find";
  txtFind.most = kLongestText;
  Find.clicked.ConnectForever([this] { Find_Click(); });
}

// The next time it opens, and for searches without it, everything is as it was.
bool frmFind::QueryUnload(widgets::UnloadCause cause) {
  frame_.screen.MousePointer = widgets::kPointerDefault;
  if (cause != widgets::UnloadCause::kCloseBox) return true;
  visible = false;
  return false;
}

void frmFind::BeginAnew() {
  FindRow = FindCol = 1;
  FindPos = 1;
}

void frmFind::ResetCellColor() {
  EventGrid& grid = frame_.EventList;
  if (FindRow < 2 && FindCol < 2) return;
  if (FindRow >= grid.Rows() || FindCol >= grid.Cols()) return;  // rows have gone meanwhile
  grid.Row = FindRow;
  grid.Col = FindCol;
  grid.SetCellColor(FindRow, FindCol, FindCellColor);
}

void frmFind::IncrementFindRow() {
  if (FindRow > 1) ++FindRow;
}

void frmFind::Find_Click() {
  // A poll may be bringing rows that the view does not know yet.
  if (frame_.LoadRuns()) return;
  const std::string wanted = txtFind.text;
  if (wanted.empty()) return frame_.screen.beep.Raise();
  ResetCellColor();
  if (StartFB.checked) {
    StartFB.checked = false;
    BeginAnew();
  }
  EventGrid& grid = frame_.EventList;
  std::optional<CellPlace> hit;
  {
    const widgets::WaitPointer wait(frame_.screen);
    const int col = FindCol == kColDescription ? kColWhole : FindCol;
    hit = RowSearch(grid, TextSearch(wanted, MatchC.checked)).Find({FindRow, col, FindPos});
    if (hit) {
      FindPos = hit->position + wanted.size();
      FindRow = hit->row;
      FindCol = hit->col == kColWhole ? kColDescription : hit->col;
      grid.Row = FindRow;
      grid.Col = FindCol;
      FindCellColor = grid.CellColor(FindRow, FindCol);
      grid.SetCellColor(FindRow, FindCol, kGrey);
      grid.TopRow = FindRow >= 3 ? FindRow - 2 : FindRow;
    }
  }
  if (hit) return;
  // Before the box opens: rows may come while it is open.
  BeginAnew();
  frame_.app.seams.message_boxes.Show(
      {frame_.app.ProductName, "\"" + wanted + "\"  Not Found.", platform::BoxIcon::kExclamation});
}

}  // namespace zendrix::admin
