// Puts forms on the screen. The logic shows a form and never knows what shows it: windows of a toolkit, a
// script of a test, or nothing at all on a terminal. What loading, disabling and modality mean is settled
// here and in the list of open forms, so that it is the same for all of them.
//
// A new window costs one form, one view and one line in the table of views (qt/form_views.cc).
#pragma once

#include "widgets/form.h"

namespace zendrix::widgets {

struct ShowOptions {
  Form* owner = nullptr;  // the window stays above this form's
  bool on_top = false;    // and above the windows of other programs
  bool take_focus = true;
  bool modal = false;  // set by ShowModal
};

class FormHost {
 public:
  virtual ~FormHost() = default;
  FormHost() = default;
  FormHost(const FormHost&) = delete;
  FormHost& operator=(const FormHost&) = delete;

  // Makes the form's window, loads the form, shows it and returns. The form lives until it has unloaded, and
  // is not destroyed from inside its own unload. A form that has unloaded already is not shown.
  void Show(Form& form, const ShowOptions& options = {});
  // The same, and returns when the form has unloaded or hidden. Every other form is disabled meanwhile; the
  // event loop runs, so anything may have changed when this returns. A form that has unloaded, or whose
  // opening raised, has no window any more then: the caller may destroy it at once.
  void ShowModal(Form& form, Form* owner = nullptr);
  // Whether the form's window is still there. That of a form which has unloaded goes when no handler of its
  // own runs any more; behind it the form may be destroyed.
  virtual bool HasWindow(const Form& form) const = 0;

 protected:
  // Makes a window that reflects the form, if it has none yet, and does not show it: the window follows
  // `visible`.
  virtual void MakeWindow(Form& form, const ShowOptions& options) = 0;
  // Serves the event loop until the form is not visible any more.
  virtual void RunModal(Form& form) = 0;
  // Destroys the form's window now, if it has one; none of the window's own handlers runs.
  virtual void TakeDown(const Form& form) = 0;

 private:
  class Opening;
  bool PutUp(Form& form, const ShowOptions& options);
};

// Shows nothing: a modal form is closed as soon as it is open. For runs without anybody to look at windows.
class HiddenForms : public FormHost {
 public:
  bool HasWindow(const Form&) const override { return false; }

 protected:
  void MakeWindow(Form&, const ShowOptions&) override {}
  void RunModal(Form& form) override { form.Unload(UnloadCause::kCloseBox); }
  void TakeDown(const Form&) override {}
};

}  // namespace zendrix::widgets
