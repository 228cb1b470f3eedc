#include "qt/qt_dialogs.h"

#include <QApplication>
#include <QColorDialog>
#include <QFileDialog>
#include <QMessageBox>
#include <QPointer>

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

// A dialog over the active window. It goes with that window when that goes while the dialog is open, and is
// then answered as if it had been closed: so it never lives on the stack, and nothing touches it behind
// `exec` without asking whether it is still there.
template <class Dialog>
class OverActiveWindow {
 public:
  OverActiveWindow() : dialog_(new Dialog(QApplication::activeWindow())) {}
  ~OverActiveWindow() { delete dialog_.data(); }
  OverActiveWindow(const OverActiveWindow&) = delete;
  OverActiveWindow& operator=(const OverActiveWindow&) = delete;

  Dialog* operator->() const { return dialog_.data(); }
  Dialog* get() const { return dialog_.data(); }
  bool gone() const { return dialog_.isNull(); }

 private:
  QPointer<Dialog> dialog_;
};

// "label|pattern;pattern|label|pattern" as the toolkit writes it: "label (pattern pattern)", "label
// (pattern)".
// "*.*" stands for all files, whether or not there is a dot in their names.
QStringList FiltersOf(const std::string& filter) {
  const QStringList parts = ToQt(filter).split(QLatin1Char('|'));
  QStringList filters;
  for (qsizetype i = 0; i + 1 < parts.size(); i += 2)
    filters << parts[i] + QStringLiteral(" (") +
                   QString(parts[i + 1])
                       .replace(QLatin1Char(';'), QLatin1Char(' '))
                       .replace(QStringLiteral("*.*"), QStringLiteral("*")) +
                   QLatin1Char(')');
  return filters;
}

}  // namespace

platform::BoxAnswer QtMessageBoxes::Show(const platform::BoxRequest& request) {
  using platform::BoxAnswer;
  const OverActiveWindow<QMessageBox> box;
  box->setObjectName(QStringLiteral("messageBox"));
  box->setTextFormat(Qt::PlainText);
  box->setWindowTitle(ToQt(request.title));
  box->setText(ToQt(request.text).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
  box->setIcon(IconOf(request.icon));
  const bool question = request.buttons == platform::BoxButtons::kYesNo;
  box->setStandardButtons(question ? QMessageBox::Yes | QMessageBox::No
                                   : QMessageBox::StandardButtons(QMessageBox::Ok));
  box->setDefaultButton(question ? QMessageBox::No : QMessageBox::Ok);
  if (question) box->setEscapeButton(QMessageBox::No);
  const int answer = box->exec();
  if (!question) return BoxAnswer::kOk;
  return answer == QMessageBox::Yes ? BoxAnswer::kYes : BoxAnswer::kNo;
}

// The toolkit's one-call dialogs live on the stack.
std::string QtFileDialogs::Choose(const platform::FileRequest& request) {
  const OverActiveWindow<QFileDialog> dialog;
  dialog->setObjectName(QStringLiteral("fileDialog"));
  dialog->setWindowTitle(ToQt(request.title));
  dialog->setAcceptMode(request.saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  dialog->setFileMode(request.saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
  // The patterns stand in the labels already.
  dialog->setOption(QFileDialog::HideNameFilterDetails);
  const QStringList filters = FiltersOf(request.filter);
  dialog->setNameFilters(filters);
  dialog->selectNameFilter(filters.value(request.filter_index - 1));
  dialog->setSupportedSchemes({QStringLiteral("file")});
  dialog->setDirectory(PathToQt(request.folder));
  dialog->selectFile(ToQt(request.name));
  // Return in the list of suggestions accepts the dialog with the list still open. While any list is open the
  // toolkit does not notice which window becomes active, and no control would have the focus behind the
  // dialog.
  QObject::connect(dialog.get(), &QDialog::finished, dialog.get(), [] {
    if (QWidget* const suggestions = QApplication::activePopupWidget()) suggestions->close();
  });
  if (dialog->exec() != QDialog::Accepted || dialog.gone()) return {};
  return PathFromQt(dialog->selectedFiles().value(0));
}

// The toolkit's own dialog shows everything from the start, a desktop's may not.
std::optional<std::uint32_t> QtColourDialogs::Choose(const platform::ColourRequest& request) {
  const OverActiveWindow<QColorDialog> dialog;
  dialog->setObjectName(QStringLiteral("colourDialog"));
  dialog->setOption(QColorDialog::DontUseNativeDialog);
  dialog->setWindowTitle(ToQt(request.title));
  dialog->setCurrentColor(theme_.ColourOf(request.colour));
  if (dialog->exec() != QDialog::Accepted || dialog.gone()) return std::nullopt;
  return Theme::NumberOf(dialog->selectedColor());
}

}  // namespace zendrix::qt
