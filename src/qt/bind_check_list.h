// Check lists. The space bar turns the box of the current entry over, letters go to the entry that begins
// with them.
#pragma once

#include "qt/bind.h"
#include "widgets/check_list.h"

class QListView;

namespace zendrix::qt {

QListView* MakeCheckList(widgets::CheckList& list, const QString& accessible_name, const Toolkit& kit);

}  // namespace zendrix::qt
