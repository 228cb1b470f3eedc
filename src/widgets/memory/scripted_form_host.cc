#include "widgets/memory/scripted_form_host.h"

#include <stdexcept>
#include <utility>

namespace zendrix::widgets {

void ScriptedFormHost::MakeWindow(Form& form, const ShowOptions& options) {
  shown.push_back({form.name(), options.owner ? options.owner->name() : "", options.on_top,
                   options.take_focus, options.modal});
  if (on_show) on_show(form);
}

void ScriptedFormHost::RunModal(Form& form) {
  auto& scripts = scripts_[form.name()];
  if (scripts.empty())
    throw std::logic_error("a modal form that no script was announced for: " + form.name());
  const Script script = std::move(scripts.front());
  scripts.pop_front();
  script(form);
  if (form.loaded() && form.visible) form.Unload(UnloadCause::kCloseBox);
}

}  // namespace zendrix::widgets
