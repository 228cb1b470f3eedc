#include "qt/admin/frm_main.h"

#include <QApplication>
#include <QFontMetrics>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QScreen>
#include <QStatusBar>
#include <QToolBar>
#include <algorithm>

#include "qt/admin/pane_area.h"
#include "qt/bind_chart.h"
#include "qt/bind_grid.h"
#include "qt/bind_label.h"
#include "qt/bind_menu.h"
#include "qt/bind_panel.h"
#include "qt/bind_splitter.h"
#include "qt/bind_tool_bar.h"
#include "qt/bind_tray.h"
#include "qt/bind_tree.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

namespace {

int PixelsOf(std::string_view text) {
  return QFontMetrics(QApplication::font()).horizontalAdvance(ToQt(text));
}

}  // namespace

admin::TextMetrics GridMetrics() {
  admin::TextMetrics metrics;
  metrics.pixels = PixelsOf;
  metrics.twips = [](std::string_view text) { return PixelsOf(text) * kTwipsPerPixel; };
  metrics.twips_per_pixel = kTwipsPerPixel;
  return metrics;
}

AdminWindow::AdminWindow(admin::frmMain& form, const Toolkit& toolkit)
    : FormWindow(form, toolkit), ui_(form) {
  resize(QSize(1240, 800).boundedTo(screen()->availableSize() * 9 / 10));
  MakeMenuBar();
  MakeToolBar();
  MakePanes();
  MakeStatusBar();
  BindTray(ui_.tray, MakeMenu(ui_.mPopupSys, this, kit()), this, kit());
  Keep(this, ui_.repaint.Connect([this] { repaint(); }));
  Reflect(this, ui_.lblHDrag.Top, [this](int) { KeepSplitterInSight(); });
}

void AdminWindow::MakeMenuBar() {
  for (widgets::Menu* menu : ui_.menus) menuBar()->addMenu(MakeMenu(*menu, menuBar(), kit()));
}

void AdminWindow::MakeToolBar() {
  QToolBar* const bar = MakeBarOfTools(QStringLiteral("Tbar"), ui_.Tbar, kit());
  bar->setToolButtonStyle(Qt::ToolButtonIconOnly);
  addToolBar(bar);
}

void AdminWindow::MakePanes() {
  auto* const area = new PaneArea(ui_, MakeWarning(ui_.lblRootWarning, kit()), kit());
  setCentralWidget(area);
  auto* const grid = new GridTable(ui_.EventList, QStringLiteral("grid"), QStringLiteral("Events"),
                                   QStringLiteral("No events. The monitoring file has no line yet."), kit());
  area->Put(&admin::PanePlaces::grids, grid);
  auto* const filtered =
      new GridTable(ui_.filter.FEvnList, QStringLiteral("grid"), QStringLiteral("Filtered events"),
                    QStringLiteral("No event passes the filter."), kit());
  area->Put(&admin::PanePlaces::grids, filtered);
  // The keyboard is with the events that are seen, when one grid takes the other's place.
  Keep(this, ui_.filter.FEvnList.visible.changed.Connect(
                 [this, grid, filtered] { (ui_.filter.Shown() ? filtered : grid)->setFocus(); }));
  area->Put(&admin::PanePlaces::lblHDrag,
            new SplitterBar(ui_.lblHDrag, QStringLiteral("Height of the events"), kit()));
  area->Put(&admin::PanePlaces::tvVCR,
            new TreeView(ui_.replay.tvVCR, QStringLiteral("h3"), QStringLiteral("System State"), kit()));
  area->Put(&admin::PanePlaces::Chrt,
            new ChartView(ui_.timeline.Chrt, QStringLiteral("Small timeline"), kit()));
  QLabel* const unit = MakeLabel(ui_.timeline.chrtLabel, kit());
  unit->setAlignment(Qt::AlignCenter);
  area->Put(&admin::PanePlaces::chrtLabel, unit);
  grid->setFocus();
}

void AdminWindow::MakeStatusBar() {
  statusBar()->setObjectName(QStringLiteral("SBar"));
  statusBar()->setSizeGripEnabled(false);
  statusBar()->addWidget(MakePanel(ui_.Msg, QStringLiteral("File")), 3);
  statusBar()->addWidget(MakePanel(ui_.Msg2, QStringLiteral("Message")), 1);
  statusBar()->addPermanentWidget(MakeProgressBar(ui_.DynamicPictureBox, QStringLiteral("Progress")));
  statusBar()->addPermanentWidget(MakePanel(ui_.Rfrsh, QStringLiteral("File has changed indicator")));
  statusBar()->addPermanentWidget(MakePanel(ui_.RecCnt, QStringLiteral("Record Count")));
}

// The splitter stands where it was put, so the window does not become too low for it.
void AdminWindow::KeepSplitterInSight() {
  constexpr int kLeastWidth = 640;
  constexpr int kLeastHeight = 400;
  constexpr int kFrame = 40;
  const int wanted =
      admin::LeastFormHeight(ui_.lblHDrag.Top) / kTwipsPerPixel + menuBar()->sizeHint().height();
  const int room = screen() ? screen()->availableGeometry().height() - kFrame : wanted;
  setMinimumSize(kLeastWidth, std::max(std::min(wanted, room), kLeastHeight));
}

}  // namespace zendrix::qt
