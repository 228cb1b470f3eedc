#include "qt/bind_image.h"

#include <QLabel>

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
