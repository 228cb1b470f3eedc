#include "qt/bind_browser_view.h"

#include <QBoxLayout>
#include <QWebEngineView>

#include "qt/details_page.h"

namespace zendrix::qt {
namespace {

// The view shows the page and lets go of it before the page is destroyed.
class Browser : public QWebEngineView {
 public:
  Browser(widgets::BrowserView& view, const Toolkit& kit, std::function<void()> navigated)
      : page_(
            kit.pictures.folder(), kit.theme, [&view] { return view.subject(); },
            [&view, guard = &kit.guard](const std::string& url, const std::string& subject) {
              (*guard)(view.name(), [&] {
                if (view.BeforeNavigate) view.BeforeNavigate(url, subject);
              });
            },
            std::move(navigated)) {
    setPage(&page_);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(false);
  }
  ~Browser() override { setPage(nullptr); }

  DetailsPage& page() { return page_; }

 private:
  DetailsPage page_;
};

// Stands in for the page until somebody sees it, and then brings the page to where the logic believes it is.
class BrowserPlace : public QWidget, public widgets::BrowserPage {
 public:
  BrowserPlace(widgets::BrowserView& view, const Toolkit& kit) : view_(view), kit_(kit) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    view_.SetPage(this);
  }
  ~BrowserPlace() override { view_.SetPage(nullptr); }

  void Navigate(const std::string& url) override {
    kept_ = {url, {}, {}};
    catching_up_ = false;
    if (browser_)
      browser_->page().Navigate(url);
    else
      Tell();
  }
  bool SetBodyHtml(const std::string& html) override {
    kept_.html = html;
    return Waits() || browser_->page().SetBodyHtml(html);
  }
  bool AddScript(const std::string& script) override {
    kept_.script = script;
    return Waits() || browser_->page().AddScript(script);
  }
  void AskDisplay(const std::string& id, std::function<void(std::optional<std::string>)> then) override {
    if (Waits()) return then(std::nullopt);
    browser_->page().AskDisplay(id, std::move(then));
  }
  void SetDisplay(const std::string& id, const std::string& display) override {
    if (!Waits()) browser_->page().SetDisplay(id, display);
  }
  void SetFirstChildText(const std::string& id, const std::string& text) override {
    if (!Waits()) browser_->page().SetFirstChildText(id, text);
  }
  void Stop() override {
    if (browser_) browser_->page().Stop();
  }

  QWebEngineView* browser() const { return browser_; }

 protected:
  void showEvent(QShowEvent* event) override {
    QWidget::showEvent(event);
    if (browser_) return;
    browser_ = new Browser(view_, kit_, [this] { Arrived(); });
    layout()->addWidget(browser_);
    setFocusProxy(browser_);
    browser_->setAccessibleName(accessibleName());
    if (kept_.url.empty()) return;
    catching_up_ = true;
    browser_->page().Navigate(kept_.url);
  }

 private:
  struct Kept {
    std::string url;
    std::optional<std::string> html, script;
  };

  // What is told to the page now is only kept for it.
  bool Waits() const { return !browser_ || catching_up_; }
  void Tell() {
    kit_.guard(view_.name(), [this] { view_.NavigationComplete.Raise(); });
  }
  void Arrived() {
    if (!catching_up_) return Tell();
    catching_up_ = false;
    if (kept_.html) browser_->page().SetBodyHtml(*kept_.html);
    if (kept_.script) browser_->page().AddScript(*kept_.script);
  }

  widgets::BrowserView& view_;
  Toolkit kit_;
  Browser* browser_ = nullptr;
  Kept kept_;
  bool catching_up_ = false;
};

}  // namespace

QWidget* MakeBrowserView(widgets::BrowserView& view, const QString& accessible_name, const Toolkit& kit) {
  auto* widget = new BrowserPlace(view, kit);
  BindControl(view, widget, accessible_name);
  return widget;
}

QWebEngineView* BrowserIn(QWidget* widget) {
  const auto* const place = dynamic_cast<BrowserPlace*>(widget);
  return place ? place->browser() : nullptr;
}

}  // namespace zendrix::qt
