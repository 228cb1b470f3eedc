#include "widgets/form_host.h"

namespace zendrix::widgets {

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
  if (PutUp(form, options)) RunModal(form);
}

}  // namespace zendrix::widgets
