#include "qt/home/home_window.h"

#include <QBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QPushButton>

#include "qt/bind_image.h"
#include "qt/bind_label.h"
#include "qt/bind_menu.h"
#include "qt/bind_tray.h"
#include "qt/home/agent_pane.h"
#include "qt/home/alerts_pane.h"
#include "qt/home/help_pane.h"
#include "qt/home/logs_pane.h"
#include "qt/home/options_pane.h"
#include "qt/home/summary_pane.h"
#include "qt/pane_looks.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

using home::kAdvancedView;
using home::kAlertsView;
using home::kHelpView;
using home::kOptionsView;
using home::kQuitView;
using home::kSummaryView;

HomeWindow::HomeWindow(home::frmNewUI& form, const Toolkit& toolkit) : FormWindow(form, toolkit), ui_(form) {
  resize(980, 660);
  setMinimumSize(760, 520);
  auto* central = new QWidget;
  auto* row = new QHBoxLayout(central);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(0);
  row->addWidget(MakeStrip());
  auto* content = new QVBoxLayout;
  content->setContentsMargins(kPaneMargin, kPaneMargin - 4, kPaneMargin, kPaneMargin);
  content->setSpacing(kPaneGap);
  content->addWidget(MakeWarning(ui_.lblRootWarning, kit()));
  struct Pane {
    int view;
    widgets::Label& description;
    widgets::Image* flag;
    QWidget* body;
  };
  for (const Pane& pane :
       {Pane{kSummaryView, ui_.summary.icShortDesc, nullptr, MakeSummaryPane(ui_.summary, kit())},
        Pane{kAlertsView, ui_.alerts.sTitleDesc, &ui_.alerts.StaImg, MakeAlertsPane(ui_.alerts, kit())},
        Pane{kAdvancedView, ui_.agent.aTitleDesc, &ui_.agent.StaImg, MakeAdvancedPane()},
        Pane{kOptionsView, ui_.options.eTitleDesc, &ui_.options.StaImg, MakeOptionsPane(ui_.options, kit())},
        Pane{kHelpView, ui_.help.htopDesc, nullptr, MakeHelpPane(ui_.help, kit())}}) {
    QWidget* heading = MakeHeading(pane.view, pane.description, pane.flag);
    const auto at = static_cast<std::size_t>(pane.view);
    auto* frame = new QWidget;
    auto* layout = new QVBoxLayout(frame);
    layout->setContentsMargins(0, 0, 0, 0);
    const bool has_list = pane.view == kAlertsView || pane.view == kAdvancedView;
    layout->addWidget(pane.body, has_list ? 1 : 0);
    if (!has_list) layout->addStretch(1);
    BindControl(*ui_.fraDesc[at], heading);
    BindControl(*ui_.Frame1[at], frame);
    content->addWidget(heading);
    content->addWidget(frame, 1);
  }
  row->addLayout(content, 1);
  setCentralWidget(central);
  BindTray(ui_.tray, MakeMenu(ui_.mPopupSys2, this, kit()), this, kit());
}

QWidget* HomeWindow::MakeStrip() {
  auto* strip = new QWidget;
  strip->setAttribute(Qt::WA_StyledBackground);
  strip->setFixedWidth(208);
  auto* column = new QVBoxLayout(strip);
  column->setContentsMargins(12, 18, 12, 16);
  column->setSpacing(4);
  auto* head = new QHBoxLayout;
  auto* mark = new QLabel;
  mark->setPixmap(kit().pictures.Pixmap(QStringLiteral("icon"), 36, devicePixelRatioF()));
  auto* name = new QLabel(QStringLiteral("Zendrix"));
  name->setObjectName(QStringLiteral("stripTitle"));
  head->addWidget(mark);
  head->addSpacing(6);
  head->addWidget(name, 1);
  column->addLayout(head);
  column->addSpacing(18);
  for (const int view : {kSummaryView, kAlertsView, kAdvancedView, kOptionsView, kHelpView})
    column->addWidget(MakeNavigationRow(view));
  column->addStretch(1);
  for (widgets::Label* link : {&ui_.links.Feedbacklbl, &ui_.links.Supportlbl, &ui_.links.NewVerlbl})
    column->addWidget(MakeButton(*link, "striplink", kit()));
  column->addSpacing(6);
  column->addWidget(MakeButton(ui_.links.hGetStr, "flat", kit()));
  column->addSpacing(6);
  column->addWidget(MakeNavigationRow(kQuitView));
  BindControl(ui_.Frame2, strip, QStringLiteral("Navigation"));
  return strip;
}

QWidget* HomeWindow::MakeNavigationRow(int view) {
  const auto at = static_cast<std::size_t>(view);
  widgets::Label& label = *ui_.ViewItems[at];
  QPushButton* button = MakeButton(label, "nav", kit());
  button->setIcon(kit().pictures.Icon(QStringLiteral("nav/%1").arg(view)));
  button->setIconSize(QSize(20, 20));
  const auto dress = [&label, button, theme = &kit().theme] {
    button->setStyleSheet(QStringLiteral("color: %1; font-weight: %2;")
                              .arg(theme->ColourOf(label.fore_colour).name())
                              .arg(label.emphasised ? 600 : 400));
  };
  Reflect(button, label.fore_colour, [dress](widgets::Colour) { dress(); });
  Reflect(button, label.emphasised, [dress, button](bool current) {
    button->setProperty("current", current);
    dress();
  });
  auto* arrow = new QLabel;
  arrow->setPixmap(kit().pictures.Pixmap(QStringLiteral("nav/arrow"), 12, devicePixelRatioF()));
  BindControl(*ui_.vArrow[at], arrow);
  arrow->setAttribute(Qt::WA_TransparentForMouseEvents);
  auto* row = new QHBoxLayout(button);
  row->addStretch(1);
  row->addWidget(arrow);
  return button;
}

QWidget* HomeWindow::MakeHeading(int view, widgets::Label& description, widgets::Image* flag) {
  const auto at = static_cast<std::size_t>(view);
  auto* strip = new QWidget;
  auto* row = new QHBoxLayout(strip);
  row->setContentsMargins(0, 0, 0, 0);
  row->setSpacing(14);
  auto* words = new QVBoxLayout;
  words->setSpacing(2);
  auto* title = new QLabel(ToQt(ui_.ViewItems[at]->caption.Get()));
  title->setObjectName(QStringLiteral("paneTitle"));
  title->setTextFormat(Qt::PlainText);
  words->addWidget(title);
  words->addWidget(WithRole(MakeLabel(description, kit()), "faint"));
  row->addLayout(words, 1);
  if (flag) row->addWidget(MakeImage(*flag, 32, kit()), 0, Qt::AlignTop);
  return strip;
}

QWidget* HomeWindow::MakeAdvancedPane() {
  auto* pane = new QWidget;
  auto* column = new QVBoxLayout(pane);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kPaneGap);
  column->addWidget(MakeAgentCard(ui_.agent, kit()));
  column->addWidget(MakeLogs(ui_.logs, kit()), 1);
  return pane;
}

}  // namespace zendrix::qt
