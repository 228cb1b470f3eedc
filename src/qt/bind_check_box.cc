#include "qt/bind_check_box.h"

#include <QCheckBox>
#include <QTimer>

#include "qt/text_edge.h"

namespace zendrix::qt {

QCheckBox* MakeCheckBox(widgets::CheckBox& box, const Toolkit& kit, QChar access_key) {
  auto* widget = new QCheckBox;
  BindControl(box, widget);
  Reflect(widget, box.caption, [widget, access_key](const std::string& text) {
    widget->setText(WithAccessKey(ToQt(text), access_key));
    widget->setAccessibleName(ToQt(text));
  });
  Reflect(widget, box.checked, [widget](bool checked) { widget->setChecked(checked); });
  QObject::connect(widget, &QCheckBox::clicked, widget, [&box, guard = &kit.guard](bool checked) {
    (*guard)(box.name(), [&] {
      box.checked = checked;
      box.clicked.Raise();
    });
  });
  // An assistive program turns it over without a click.
  QObject::connect(widget, &QCheckBox::toggled, widget, [widget, &box] {
    QTimer::singleShot(0, widget, [widget, &box] {
      if (widget->isChecked() != box.checked) emit widget->clicked(widget->isChecked());
    });
  });
  return widget;
}

}  // namespace zendrix::qt
