#include "qt/admin_window.h"

#include <QApplication>
#include <QBoxLayout>
#include <QFontMetrics>
#include <QMenu>
#include <QMenuBar>
#include <QProgressBar>
#include <QStatusBar>
#include <QToolBar>

#include "qt/bind_grid.h"
#include "qt/bind_label.h"
#include "qt/bind_menu.h"
#include "qt/bind_panel.h"
#include "qt/bind_tool_bar.h"
#include "qt/bind_tray.h"
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
  resize(1040, 680);
  setMinimumSize(640, 400);
  MakeMenuBar();
  MakeToolBar();
  MakeGrid();
  MakeStatusBar();
  BindTray(ui_.tray, MakeMenu(ui_.mPopupSys, this, kit()), this, kit());
}

void AdminWindow::MakeMenuBar() {
  for (widgets::Menu* menu : {&ui_.MnFile, &ui_.MnView, &ui_.MnTools, &ui_.MnHelp})
    menuBar()->addMenu(MakeMenu(*menu, menuBar(), kit()));
}

void AdminWindow::MakeToolBar() {
  addToolBar(
      MakeBarOfTools(QStringLiteral("Tbar"), {&ui_.TbarVLogs, &ui_.TbarRefresh, &ui_.TbarOptions}, kit()));
}

void AdminWindow::MakeGrid() {
  constexpr double kTensOfTwips = 10;
  constexpr int kMargin = 12;
  const QFontMetrics metrics{QApplication::font()};
  ui_.EventList.FontWidth = metrics.horizontalAdvance(QLatin1Char('0')) * kTwipsPerPixel / kTensOfTwips;
  auto* central = new QWidget;
  auto* column = new QVBoxLayout(central);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->addWidget(MakeWarning(ui_.lblRootWarning, kit()));
  column->addWidget(new GridTable(ui_.EventList, QStringLiteral("grid"), QStringLiteral("Events"),
                                  QStringLiteral("No events. The monitoring file has no line yet."), kit()));
  setCentralWidget(central);
}

void AdminWindow::MakeStatusBar() {
  statusBar()->setObjectName(QStringLiteral("SBar"));
  statusBar()->setSizeGripEnabled(false);
  statusBar()->addWidget(MakePanel(ui_.Msg, QStringLiteral("File")), 3);
  statusBar()->addWidget(MakePanel(ui_.Msg2, QStringLiteral("Message")), 1);
  auto* progress = new QProgressBar;
  progress->setTextVisible(false);
  progress->setFixedWidth(140);
  progress->setRange(0, 100);
  BindControl(ui_.DynamicPictureBox, progress, QStringLiteral("Progress"));
  QSizePolicy policy = progress->sizePolicy();
  policy.setRetainSizeWhenHidden(true);
  progress->setSizePolicy(policy);
  Reflect(progress, ui_.DynamicPictureBox.value, [progress](int percent) {
    progress->setValue(percent);
    progress->setVisible(percent > 0);
  });
  statusBar()->addPermanentWidget(progress);
  statusBar()->addPermanentWidget(MakePanel(ui_.Rfrsh, QStringLiteral("File has changed indicator")));
  statusBar()->addPermanentWidget(MakePanel(ui_.RecCnt, QStringLiteral("Record Count")));
}

}  // namespace zendrix::qt
