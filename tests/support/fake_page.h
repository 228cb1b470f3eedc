// A browser page for tests: writes down what it is told, and gets to its pages when the test says so.
#pragma once

#include <functional>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "widgets/browser_view.h"

namespace zendrix::testing {

class FakePage : public widgets::BrowserPage {
 public:
  explicit FakePage(widgets::BrowserView& view) : view_(view) { view.SetPage(this); }
  ~FakePage() override { view_.SetPage(nullptr); }

  // What happens when the page is told to go somewhere; by default it is there at once.
  std::function<void()> on_navigate = [this] { view_.NavigationComplete.Raise(); };

  std::vector<std::string> events;  // "navigate ...", "body ...", "script ...", "stop"
  std::map<std::string, std::string> display;
  std::map<std::string, std::string> first_child_text;
  bool has_document = true;

  void Navigate(const std::string& url) override {
    events.push_back("navigate " + url);
    if (on_navigate) on_navigate();
  }
  bool SetBodyHtml(const std::string& html) override {
    if (has_document) events.push_back("body " + html);
    return has_document;
  }
  bool AddScript(const std::string& script) override {
    if (has_document) events.push_back("script " + script);
    return has_document;
  }
  void AskDisplay(const std::string& id, std::function<void(std::optional<std::string>)> then) override {
    const auto found = display.find(id);
    then(found == display.end() ? std::nullopt : std::optional(found->second));
  }
  void SetDisplay(const std::string& id, const std::string& value) override { display[id] = value; }
  void SetFirstChildText(const std::string& id, const std::string& text) override {
    first_child_text[id] = text;
  }
  void Stop() override { events.push_back("stop"); }

 private:
  widgets::BrowserView& view_;
};

}  // namespace zendrix::testing
