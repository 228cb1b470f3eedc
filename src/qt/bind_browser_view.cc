#include "qt/bind_browser_view.h"

#include <QWebEngineView>

#include "qt/details_page.h"

namespace zendrix::qt {
namespace {

// The view shows the page and lets go of it before the page is destroyed.
class BrowserWidget : public QWebEngineView {
 public:
  BrowserWidget(widgets::BrowserView& view, const Toolkit& kit)
      : view_(view),
        page_(
            kit.pictures.folder(), [&view] { return view.subject(); },
            [&view, guard = &kit.guard](const std::string& url, const std::string& subject) {
              (*guard)(view.name(), [&] {
                if (view.BeforeNavigate) view.BeforeNavigate(url, subject);
              });
            },
            [&view, guard = &kit.guard] {
              (*guard)(view.name(), [&] { view.NavigationComplete.Raise(); });
            }) {
    setPage(&page_);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(false);
    view_.SetPage(&page_);
  }
  ~BrowserWidget() override {
    view_.SetPage(nullptr);
    setPage(nullptr);
  }

 private:
  widgets::BrowserView& view_;
  DetailsPage page_;
};

}  // namespace

QWidget* MakeBrowserView(widgets::BrowserView& view, const QString& accessible_name, const Toolkit& kit) {
  auto* widget = new BrowserWidget(view, kit);
  BindControl(view, widget, accessible_name);
  return widget;
}

}  // namespace zendrix::qt
