#include "home/views.h"

namespace zendrix::home {

const char* CaptionOf(int view) {
  switch (view) {
    case kAlertsView:
      return "Alerts";
    case kAdvancedView:
      return "Advanced";
    case kOptionsView:
      return "Options";
    case kHelpView:
      return "Help";
    case kQuitView:
      return "Quit";
    default:
      return "Summary";
  }
}

std::string Indexed(const char* name, int view) {
  return std::string(name) + "(" + std::to_string(view) + ")";
}

}  // namespace zendrix::home
