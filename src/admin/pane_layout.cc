#include "admin/pane_layout.h"

#include <algorithm>
#include <cstdlib>

#include "widgets/splitter.h"

namespace zendrix::admin {

namespace {

constexpr int kGridGap = 40;
constexpr int kTreeMargin = 20;
constexpr int kLabelHeight = 300;
constexpr int kMargin = 120;
// Part of the width that the tree takes.
constexpr int kTreeShare = 3;

constexpr int kHighestSplitter = 3000;
constexpr int kRoomBelowSplitter = 1200;
constexpr int kLeastMove = 6;

int Least(int size) {
  return std::max(size, kLeastPane);
}

}  // namespace

PanePlaces LayOutPanes(const PaneRoom& room, int splitter_top, int splitter_height) {
  PanePlaces places;
  const int inner = Least(room.width - 2 * kMargin);
  places.grids = {kMargin, room.top, inner, Least(splitter_top - room.top - kGridGap)};
  places.lblHDrag = {kMargin, splitter_top, inner, splitter_height};
  const int below = splitter_top + splitter_height;
  const int height = Least(room.bottom - below - kMargin);
  places.Pic1 = {kMargin, below, Least(inner / kTreeShare), height};
  places.tvVCR = {places.Pic1.left + kTreeMargin, below + kTreeMargin,
                  Least(places.Pic1.width - 2 * kTreeMargin), Least(height - 2 * kTreeMargin)};
  const int chart_left = places.Pic1.left + places.Pic1.width + kMargin;
  const int chart_width = Least(room.width - kMargin - chart_left);
  const int chart_height = Least(height - kLabelHeight);
  places.Chrt = {chart_left, below, chart_width, chart_height};
  places.chrtLabel = {chart_left, below + chart_height, chart_width, kLabelHeight};
  return places;
}

int DraggedSplitterTop(int top, int y, int form_height) {
  const int wanted = top + y - widgets::Splitter::kGrip;
  const bool may = wanted >= kHighestSplitter && wanted <= form_height - kRoomBelowSplitter &&
                   std::abs(wanted - top) > kLeastMove;
  return may ? wanted : top;
}

int LeastFormHeight(int splitter_top) {
  return splitter_top + kRoomBelowSplitter;
}

}  // namespace zendrix::admin
