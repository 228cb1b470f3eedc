#include "widgets/form.h"

#include <algorithm>

namespace zendrix::widgets {

Form::Form(FormList& forms, std::string name) : forms_(forms), name_(std::move(name)) {
  forms_.open_.push_back(this);
}

Form::~Form() {
  std::erase(forms_.open_, this);
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
  std::erase(forms_.open_, this);
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

}  // namespace zendrix::widgets
