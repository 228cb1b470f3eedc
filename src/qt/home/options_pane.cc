#include "qt/home/options_pane.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QTabBar>

#include "qt/bind_check_box.h"
#include "qt/bind_label.h"
#include "qt/bind_slider.h"
#include "qt/bind_smtp_fields.h"
#include "qt/bind_tabs.h"
#include "qt/pane_looks.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

namespace {

constexpr int kSliderWidth = 420;  // pixels

QString NameOf(const widgets::Label& label) {
  return ToQt(label.caption.Get());
}

QWidget* MakeMailPage(home::OptionsPane& pane, const Toolkit& kit) {
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(16);
  grid->setVerticalSpacing(6);
  grid->addWidget(MakeCheckBox(pane.eEnable, kit, QLatin1Char('E')), 0, 0, 1, 2);
  grid->setRowMinimumHeight(1, 6);
  AddSmtpFields(grid, 2, pane.mail, {pane.elabel1, pane.elabel2, pane.elabel3, pane.elabel4, pane.elabel5},
                kit);
  grid->setColumnStretch(1, 1);
  return Card(grid);
}

// A slider under what it asks, with what its place means beside it.
void AddSlider(QVBoxLayout* column, widgets::Label& question, QChar key, widgets::Slider& slider,
               widgets::Label& meaning, const Toolkit& kit) {
  QSlider* widget = MakeSlider(slider, NameOf(question), kit);
  widget->setFixedWidth(kSliderWidth);
  column->addWidget(MakeFieldLabel(question, widget, key, kit));
  auto* row = new QHBoxLayout;
  row->setSpacing(16);
  row->addWidget(widget);
  row->addWidget(MakeLabel(meaning, kit), 1);
  column->addLayout(row);
  Reflect(widget, meaning.caption,
          [widget](const std::string& text) { widget->setAccessibleDescription(ToQt(text)); });
}

QWidget* MakeAlertPage(home::OptionsPane& pane, const Toolkit& kit) {
  auto* column = new QVBoxLayout;
  column->setSpacing(8);
  AddSlider(column, pane.lblRiskLevel, QLatin1Char('t'), pane.eSbRiskLevel, pane.eAlertsToShow, kit);
  column->addSpacing(14);
  AddSlider(column, pane.lblSensitivity, QLatin1Char('d'), pane.eSbSensitivity, pane.eSensitivity, kit);
  return Card(column);
}

QWidget* MakePropertiesPage(home::OptionsPane& pane, const Toolkit& kit) {
  auto* column = new QVBoxLayout;
  column->setSpacing(14);
  column->addWidget(MakeCheckBox(pane.echkOrigHigh, kit, QLatin1Char('O')));
  column->addWidget(MakeCheckBox(pane.echkNotifyMs, kit, QLatin1Char('D')));
  column->addWidget(MakeCheckBox(pane.echkDontAsk, kit, QLatin1Char('I')));
  return Card(column);
}

}  // namespace

QWidget* MakeOptionsPane(home::OptionsPane& pane, const Toolkit& kit) {
  auto* widget = new QWidget;
  auto* column = new QVBoxLayout(widget);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(kPaneGap);
  column->addWidget(MakeLabel(pane.etopDesc, kit));
  std::vector<widgets::Label*> labels;
  for (widgets::Label& label : pane.etbOptionSel) labels.push_back(&label);
  column->addWidget(MakeTabs(labels, QStringLiteral("Options"), kit), 0, Qt::AlignLeft);
  QWidget* pages[] = {MakeMailPage(pane, kit), MakeAlertPage(pane, kit), MakePropertiesPage(pane, kit)};
  for (std::size_t i = 0; i < std::size(pages); ++i) {
    BindControl(pane.efrOption[i], pages[i], NameOf(pane.etbOptionSel[i]));
    column->addWidget(pages[i]);
  }
  auto* end = new QHBoxLayout;
  end->addStretch(1);
  QPushButton* save = MakeButton(pane.eSave, "flat", kit);
  save->setShortcut(QKeySequence(QStringLiteral("Alt+S")));
  // A click leaves the keyboard where it is; what the field there holds is looked at all the same.
  save->setFocusPolicy(Qt::TabFocus);
  end->addWidget(save);
  column->addLayout(end);
  return widget;
}

}  // namespace zendrix::qt
