#include "qt/bind_label.h"

#include <QLabel>
#include <QPushButton>

#include "qt/text_edge.h"

namespace zendrix::qt {

namespace {

// What the flags and signs say, for those who do not see them.
QString WordsOf(const QString& key) {
  if (key == QLatin1String("FlagG")) return QStringLiteral("Good");
  if (key == QLatin1String("FlagY")) return QStringLiteral("Needs attention");
  if (key == QLatin1String("FlagR")) return QStringLiteral("Needs immediate attention");
  return {};
}

}  // namespace

QLabel* MakeLabel(widgets::Label& label, const Toolkit& kit, bool with_colour) {
  auto* widget = new QLabel;
  widget->setTextFormat(Qt::PlainText);
  widget->setWordWrap(true);
  BindControl(label, widget);
  Reflect(widget, label.caption, [widget](const std::string& text) { widget->setText(ToQt(text)); });
  if (with_colour) {
    Theme* theme = &kit.theme;
    Reflect(widget, label.fore_colour, [widget, theme](widgets::Colour colour) {
      widget->setStyleSheet(QStringLiteral("color: ") + theme->ColourOf(colour).name());
    });
  }
  return widget;
}

QPushButton* MakeButton(widgets::Label& label, const char* role, const Toolkit& kit) {
  auto* widget = new QPushButton;
  widget->setProperty("role", QString::fromLatin1(role));
  widget->setCursor(Qt::PointingHandCursor);
  BindControl(label, widget);
  Reflect(widget, label.caption, [widget](const std::string& text) {
    widget->setText(WithoutAccessKeys(ToQt(text)));
    widget->setAccessibleName(ToQt(text));
  });
  QObject::connect(widget, &QPushButton::pressed, widget,
                   [&label, guard = &kit.guard] { (*guard)(label.name(), [&] { label.MouseDown(); }); });
  QObject::connect(widget, &QPushButton::clicked, widget, [&label, guard = &kit.guard] {
    (*guard)(label.name(), [&] {
      label.bordered = false;
      label.clicked.Raise();
    });
  });
  return widget;
}

QLabel* MakeImage(widgets::Image& image, int edge, const Toolkit& kit) {
  auto* widget = new QLabel;
  widget->setFixedSize(edge, edge);
  BindControl(image, widget);
  Pictures* pictures = &kit.pictures;
  Reflect(widget, image.picture, [widget, pictures, edge](const std::string& key) {
    const QString name = ToQt(key);
    widget->setPixmap(name.isEmpty() ? QPixmap()
                                     : pictures->Pixmap(QStringLiteral("lst32/") + name, edge,
                                                        widget->devicePixelRatioF()));
    widget->setAccessibleName(WordsOf(name));
    widget->setToolTip(WordsOf(name));
  });
  return widget;
}

}  // namespace zendrix::qt
