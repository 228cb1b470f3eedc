// An embedded browser that shows pages of the portal, as the logic sees it: it is told where to go, asks
// before every navigation, and says what became of each. What shows it on the screen is a PortalBrowser,
// which may come late: the page that was asked for last waits for it. Addresses are as the browser writes
// them.
#pragma once

#include <functional>
#include <string>
#include <utility>

#include "widgets/control.h"

namespace zendrix::widgets {

// The toolkit's side.
class PortalBrowser {
 public:
  virtual ~PortalBrowser() = default;
  virtual void Navigate(const std::string& url) = 0;
  // One step in the history; nothing where there is none.
  virtual void GoBack() = 0;
  virtual void GoForward() = 0;
  // Ends whatever is loading.
  virtual void Stop() = 0;
};

class PortalView : public Control {
 public:
  // The commands of CommandStateChange.
  static constexpr int kForward = 1;
  static constexpr int kBack = 2;

  explicit PortalView(std::string name) : Control(std::move(name)) {}

  // The browser is not owned and must stay alive while it is set; null removes it.
  void SetBrowser(PortalBrowser* browser) {
    browser_ = browser;
    if (browser_ && !awaited_.empty()) browser_->Navigate(std::exchange(awaited_, {}));
  }

  void Navigate(const std::string& url) {
    ready = false;
    if (browser_)
      browser_->Navigate(url);
    else
      awaited_ = url;
  }
  void GoBack() {
    if (browser_) browser_->GoBack();
  }
  void GoForward() {
    if (browser_) browser_->GoForward();
  }
  void Stop() {
    awaited_.clear();
    if (browser_) browser_->Stop();
  }
  // Where it will go as soon as there is a browser.
  const std::string& awaited() const { return awaited_; }

  // Nothing is on its way; told by the browser.
  bool ready = false;
  // Asked before every navigation of the page or a frame in it, whoever causes it, and for everything that
  // the page fetches; true cancels. Nothing may go anywhere where nobody answers.
  std::function<bool(const std::string& url)> BeforeNavigate;
  bool Cancels(const std::string& url) const { return !BeforeNavigate || BeforeNavigate(url); }
  // A page is there.
  Signal<> NavigateComplete;
  // The page that it was on its way to cannot be shown. A navigation that was cancelled is no error.
  Signal<> NavigateError;
  // Whether a step in the history is possible: `command` is kForward or kBack. Neither is at first.
  Signal<int, bool> CommandStateChange;

 private:
  PortalBrowser* browser_ = nullptr;
  std::string awaited_;
};

}  // namespace zendrix::widgets
