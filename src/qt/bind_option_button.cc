#include "qt/bind_option_button.h"

#include <QRadioButton>
#include <QTimer>

#include "qt/text_edge.h"

namespace zendrix::qt {

QRadioButton* MakeOptionButton(widgets::OptionButton& option, const Toolkit& kit) {
  auto* widget = new QRadioButton;
  BindControl(option, widget);
  Reflect(widget, option.caption, [widget](const std::string& text) {
    widget->setText(WithoutAccessKeys(ToQt(text)));
    widget->setAccessibleName(ToQt(text));
  });
  Reflect(widget, option.checked, [widget](bool checked) {
    // The toolkit lets nobody clear the last checked button of an exclusive group.
    widget->setAutoExclusive(checked);
    widget->setChecked(checked);
    widget->setAutoExclusive(true);
  });
  QObject::connect(widget, &QRadioButton::clicked, widget,
                   [&option, guard = &kit.guard] { (*guard)(option.name(), [&] { option.Click(); }); });
  // An assistive program checks it without a click.
  QObject::connect(widget, &QRadioButton::toggled, widget, [widget, &option] {
    QTimer::singleShot(0, widget, [widget, &option] {
      if (widget->isChecked() && !option.checked) emit widget->clicked(true);
    });
  });
  return widget;
}

}  // namespace zendrix::qt
