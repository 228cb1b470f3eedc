#include "qt/bind_smtp_fields.h"

#include <QGridLayout>
#include <QLabel>
#include <QLineEdit>

#include "qt/bind_label.h"
#include "qt/bind_text_box.h"
#include "qt/pane_looks.h"
#include "qt/text_edge.h"

namespace zendrix::qt {
namespace {

constexpr int kFieldWidth = 340;  // pixels
constexpr int kPortWidth = 90;

}  // namespace

void AddSmtpFields(QGridLayout* grid, int row, settings::SmtpFields& fields, const SmtpLabels& labels,
                   const Toolkit& kit) {
  struct Row {
    widgets::Label& label;
    QChar key;
    widgets::TextBox& box;
    widgets::Label* example;
    Qt::InputMethodHints hints;
    int width;
  };
  constexpr Qt::InputMethodHints kNoCorrections = Qt::ImhNoAutoUppercase | Qt::ImhNoPredictiveText;
  for (const Row& each :
       {Row{labels.address, QLatin1Char('T'), fields.Email, &labels.address_example,
            Qt::ImhEmailCharactersOnly | kNoCorrections, kFieldWidth},
        Row{labels.server, QLatin1Char('M'), fields.Server, &labels.server_example,
            Qt::ImhUrlCharactersOnly | kNoCorrections, kFieldWidth},
        Row{labels.port, QLatin1Char('P'), fields.Port, nullptr, Qt::ImhDigitsOnly, kPortWidth}}) {
    QLineEdit* field = MakeTextBox(each.box, ToQt(each.label.caption.Get()), kit);
    field->setInputMethodHints(each.hints);
    field->setFixedWidth(each.width);
    grid->addWidget(MakeFieldLabel(each.label, field, each.key, kit), row, 0);
    grid->addWidget(field, row, 1, Qt::AlignLeft);
    if (each.example) {
      field->setAccessibleDescription(ToQt(each.example->caption.Get()));
      grid->addWidget(WithRole(MakeLabel(*each.example, kit), "faint"), row + 1, 1);
    }
    row += 2;
  }
}

}  // namespace zendrix::qt
