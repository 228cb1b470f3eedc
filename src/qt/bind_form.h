// A top-level window that stands for a form: title, place, state and visibility go both ways; the close box
// asks the form, which usually hides.
#pragma once

#include <QDialog>
#include <QMainWindow>

#include "qt/bind.h"
#include "widgets/form.h"

namespace zendrix::qt {

class FormWindow : public QMainWindow {
 public:
  FormWindow(widgets::Form& form, const Toolkit& kit, Qt::WindowFlags flags = Qt::Window);

 protected:
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void moveEvent(QMoveEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

  const Toolkit& kit() const { return kit_; }
  bool escape_closes = false;

 private:
  void BindPlace();
  void ShowInState();
  void TellPlace();

  widgets::Form& form_;
  Toolkit kit_;
  bool applying_ = false;
};

// A dialog that stands for a form: closing it in any way unloads the form.
class FormDialog : public QDialog {
 public:
  FormDialog(widgets::Form& form, const Toolkit& kit);

 protected:
  // In the middle of its owner, or of the screen if the form asks for that; as large as its texts ask for:
  // they are known only when the form has loaded.
  void showEvent(QShowEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void changeEvent(QEvent* event) override;
  void reject() override;

 private:
  widgets::Form& form_;
  Toolkit kit_;
  bool in_screen_ = false;
};

}  // namespace zendrix::qt
