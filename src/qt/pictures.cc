#include "qt/pictures.h"

#include <QFileInfo>
#include <QPixmap>

#include "qt/text_edge.h"

namespace zendrix::qt {

Pictures::Pictures(const std::string& folder) : folder_(PathToQt(folder) + QStringLiteral("/Images/")) {}

QIcon Pictures::Icon(const QString& name) {
  const auto found = icons_.constFind(name);
  if (found != icons_.constEnd()) return *found;
  const QString path = folder_ + name + QStringLiteral(".svg");
  const QIcon icon = QFileInfo(path).isFile() ? QIcon(path) : QIcon();
  icons_.insert(name, icon);
  return icon;
}

QIcon Pictures::Numbered(const QString& list, int number) {
  if (number <= 0) return {};
  return Icon(QStringLiteral("%1/%2").arg(list).arg(number, 2, 10, QLatin1Char('0')));
}

QPixmap Pictures::Pixmap(const QString& name, int edge, qreal ratio) {
  return Icon(name).pixmap(QSize(edge, edge), ratio);
}

}  // namespace zendrix::qt
