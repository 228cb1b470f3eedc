// A view of one page. `about_text` is the plain text of the page that stands there while no alert is on show.
#pragma once

#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

class BrowserView : public Control {
 public:
  explicit BrowserView(std::string name) : Control(std::move(name)) {}
  Observed<std::string> about_text;
  // Ends whatever the view is loading.
  Signal<> stop;
};

}  // namespace zendrix::widgets
