#include "qt/qt_dialogs.h"

#include <QApplication>
#include <QFileDialog>
#include <QMessageBox>

#include "qt/text_edge.h"

namespace zendrix::qt {

namespace {

QMessageBox::Icon IconOf(platform::BoxIcon icon) {
  switch (icon) {
    case platform::BoxIcon::kInformation:
      return QMessageBox::Information;
    case platform::BoxIcon::kQuestion:
      return QMessageBox::Question;
    case platform::BoxIcon::kExclamation:
      return QMessageBox::Warning;
    case platform::BoxIcon::kStop:
      return QMessageBox::Critical;
    default:
      return QMessageBox::NoIcon;
  }
}

// "label|pattern;pattern|label|pattern" as the toolkit writes it: "label (pattern pattern);;label (pattern)".
QString FilterOf(const std::string& filter) {
  const QStringList parts = ToQt(filter).split(QLatin1Char('|'));
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
    filters << parts[i] + QStringLiteral(" (") +
                   QString(parts[i + 1]).replace(QLatin1Char(';'), QLatin1Char(' ')) + QLatin1Char(')');
  return filters.join(QStringLiteral(";;"));
}

}  // namespace

platform::BoxAnswer QtMessageBoxes::Show(const platform::BoxRequest& request) {
  using platform::BoxAnswer;
  QMessageBox box(QApplication::activeWindow());
  box.setObjectName(QStringLiteral("messageBox"));
  box.setTextFormat(Qt::PlainText);
  box.setWindowTitle(ToQt(request.title));
  box.setText(ToQt(request.text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
  box.setIcon(IconOf(request.icon));
  const bool question = request.buttons == platform::BoxButtons::kYesNo;
  box.setStandardButtons(question ? QMessageBox::Yes | QMessageBox::No
                                  : QMessageBox::StandardButtons(QMessageBox::Ok));
  box.setDefaultButton(question ? QMessageBox::No : QMessageBox::Ok);
  if (question) box.setEscapeButton(QMessageBox::No);
  const int answer = box.exec();
  if (!question) return BoxAnswer::kOk;
  return answer == QMessageBox::Yes ? BoxAnswer::kYes : BoxAnswer::kNo;
}

std::string QtFileDialogs::Choose(const platform::FileRequest& request) {
  QWidget* parent = QApplication::activeWindow();
  const QString start = PathToQt(request.folder) + QLatin1Char('/') + ToQt(request.name);
  const QString path =
      request.saving
          ? QFileDialog::getSaveFileName(parent, ToQt(request.title), start, FilterOf(request.filter))
          : QFileDialog::getOpenFileName(parent, ToQt(request.title), start, FilterOf(request.filter));
  return PathFromQt(path);
}

}  // namespace zendrix::qt
