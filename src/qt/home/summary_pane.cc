#include "qt/home/summary_pane.h"

#include <QBoxLayout>
#include <QLabel>
#include <QPushButton>

#include "qt/bind_click.h"
#include "qt/bind_image.h"
#include "qt/bind_label.h"
#include "qt/home/status_band.h"
#include "qt/pane_looks.h"

namespace zendrix::qt {

namespace {

QLabel* MakeCount(widgets::Label& count, const Toolkit& kit) {
  QLabel* label = WithRole(MakeLabel(count, kit), "value");
  label->setWordWrap(false);
  return label;
}

QWidget* MakeCountsCard(home::SummaryPane& pane, const Toolkit& kit) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(12);
  grid->setVerticalSpacing(10);
  auto* since = new QHBoxLayout;
  QLabel* caption = WithRole(MakeLabel(pane.iclblDate, kit), "faint");
  caption->setWordWrap(false);
  since->addWidget(caption);
  since->addSpacing(6);
  since->addWidget(MakeLabel(pane.icDate, kit), 1);
  grid->addLayout(since, 0, 0, 1, 4);
  grid->addWidget(MakeImage(pane.icImgEventCount, 32, kit), 1, 0);
  grid->addWidget(MakeCount(pane.icEventCount, kit), 1, 1);
  grid->addWidget(MakeImage(pane.icImgAlertCount, 32, kit), 2, 0);
  grid->addWidget(MakeCount(pane.icAlertCount, kit), 2, 1);
  grid->addWidget(MakeButton(pane.icClick, "link", kit), 2, 2);
  grid->setColumnStretch(3, 1);
  return Card(grid);
}

QWidget* MakeSummaryRow(home::StatusRow& part, const Toolkit& kit) {
  auto* row = new QHBoxLayout;
  row->setSpacing(14);
  QLabel* flag = MakeImage(part.Flag, 24, kit);
  BindClick(part.Flag.name(), part.Flag.clicked, flag, kit);
  row->addWidget(flag, 0, Qt::AlignTop);
  auto* words = new QVBoxLayout;
  words->setSpacing(2);
  auto* name = new QHBoxLayout;
  name->addWidget(MakeButton(part.icView, "link", kit));
  name->addStretch(1);
  words->addLayout(name);
  QLabel* sentence = WithRole(MakeLabel(part.icDesc, kit), "faint");
  sentence->setContentsMargins(5, 0, 0, 0);
  BindClick(part.icDesc.name(), part.icDesc.clicked, sentence, kit);
  words->addWidget(sentence);
  row->addLayout(words, 1);
  return Card(row);
}

}  // namespace

QWidget* MakeSummaryPane(home::SummaryPane& pane, const Toolkit& kit) {
  auto* widget = new QWidget;
  auto* column = new QVBoxLayout(widget);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kPaneGap);
  column->addWidget(new StatusBand(pane, kit));
  auto* advice = new QVBoxLayout;
  advice->setSpacing(2);
  advice->addWidget(MakeLabel(pane.icStatus, kit));
  advice->addWidget(MakeButton(pane.icMore, "link", kit), 0, Qt::AlignLeft);
  column->addLayout(advice);
  column->addWidget(MakeCountsCard(pane, kit));
  column->addWidget(MakeSummaryRow(pane.alerts_row, kit));
  column->addWidget(MakeSummaryRow(pane.options_row, kit));
  return widget;
}

}  // namespace zendrix::qt
