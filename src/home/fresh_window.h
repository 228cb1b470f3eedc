// A window that can be opened again and again: one object per opening, since a form that has unloaded is not
// shown any more.
#pragma once

#include <memory>
#include <utility>

#include "core/app_state.h"

namespace zendrix::home {

// The form in `slot` while it is open, else one that is made anew from `args`. The former one's window is
// destroyed in front of it; no procedure of it may still be under way that touches it afterwards.
template <class Window, class... Args>
Window& Fresh(core::AppState& state, std::unique_ptr<Window>& slot, Args&&... args) {
  if (!slot || !slot->loaded()) {
    if (slot) state.host().Forget(*slot);
    slot = std::make_unique<Window>(std::forward<Args>(args)...);
  }
  return *slot;
}

}  // namespace zendrix::home
