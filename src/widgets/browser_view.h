// An embedded browser, as the logic sees it: it is told where to go, says when it got there, asks before
// every navigation, and lets its document be written. What shows it on the screen is a BrowserPage; without
// one (on a terminal, in a test of something else) every navigation ends at once and nothing is shown.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "widgets/control.h"

namespace zendrix::widgets {

// The toolkit's side. Texts are single-byte (Windows-1252).
class BrowserPage {
 public:
  virtual ~BrowserPage() = default;
  // Goes to one of the console's own "About:" pages; reports to BrowserView::NavigationComplete when it is
  // there.
  virtual void Navigate(const std::string& url) = 0;
  // The document's body: replaces what is in it, or runs a verified script at its end. False when there is no
  // document.
  virtual bool SetBodyHtml(const std::string& html) = 0;
  virtual bool AddScript(const std::string& script) = 0;
  // The display style of an element, told to `then` when it is known; nothing when there is no such element.
  virtual void AskDisplay(const std::string& id, std::function<void(std::optional<std::string>)> then) = 0;
  virtual void SetDisplay(const std::string& id, const std::string& display) = 0;
  // The text of an element's first child.
  virtual void SetFirstChildText(const std::string& id, const std::string& text) = 0;
  // Ends whatever is loading.
  virtual void Stop() = 0;
};

class BrowserView : public Control {
 public:
  explicit BrowserView(std::string name) : Control(std::move(name)) {}

  // The page is not owned and must stay alive while it is set; null removes it.
  void SetPage(BrowserPage* page) { page_ = page; }
  BrowserPage* page() const { return page_; }

  void Navigate(const std::string& url) {
    subject_.clear();
    if (page_)
      page_->Navigate(url);
    else
      NavigationComplete.Raise();
  }

  // What the document on show explains, from now to the next navigation.
  void SetSubject(std::string subject) { subject_ = std::move(subject); }
  // Empty when it explains nothing.
  const std::string& subject() const { return subject_; }

  // The browser reached the end of a navigation.
  Signal<> NavigationComplete;
  // Asked before every navigation that a person's click in the main frame causes; true cancels it. `subject`
  // is what the document explained at the moment of the click: another one may be on show by now.
  std::function<bool(const std::string& url, const std::string& subject)> BeforeNavigate;

 private:
  BrowserPage* page_ = nullptr;
  std::string subject_;
};

}  // namespace zendrix::widgets
