// A window that can be opened again and again: one form per opening, since a form that has unloaded is not
// shown any more.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "widgets/form_host.h"

namespace zendrix::widgets {

template <class Window>
class Reopened {
 public:
  // The form while it is open, else one that is made anew from `args`. A former one stays until its window
  // has gone: it may have been closed from inside one of its own clicks, which still runs.
  template <class... Args>
  Window& Open(FormHost& host, Args&&... args) {
    std::erase_if(former_, [&](const auto& former) { return !host.HasWindow(*former); });
    if (!window_ || !window_->loaded()) {
      if (window_ && host.HasWindow(*window_)) former_.push_back(std::move(window_));
      window_ = std::make_unique<Window>(std::forward<Args>(args)...);
    }
    return *window_;
  }

  // The latest form, or null; it may have unloaded.
  Window* get() const { return window_.get(); }

 private:
  std::unique_ptr<Window> window_;
  std::vector<std::unique_ptr<Window>> former_;
};

}  // namespace zendrix::widgets
