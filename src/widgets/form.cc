#include "widgets/form.h"

#include <algorithm>

namespace zendrix::widgets {

Form::Form(FormList& forms, std::string name) : forms_(forms), name_(std::move(name)) {
  forms_.open_.push_back(this);
}

Form::~Form() {
  std::erase(forms_.open_, this);
}

bool Form::Unload(UnloadCause cause) {
  if (!loaded_) return true;
  if (!QueryUnload(cause)) return false;
  loaded_ = false;
  OnUnload();
  visible = false;
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
