#include "qt/text_edge.h"

#include "platform/windows_1252.h"

namespace zendrix::qt {

QString ToQt(std::string_view bytes) {
  return QString::fromStdString(platform::Utf8FromBytes(bytes));
}

std::string FromQt(const QString& text) {
  return platform::BytesFromUtf8(text.toStdString());
}

QString ToolTipText(std::string_view bytes) {
  if (bytes.empty()) return {};
  return QStringLiteral("<span style=\"white-space:pre-wrap\">") + ToQt(bytes).toHtmlEscaped() +
         QStringLiteral("</span>");
}

QString WithoutAccessKeys(const QString& text) {
  return QString(text).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

QString WithAccessKey(const QString& text, QChar key) {
  const qsizetype at = key.isNull() ? -1 : text.indexOf(key, 0, Qt::CaseInsensitive);
  if (at < 0) return WithoutAccessKeys(text);
  return WithoutAccessKeys(text.left(at)) + QLatin1Char('&') + WithoutAccessKeys(text.mid(at));
}

QString PathToQt(const std::string& path) {
  return QString::fromUtf8(path.data(), static_cast<qsizetype>(path.size()));
}

std::string PathFromQt(const QString& path) {
  return path.toStdString();
}

}  // namespace zendrix::qt
