#include "qt/bind_label.h"

#include <QKeyEvent>
#include <QLabel>
#include <QPushButton>
#include <string_view>

#include "qt/text_edge.h"

namespace zendrix::qt {
namespace {

// Looks like a text and acts like a button, also for Enter, which the toolkit keeps for dialogs.
class TextButton : public QPushButton {
 protected:
  void keyPressEvent(QKeyEvent* event) override {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!enter) return QPushButton::keyPressEvent(event);
    event->accept();
    if (!event->isAutoRepeat()) click();
  }
};

}  // namespace

QLabel* MakeLabel(widgets::Label& label, const Toolkit& kit, bool with_colour) {
  auto* widget = new QLabel;
  widget->setTextFormat(Qt::PlainText);
  widget->setWordWrap(true);
  BindControl(label, widget);
  Reflect(widget, label.caption, [widget](const std::string& text) {
    widget->setText(ToQt(text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
  });
  if (with_colour) {
    Theme* theme = &kit.theme;
    Reflect(widget, label.fore_colour, [widget, theme](widgets::Colour colour) {
      widget->setStyleSheet(QStringLiteral("color: ") + theme->ColourOf(colour).name());
    });
  }
  return widget;
}

QLabel* MakeFieldLabel(widgets::Label& label, QWidget* field, QChar access_key, const Toolkit& kit) {
  QLabel* widget = MakeLabel(label, kit);
  widget->setWordWrap(false);
  widget->setBuddy(field);
  Reflect(widget, label.caption, [widget, access_key](const std::string& text) {
    widget->setText(WithAccessKey(ToQt(text), access_key));
  });
  return widget;
}

QLabel* MakeWarning(widgets::Label& label, const Toolkit& kit) {
  QLabel* widget = MakeLabel(label, kit);
  widget->setProperty("role", QStringLiteral("warning"));
  widget->setFocusPolicy(Qt::TabFocus);
  Reflect(widget, label.caption,
          [widget](const std::string& text) { widget->setAccessibleName(ToQt(text)); });
  return widget;
}

QPushButton* MakeButton(widgets::Label& label, const char* role, const Toolkit& kit) {
  auto* widget = new TextButton;
  widget->setProperty("role", QString::fromLatin1(role));
  widget->setCursor(Qt::PointingHandCursor);
  BindControl(label, widget);
  Reflect(widget, label.caption, [widget](const std::string& text) {
    widget->setText(WithoutAccessKeys(ToQt(text)));
    widget->setAccessibleName(ToQt(text));
  });
  if (std::string_view(role) == "flat") {
    QObject::connect(widget, &QPushButton::pressed, widget,
                     [&label, guard = &kit.guard] { (*guard)(label.name(), [&] { label.MouseDown(); }); });
    QObject::connect(widget, &QPushButton::released, widget,
                     [&label, guard = &kit.guard] { (*guard)(label.name(), [&] { label.MouseUp(); }); });
  }
  QObject::connect(widget, &QPushButton::clicked, widget,
                   [&label, guard = &kit.guard] { (*guard)(label.name(), [&] { label.clicked.Raise(); }); });
  return widget;
}

}  // namespace zendrix::qt
