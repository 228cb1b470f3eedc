// A small window in the corner of the active screen: it takes the keyboard from nobody when it comes, and can
// be reached by it from then on. No button of it is the default one, so that a key pressed for another window
// decides nothing. Where the desktop lets no window choose its place, the desktop places it.
#pragma once

#include "qt/bind_form.h"
#include "widgets/check_box.h"
#include "widgets/label.h"

class QLabel;

namespace zendrix::qt {

class PopUpWindow : public FormDialog {
 public:
  // The buttons stand in one row, the last of them at its end.
  struct Parts {
    widgets::Label& title;
    widgets::Label& message;
    widgets::CheckBox& choice;
    std::vector<widgets::Label*> buttons;
    const char* picture;
  };
  PopUpWindow(widgets::Form& form, const Parts& parts, const Toolkit& kit);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  // As large as the texts ask for, in the corner, above one that is there already.
  void Settle();
  void LetTheKeyboardIn();

  QLabel* message_;
};

}  // namespace zendrix::qt
