#include "qt/admin/frm_find.h"

#include <QBoxLayout>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QShortcut>

#include "qt/bind_check_box.h"
#include "qt/bind_label.h"
#include "qt/bind_text_box.h"
#include "qt/pane_looks.h"
#include "qt/text_edge.h"

namespace zendrix::qt {

FindDialog::FindDialog(admin::frmFind& form, const Toolkit& kit) : FormDialog(form, kit) {
  constexpr int kFieldWidth = 300;
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kPaneMargin, kPaneMargin - 8, kPaneMargin, kPaneMargin - 6);
  column->setSpacing(kPaneGap);
  QLineEdit* wanted = MakeTextBox(form.txtFind, ToQt(form.lblFind.caption.Get()), kit);
  wanted->setMinimumWidth(kFieldWidth);
  auto* line = new QHBoxLayout;
  line->setSpacing(kPaneGap);
  line->addWidget(MakeFieldLabel(form.lblFind, wanted, QLatin1Char('W'), kit));
  line->addWidget(wanted, 1);
  column->addLayout(line);
  column->addWidget(MakeCheckBox(form.StartFB, kit, QLatin1Char('B')));
  column->addWidget(MakeCheckBox(form.MatchC, kit, QLatin1Char('M')));
  QPushButton* find = MakeButton(form.Find, "flat", kit);
  find->setDefault(true);
  column->addWidget(find, 0, Qt::AlignRight);
  // At once, also when it is held down: a button takes its time.
  auto* next = new QShortcut(QKeySequence(QStringLiteral("F3")), this);
  connect(next, &QShortcut::activated, this,
          [&form, guard = &kit.guard] { (*guard)(form.name(), [&] { form.Find_Click(); }); });
}

}  // namespace zendrix::qt
