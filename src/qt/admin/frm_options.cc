#include "qt/admin/frm_options.h"

#include <QBoxLayout>
#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListView>
#include <QPushButton>
#include <QRadioButton>
#include <QShortcut>
#include <QTabBar>

#include "qt/bind_check_list.h"
#include "qt/bind_colour_box.h"
#include "qt/bind_label.h"
#include "qt/bind_option_button.h"
#include "qt/bind_smtp_fields.h"
#include "qt/bind_tabs.h"
#include "qt/bind_text_box.h"
#include "qt/pane_looks.h"
#include "qt/text_edge.h"

namespace zendrix::qt {
namespace {

QString TextOf(const widgets::Label& label) {
  return ToQt(label.caption.Get());
}

// What belongs together, under its heading, which also names it for a screen reader.
QWidget* Group(widgets::Label& heading, QLabel* label, QLayout* contents) {
  constexpr int kGap = 10;
  auto* column = new QVBoxLayout;
  column->setSpacing(kGap);
  column->addWidget(label);
  column->addLayout(contents, 1);
  QWidget* card = Card(column);
  card->setAccessibleName(TextOf(heading));
  return card;
}

QWidget* CheckListGroup(widgets::Label& heading, QChar key, widgets::CheckList& list, const Toolkit& kit) {
  constexpr int kWidth = 220, kHeight = 200;
  QListView* view = MakeCheckList(list, TextOf(heading), kit);
  view->setMinimumSize(kWidth, kHeight);
  auto* contents = new QVBoxLayout;
  contents->addWidget(view);
  return Group(heading, MakeFieldLabel(heading, view, key, kit), contents);
}

// The buttons of a group share a parent of their own: the arrow keys move among them.
QWidget* OptionColumn(std::initializer_list<widgets::OptionButton*> buttons, const Toolkit& kit) {
  auto* parent = new QWidget;
  auto* column = new QVBoxLayout(parent);
  column->setContentsMargins(0, 0, 0, 0);
  for (widgets::OptionButton* button : buttons) column->addWidget(MakeOptionButton(*button, kit));
  return parent;
}

struct ColourRow {
  widgets::Label& label;
  QChar key;
  widgets::ColourBox& box;
  widgets::Label& change;
};

void AddColourRow(QGridLayout* grid, const ColourRow& row, const Toolkit& kit) {
  const int at = grid->rowCount();
  QPushButton* change = MakeButton(row.change, "flat", kit);
  change->setAutoDefault(false);
  change->setAccessibleName(QStringLiteral("Change ") + TextOf(row.label));
  Reflect(change, row.box.colour, [change, kit](widgets::Colour colour) {
    change->setAccessibleDescription(ColourText(colour, kit));
  });
  grid->addWidget(MakeFieldLabel(row.label, change, row.key, kit), at, 0);
  grid->addWidget(MakeColourBox(row.box, TextOf(row.label), kit), at, 1);
  grid->addWidget(change, at, 2);
}

}  // namespace

OptionsDialog::OptionsDialog(admin::frmOptions& form, const Toolkit& kit)
    : FormDialog(form, kit), ui_(form), kit_(kit) {
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kPaneMargin, kPaneMargin - 8, kPaneMargin, kPaneMargin - 6);
  column->setSpacing(kPaneGap);
  std::vector<widgets::Label*> labels;
  for (widgets::Label& label : ui_.tbsOptions) labels.push_back(&label);
  tabs_ = MakeTabs(labels, QStringLiteral("Options"), kit_);
  tabs_->setObjectName(QStringLiteral("tbsOptions"));
  column->addWidget(tabs_, 0, Qt::AlignLeft);
  column->addWidget(MakePages(), 1);
  column->addLayout(MakeButtons());
  auto* next = new QShortcut(QKeySequence(QStringLiteral("Ctrl+Tab")), this);
  connect(next, &QShortcut::activated, this, [this] { GoToNextTab(); });
}

// All in one place and of one size, whichever is on show.
QWidget* OptionsDialog::MakePages() {
  auto* parent = new QWidget;
  auto* place = new QGridLayout(parent);
  place->setContentsMargins(0, 0, 0, 0);
  QWidget* const pages[] = {MakeMonitors(), MakeEventView(), MakeTimeLine(), MakeAlerts()};
  for (std::size_t i = 0; i < std::size(pages); ++i) {
    QSizePolicy policy = pages[i]->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    pages[i]->setSizePolicy(policy);
    BindControl(ui_.picOptions[i], pages[i], TextOf(ui_.tbsOptions[i]));
    pages[i]->layout()->setContentsMargins(0, 0, 0, 0);
    place->addWidget(pages[i], 0, 0);
  }
  return parent;
}

QWidget* OptionsDialog::MakeMonitors() {
  auto* page = new QFrame;
  auto* column = new QVBoxLayout(page);
  column->addWidget(CheckListGroup(ui_.lblMonitors, QLatin1Char('M'), ui_.Monitors, kit_));
  return page;
}

QWidget* OptionsDialog::MakeEventView() {
  auto* page = new QFrame;
  auto* row = new QHBoxLayout(page);
  row->setSpacing(kPaneGap);
  row->addWidget(CheckListGroup(ui_.lblCols, QLatin1Char('S'), ui_.Cols, kit_), 1);
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(kPaneGap);
  grid->setVerticalSpacing(kPaneGap);
  AddColourRow(grid, {ui_.lblSelC, QLatin1Char('F'), ui_.SelC, ui_.Change}, kit_);
  AddColourRow(grid, {ui_.lblSSCol, QLatin1Char('D'), ui_.SSCol, ui_.Change2}, kit_);
  grid->setRowStretch(grid->rowCount(), 1);
  row->addWidget(Group(ui_.lblColors, MakeLabel(ui_.lblColors, kit_), grid));
  return page;
}

QWidget* OptionsDialog::MakeTimeLine() {
  auto* page = new QFrame;
  auto* row = new QHBoxLayout(page);
  row->setSpacing(kPaneGap);
  constexpr int kNumberWidth = 70;
  auto* slots_column = new QVBoxLayout;
  slots_column->addWidget(
      OptionColumn({&ui_.OpMinutes, &ui_.OpHours, &ui_.OpDays, &ui_.OpWeeks, &ui_.OpMonths}, kit_));
  auto* number = new QHBoxLayout;
  QLineEdit* field = MakeTextBox(ui_.NSlot, TextOf(ui_.lblNSlot), kit_);
  field->setInputMethodHints(Qt::ImhDigitsOnly);
  field->setFixedWidth(kNumberWidth);
  number->addWidget(MakeFieldLabel(ui_.lblNSlot, field, QLatin1Char('N'), kit_));
  number->addWidget(field);
  number->addStretch(1);
  slots_column->addLayout(number);
  slots_column->addStretch(1);
  row->addWidget(Group(ui_.lblSlots, MakeLabel(ui_.lblSlots, kit_), slots_column), 1);
  auto* chart_column = new QVBoxLayout;
  chart_column->addWidget(OptionColumn({&ui_.OpDelta, &ui_.OpTotal}, kit_));
  chart_column->addStretch(1);
  row->addWidget(Group(ui_.lblChart, MakeLabel(ui_.lblChart, kit_), chart_column), 1);
  return page;
}

QWidget* OptionsDialog::MakeAlerts() {
  auto* page = new QFrame;
  auto* column = new QVBoxLayout(page);
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(16);
  grid->setVerticalSpacing(6);
  AddSmtpFields(grid, 0, ui_.mail,
                {ui_.lblEmail, ui_.lblServer, ui_.lblPort, ui_.lblEmailNote, ui_.lblServerNote}, kit_);
  grid->setColumnStretch(1, 1);
  grid->setRowStretch(grid->rowCount(), 1);
  column->addWidget(Group(ui_.lblMail, MakeLabel(ui_.lblMail, kit_), grid));
  return page;
}

// A click leaves the keyboard where it is: Cancel asks no field, the others ask by themselves.
QLayout* OptionsDialog::MakeButtons() {
  auto* row = new QHBoxLayout;
  row->setSpacing(kPaneGap);
  row->addStretch(1);
  for (widgets::Label* label : {&ui_.cmdOK, &ui_.cmdCancel, &ui_.cmdApply}) {
    QPushButton* button = MakeButton(*label, "flat", kit_);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAutoDefault(false);
    button->setDefault(label == &ui_.cmdOK);
    if (label == &ui_.cmdApply) button->setShortcut(QKeySequence(QStringLiteral("Alt+A")));
    row->addWidget(button);
  }
  return row;
}

// The page that had the keyboard has gone; when it stayed, so does the keyboard.
void OptionsDialog::GoToNextTab() {
  const int before = tabs_->currentIndex();
  kit_.guard(ui_.name(), [this] { ui_.NextTab(); });
  if (tabs_->currentIndex() != before) tabs_->setFocus(Qt::TabFocusReason);
}

}  // namespace zendrix::qt
