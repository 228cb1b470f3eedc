#include "widgets/form_host.h"

namespace zendrix::widgets {

// Also the way out of an exception: a form on the stack unloads in its destructor, and a window that waited
// for the event loop to destroy it would outlive it.
class FormHost::Opening {
 public:
  Opening(FormHost& host, const Form& form) : host_(host), form_(form) {}
  ~Opening() {
    if (!ended || !form_.loaded()) host_.TakeDown(form_);
  }
  Opening(const Opening&) = delete;
  Opening& operator=(const Opening&) = delete;

  bool ended = false;

 private:
  FormHost& host_;
  const Form& form_;
};

bool FormHost::PutUp(Form& form, const ShowOptions& options) {
  if (!form.loaded()) return false;
  MakeWindow(form, options);
  if (options.on_top) form.on_top = true;
  form.Load();
  if (!form.loaded()) return false;
  form.visible = true;
  if (options.take_focus) form.Activate();
  return form.loaded() && form.visible;
}

void FormHost::Show(Form& form, const ShowOptions& options) {
  PutUp(form, options);
}

void FormHost::ShowModal(Form& form, Form* owner) {
  ShowOptions options;
  options.owner = owner;
  options.modal = true;
  const ModalScope modal(form.list(), &form);
  Opening opening(*this, form);
  if (PutUp(form, options)) RunModal(form);
  opening.ended = true;
}

}  // namespace zendrix::widgets
