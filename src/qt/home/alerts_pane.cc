#include "qt/home/alerts_pane.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QSplitter>

#include "qt/bind_browser_view.h"
#include "qt/bind_check_box.h"
#include "qt/bind_label.h"
#include "qt/bind_list_view.h"
#include "qt/bind_menu.h"
#include "qt/pane_looks.h"

namespace zendrix::qt {

QWidget* MakeAlertsPane(home::AlertsPane& pane, const Toolkit& kit) {
  auto* widget = new QWidget;
  auto* column = new QVBoxLayout(widget);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kPaneGap);
  auto* tools = new QHBoxLayout;
  tools->addWidget(MakeCheckBox(pane.sckShowAll, kit));
  tools->addWidget(MakeButton(pane.sQuarantine, "link", kit));
  tools->addStretch(1);
  tools->addWidget(MakeButton(pane.sMoreInfo, "flat", kit));
  tools->addWidget(MakeButton(pane.sShowAll, "flat", kit));
  tools->addWidget(MakeButton(pane.sClearAll, "flat", kit));
  column->addLayout(tools);
  auto* shown = new QHBoxLayout;
  QLabel* which = WithRole(MakeLabel(pane.sCurrSens, kit), "faint");
  which->setWordWrap(false);
  shown->addWidget(which);
  shown->addWidget(MakeButton(pane.sClick1, "link", kit));
  shown->addStretch(1);
  column->addLayout(shown);
  auto* split = new QSplitter(Qt::Vertical);
  split->setChildrenCollapsible(false);
  split->setHandleWidth(kPaneGap);
  split->addWidget(
      new ListTable(pane.lvAlerts, QStringLiteral("h3"), QStringLiteral("Alerts"),
                    QStringLiteral("No alerts. Zendrix lists here what its Agent finds suspicious."), kit));
  QWidget* details = MakeBrowserView(pane.sDesc, QStringLiteral("Details"), kit);
  details->setMinimumHeight(120);
  MakeMenu(pane.mPopReview, widget, kit);
  auto* inner = new QVBoxLayout;
  inner->addWidget(details);
  split->addWidget(Card(inner));
  split->setStretchFactor(0, 2);
  split->setStretchFactor(1, 3);
  column->addWidget(split, 1);
  return widget;
}

}  // namespace zendrix::qt
