// A page of the console's own in an embedded browser. It is no document from a file: the view goes to a blank
// page, and a text is written into its body once it is there. Event texts in it are escaped already; its
// links are the console's business, never the browser's. The details pane and the wizard stand on it.
#pragma once

#include <string>

#include "core/app_state.h"
#include "core/error_log.h"
#include "widgets/browser_view.h"

namespace zendrix::home {

class OwnPage {
 public:
  // `view` outlives the page.
  OwnPage(core::AppState& state, core::ErrorLog& log, widgets::BrowserView& view);
  OwnPage(const OwnPage&) = delete;
  OwnPage& operator=(const OwnPage&) = delete;

  // Goes to one of the console's own "About:" pages.
  void Navigate(const std::string& url) { view_.Navigate(url); }
  // Goes to this page, serves the event loop until it is there, and writes `html` into its body, as it stands
  // by then: what the caller has made of it meanwhile is the newer page. False when ten seconds have passed,
  // or Stop was called: the page stays as it is then.
  bool Write(const std::string& url, const std::string& html);
  // Runs the verified script file at the end of the page; what keeps it from that is logged under `place`.
  void AddScripts(const std::string& place);
  // A person's click on a link of the portal, "http://" or "https://", opens the user's browser; a failure is
  // logged under `place`. False when the address is no such link.
  bool OpenedLink(const std::string& url, const std::string& place);
  // Ends whatever loads or waits; nothing is written any more.
  void Stop();

  widgets::BrowserView& view() { return view_; }

 private:
  core::AppState& app_;
  core::ErrorLog& log_;
  widgets::BrowserView& view_;
  bool DocumentReady_ = false;  // the view reached the end of a navigation
  bool stopped_ = false;
};

}  // namespace zendrix::home
