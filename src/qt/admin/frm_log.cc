#include "qt/admin/frm_log.h"

#include <QAction>
#include <QBoxLayout>
#include <QLabel>
#include <QScrollBar>
#include <QStatusBar>
#include <QToolBar>

#include "qt/bind_page_grid.h"
#include "qt/bind_panel.h"
#include "qt/bind_scroll_bar.h"
#include "qt/bind_tool_bar.h"

namespace zendrix::qt {

LogWindow::LogWindow(admin::frmLog& form, const Toolkit& toolkit) : FormWindow(form, toolkit) {
  constexpr int kMargin = 12;
  resize(900, 560);
  setMinimumSize(420, 240);
  escape_closes = true;
  QToolBar* const tools = MakeBarOfTools(QStringLiteral("Tbar1"), {&form.FOpen}, kit());
  for (QAction* open : tools->actions()) open->setShortcut(QKeySequence::Open);
  addToolBar(tools);
  auto* central = new QWidget;
  auto* row = new QHBoxLayout(central);
  row->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  row->setSpacing(2);
  QScrollBar* const pages = MakeScrollBar(form.VScroll1, QStringLiteral("Record at the top"), kit());
  auto* table =
      new PageTable(form.ErrLog, *pages, QStringLiteral("Log"),
                    QStringLiteral("No log is open. Open one with the button above, or Ctrl+O."), kit());
  row->addWidget(table, 1);
  row->addWidget(pages);
  setCentralWidget(central);
  table->setFocus();
  statusBar()->setSizeGripEnabled(false);
  QLabel* const path = MakePanel(form.SBar1, QStringLiteral("File"));
  path->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
  statusBar()->addWidget(path, 1);
}

}  // namespace zendrix::qt
