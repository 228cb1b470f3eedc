// What stands behind `grid`: each takes its words and prints its documents.
#pragma once

#include "inspect/console.h"
#include "inspect/document.h"
#include "inspect/grid_words.h"
#include "widgets/grid.h"

namespace zendrix::inspect {

void GridFilterRows(Console& console, const GridWords& words);
void GridFindText(Console& console, const GridWords& words);
void GridReplay(Console& console, const GridWords& words);
void GridState(Console& console, const GridWords& words);
void GridSlots(Console& console, const GridWords& words);

// The numbers of a view's rows in the file, from the top.
Json OrderOf(const widgets::Grid& grid);

}  // namespace zendrix::inspect
