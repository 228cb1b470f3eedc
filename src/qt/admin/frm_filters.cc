#include "qt/admin/frm_filters.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QComboBox>
#include <QDateTimeEdit>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "qt/bind_combo_box.h"
#include "qt/bind_date_time_box.h"
#include "qt/bind_label.h"
#include "qt/bind_text_box.h"
#include "qt/pane_looks.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

FiltersWindow::FiltersWindow(admin::frmFilters& form, const Toolkit& toolkit)
    : FormWindow(form, toolkit), ui_(form) {
  auto* central = new QWidget;
  auto* column = new QVBoxLayout(central);
  column->setContentsMargins(kPaneMargin, kPaneMargin - 8, kPaneMargin, kPaneMargin - 6);
  column->setSpacing(kPaneGap);
  column->addLayout(MakeCriteria());
  column->addStretch(1);
  column->addLayout(MakeButtons());
  setCentralWidget(central);
  findChild<QLineEdit*>(ToQt(ui_.Desc.name()))->setFocus();
}

QLayout* FiltersWindow::MakeCriteria() {
  constexpr int kFieldWidth = 380;
  auto* grid = new QGridLayout;
  grid->setHorizontalSpacing(16);
  grid->setVerticalSpacing(8);
  grid->setColumnMinimumWidth(1, kFieldWidth);
  grid->setColumnStretch(1, 1);
  struct List {
    widgets::Label& label;
    QChar key;
    widgets::ComboBox& box;
    const char* pictures;
  };
  int row = 0;
  for (const List& each : {List{ui_.lblHost, QLatin1Char('H'), ui_.HostCombo, ""},
                           List{ui_.lblMonitor, QLatin1Char('M'), ui_.MonitorCombo, "h3"},
                           List{ui_.lblChange, QLatin1Char('C'), ui_.ChangeCombo, "grid"}}) {
    QComboBox* list =
        MakeComboBox(each.box, ToQt(each.label.caption.Get()), QString::fromLatin1(each.pictures), kit());
    grid->addWidget(MakeFieldLabel(each.label, list, each.key, kit()), row, 0);
    grid->addWidget(list, row++, 1);
  }
  QLineEdit* pattern = MakeTextBox(ui_.Desc, ToQt(ui_.lblDesc.caption.Get()), kit());
  pattern->setAccessibleDescription(ToQt(ui_.lblDescNote.caption.Get()));
  grid->addWidget(MakeFieldLabel(ui_.lblDesc, pattern, QLatin1Char('D'), kit()), row, 0);
  grid->addWidget(pattern, row++, 1);
  grid->addWidget(WithRole(MakeLabel(ui_.lblDescNote, kit()), "faint"), row++, 1);
  struct Date {
    widgets::Label& label;
    QChar key;
    widgets::DateTimeBox& box;
  };
  for (const Date& each :
       {Date{ui_.lblFrom, QLatin1Char('F'), ui_.FromDate}, Date{ui_.lblTo, QLatin1Char('T'), ui_.ToDate}}) {
    const DateTimeField field = MakeDateTimeBox(each.box, ToQt(each.label.caption.Get()), each.key, kit());
    grid->addWidget(field.given, row, 0);
    grid->addWidget(field.moment, row++, 1);
  }
  return grid;
}

QLayout* FiltersWindow::MakeButtons() {
  auto* buttons = new QHBoxLayout;
  buttons->setSpacing(kPaneGap);
  buttons->addStretch(1);
  for (widgets::Label* label : {&ui_.Apply, &ui_.ResetCommand}) {
    QPushButton* button = MakeButton(*label, label == &ui_.Apply ? "primary" : "flat", kit());
    button->setShortcut(
        QKeySequence(label == &ui_.Apply ? QStringLiteral("Alt+I") : QStringLiteral("Alt+R")));
    buttons->addWidget(button);
  }
  return buttons;
}

void FiltersWindow::keyPressEvent(QKeyEvent* event) {
  if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
    kit().guard(ui_.name(), [this] { ui_.Apply_Click(); });
  else
    FormWindow::keyPressEvent(event);
}

}  // namespace zendrix::qt
