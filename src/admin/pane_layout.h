// Where the panes of the Administrator window stand: the grids between toolbar and splitter, under it the
// tree on the left and the chart with its label on the right. All numbers are twips from the top left corner
// of the window's inside, below its menu. No width or height that is worked out is less than kLeastPane, also
// where the window has no room for that; bar and label have a thickness of their own.
#pragma once

namespace zendrix::admin {

inline constexpr int kLeastPane = 700;

// What the toolkit has to offer.
struct PaneRoom {
  int width = 0;
  int height = 0;  // with toolbar and status bar
  int top = 0;     // the lower edge of the toolbar
  int bottom = 0;  // the upper edge of the status bar
  bool operator==(const PaneRoom&) const = default;
};

struct PanePlace {
  int left = 0, top = 0, width = 0, height = 0;
  bool operator==(const PanePlace&) const = default;
};

struct PanePlaces {
  PanePlace grids;  // EventList and FEvnList: only one of them is seen
  PanePlace lblHDrag;
  PanePlace Pic1;
  PanePlace tvVCR;  // inside Pic1
  PanePlace Chrt;
  PanePlace chrtLabel;
  bool operator==(const PanePlaces&) const = default;
};

// The splitter stays where it is, whatever the room.
PanePlaces LayOutPanes(const PaneRoom& room, int splitter_top, int splitter_height);

// Where the splitter goes when the pointer is dragged to `y` below its top; its old place where it may not.
int DraggedSplitterTop(int top, int y, int form_height);
// The least height of the window's inside in which the splitter stands as low as it may be dragged.
int LeastFormHeight(int splitter_top);

}  // namespace zendrix::admin
