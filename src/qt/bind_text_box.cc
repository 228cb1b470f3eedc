#include "qt/bind_text_box.h"

#include <QCoreApplication>
#include <QFocusEvent>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPointer>
#include <QTimer>
#include <QValidator>
#include <algorithm>

#include "qt/text_edge.h"

namespace zendrix::qt {
namespace {

// Takes what the field takes, typed, pasted or dropped. A text that the program put there may hold more; it
// can be edited, but gets no further such characters.
class KeyRule : public QValidator {
 public:
  KeyRule(widgets::TextBox& box, QObject* parent) : QValidator(parent), box_(box) {}
  State validate(QString& input, int&) const override {
    return Refused(FromQt(input)) <= Refused(box_.text) ? Acceptable : Invalid;
  }

 private:
  std::ptrdiff_t Refused(const std::string& text) const {
    return std::count_if(text.begin(), text.end(), [this](char key) { return !box_.Takes(key); });
  }
  widgets::TextBox& box_;
};

// Swallows the press of a mouse button that is on its way: the keyboard moves before the press arrives.
class PressSwallower : public QObject {
 public:
  PressSwallower() {
    QCoreApplication::instance()->installEventFilter(this);
    QTimer::singleShot(0, this, &QObject::deleteLater);
  }
  bool eventFilter(QObject* receiver, QEvent* event) override {
    const bool press =
        event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonDblClick;
    if (!press || !receiver->isWidgetType()) return false;
    QCoreApplication::instance()->removeEventFilter(this);
    return true;
  }
};

class TextField : public QLineEdit {
 public:
  TextField(widgets::TextBox& box, const QString& accessible_name, const Toolkit& kit)
      : box_(box), guard_(kit.guard) {
    BindControl(box, this, accessible_name);
    setValidator(new KeyRule(box, this));
    Reflect(this, box.text, [this](const std::string&) { ShowText(); });
    Keep(this, box.mark_all.Connect([this] { selectAll(); }));
    setMaxLength(static_cast<int>(box.most));
    connect(this, &QLineEdit::textEdited, this, [this](const QString& now) {
      guard_(box_.name(), [&] { box_.Edit(FromQt(now)); });
      ShowText();
    });
    connect(this, &QLineEdit::inputRejected, this,
            [this] { guard_(box_.name(), [&] { box_.refused.Raise(); }); });
  }

 protected:
  void keyPressEvent(QKeyEvent* event) override {
    QLineEdit::keyPressEvent(event);
    const std::string key = FromQt(event->text());
    const bool types = key.size() == 1 && static_cast<unsigned char>(key[0]) >= ' ' && box_.Takes(key[0]);
    if (types || event->key() == Qt::Key_Backspace) guard_(box_.name(), [&] { box_.taken.Raise(); });
  }
  void focusInEvent(QFocusEvent* event) override {
    QLineEdit::focusInEvent(event);
    if (!BetweenControls(*event)) return;
    entered_by_mouse_ = event->reason() == Qt::MouseFocusReason;
    guard_(box_.name(), [&] { box_.Enter(); });
  }
  void focusOutEvent(QFocusEvent* event) override {
    QLineEdit::focusOutEvent(event);
    if (!BetweenControls(*event) || !box_.has_keyboard()) return;
    if (!isVisible() || !isEnabled()) return box_.Lose();
    const Qt::FocusReason reason = event->reason();
    const QPointer<TextField> alive(this);
    bool may = true;
    guard_(box_.name(), [&] { may = box_.Leave(); });
    if (alive && !may && reason == Qt::MouseFocusReason) new PressSwallower;
  }
  // The press that brought the keyboard would put the cursor where the pointer is.
  void mousePressEvent(QMouseEvent* event) override {
    QLineEdit::mousePressEvent(event);
    if (std::exchange(entered_by_mouse_, false)) selectAll();
  }

 private:
  static bool BetweenControls(const QFocusEvent& event) {
    return event.reason() != Qt::ActiveWindowFocusReason && event.reason() != Qt::PopupFocusReason &&
           event.reason() != Qt::MenuBarFocusReason;
  }
  // A character that the files cannot hold is shown as what became of it.
  void ShowText() {
    const QString wanted = ToQt(box_.text.Get());
    if (text() == wanted) return;
    const int cursor = cursorPosition();
    setText(wanted);
    setCursorPosition(cursor);
  }

  widgets::TextBox& box_;
  SlotGuard& guard_;
  bool entered_by_mouse_ = false;
};

}  // namespace

QLineEdit* MakeTextBox(widgets::TextBox& box, const QString& accessible_name, const Toolkit& kit) {
  return new TextField(box, accessible_name, kit);
}

}  // namespace zendrix::qt
