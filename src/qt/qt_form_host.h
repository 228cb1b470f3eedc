// Shows forms as windows of the toolkit.
#pragma once

#include <QPointer>
#include <QWidget>
#include <vector>

#include "qt/bind.h"
#include "widgets/form_host.h"

namespace zendrix::qt {

class QtFormHost : public widgets::FormHost {
 public:
  explicit QtFormHost(const Toolkit& kit) : kit_(kit) {}
  // Takes the windows down; the forms must still be there.
  ~QtFormHost() override;
  bool HasWindow(const widgets::Form& form) const override;

 protected:
  void MakeWindow(widgets::Form& form, const widgets::ShowOptions& options) override;
  void RunModal(widgets::Form& form) override;
  void TakeDown(const widgets::Form& form) override;

 private:
  struct Window {
    const widgets::Form* form;
    QPointer<QWidget> view;
    widgets::Connection unloaded;
  };
  QWidget* Find(const widgets::Form* form) const;
  // The window of a form that has unloaded goes when no handler of its own runs any more.
  void LetGo(const widgets::Form* form);

  Toolkit kit_;
  std::vector<Window> windows_;
  std::vector<Window> leaving_;  // those of unloaded forms, until the event loop has destroyed them
};

}  // namespace zendrix::qt
