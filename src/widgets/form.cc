#include "widgets/form.h"

#include <algorithm>

namespace zendrix::widgets {

Form::Form(FormList& forms, std::string name) : forms_(forms), name_(std::move(name)) {
  forms_.open_.push_back(this);
}

Form::~Form() {
  forms_.Leave(this);
}

void Form::Load() {
  if (was_loaded_ || !loaded_) return;
  was_loaded_ = true;
  OnLoad();
}

void Form::BringUp() {
  if (state.Get() == WindowState::kMinimised) state = WindowState::kNormal;
  visible = true;
  bring_forward.Raise();
}

// Each step may run the message loop or tell others, and one of them may unload or destroy the form.
bool Form::Unload(UnloadCause cause) {
  if (!loaded_) return true;
  const std::weak_ptr<void> form = alive_;
  const bool granted = QueryUnload(cause);
  if (form.expired() || !loaded_) return true;
  if (!granted) return false;
  loaded_ = false;
  OnUnload();
  if (!form.expired()) visible = false;
  if (form.expired()) return true;
  forms_.Leave(this);
  unloaded.Raise();
  return true;
}

bool FormList::IsFormLoaded(const std::string& name) const {
  return Find(name) != nullptr;
}

Form* FormList::Find(const std::string& name) const {
  const auto found =
      std::find_if(open_.begin(), open_.end(), [&](const Form* form) { return form->name() == name; });
  return found == open_.end() ? nullptr : *found;
}

void FormList::Leave(Form* form) {
  std::erase(open_, form);
  for (ModalScope* scope : modal_) std::erase(scope->disabled_, form);
}

ModalScope::ModalScope(FormList& forms, const Form* modal) : forms_(forms) {
  forms_.modal_.push_back(this);
  // A listener of `enabled` may open or close forms: no iterator outlives a step.
  const std::vector<Form*> open = forms_.open_;
  for (Form* form : open) {
    if (form == modal || std::find(forms_.open_.begin(), forms_.open_.end(), form) == forms_.open_.end())
      continue;
    if (!form->enabled) continue;
    disabled_.push_back(form);
    form->enabled = false;
  }
}

ModalScope::~ModalScope() {
  std::erase(forms_.modal_, this);
  while (!disabled_.empty()) {
    Form* form = disabled_.back();
    disabled_.pop_back();
    form->enabled = true;
  }
}

}  // namespace zendrix::widgets
