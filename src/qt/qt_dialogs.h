// Message boxes and file dialogs of the platform seam on the toolkit's. While one is open, every open form
// counts as disabled, as it does under any modal window of the program.
#pragma once

#include <vector>

#include "platform/dialogs.h"
#include "widgets/form.h"

namespace zendrix::qt {

// Disables all forms that are open now, until its end.
class ModalScope {
 public:
  explicit ModalScope(widgets::FormList* forms);
  ~ModalScope();
  ModalScope(const ModalScope&) = delete;
  ModalScope& operator=(const ModalScope&) = delete;

 private:
  widgets::FormList* forms_;
  std::vector<widgets::Form*> disabled_;
};

class QtMessageBoxes : public platform::MessageBoxes {
 public:
  void SetForms(widgets::FormList* forms) { forms_ = forms; }
  platform::BoxAnswer Show(const platform::BoxRequest& request) override;

 private:
  widgets::FormList* forms_ = nullptr;
};

class QtFileDialogs : public platform::FileDialogs {
 public:
  void SetForms(widgets::FormList* forms) { forms_ = forms; }
  std::string Choose(const platform::FileRequest& request) override;

 private:
  widgets::FormList* forms_ = nullptr;
};

}  // namespace zendrix::qt
