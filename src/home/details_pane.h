// The details pane of the Alerts view: the page that explains the selected alert, and the commands in it.
#pragma once

#include <string>

#include "alerts/alert_services.h"
#include "core/app_state.h"
#include "core/error_log.h"
#include "home/own_page.h"
#include "widgets/browser_view.h"
#include "widgets/screen.h"

namespace zendrix::home {

struct DetailsParts {
  core::AppState& state;
  core::ErrorLog& log;
  alerts::AlertServices& alerts;
  widgets::Screen& screen;
};

class DetailsPane {
 public:
  DetailsPane(DetailsParts parts, widgets::BrowserView& view);

  // The standard about-page for a plain text.
  void ShowText(const std::string& text);
  // Looks the alert up and shows its explanation. Serves the event loop until the blank page is there, ten
  // seconds at the most; then the page stays blank.
  void ShowAlert(const alerts::ListedAlert& alert);
  // What a person's click in the page means; true cancels the navigation. A command is about the alert that
  // the page explained when it was clicked (`subject`), whatever has been shown or looked up since; the click
  // of a page that explained nothing commands nothing.
  bool BeforeNavigate(const std::string& url, const std::string& subject);
  void Stop() { page_.Stop(); }

 private:
  void Decide(alerts::Answer answer, const std::string& subject);
  void ToggleDetails();

  DetailsParts parts_;
  core::AppState& app_;
  OwnPage page_;
};

}  // namespace zendrix::home
