#include "qt/portal_browser.h"

#include <QAction>
#include <QBoxLayout>
#include <QTimer>
#include <QWebEngineDownloadRequest>
#include <QWebEngineFullScreenRequest>
#include <QWebEngineLoadingInfo>
#include <QWebEngineProfile>
#include <QWebEngineSettings>
#include <QWebEngineUrlRequestInfo>
#include <QWebEngineView>
#include <utility>

#include "qt/shut_in.h"
#include "qt/text_edge.h"

namespace zendrix::qt {
namespace {

// The view shows the page and lets go of it before the page is destroyed.
class PortalWidget : public QWebEngineView {
 public:
  PortalWidget(widgets::PortalView& view, const Toolkit& kit) : view_(view), page_(view, kit.guard) {
    page_.setBackgroundColor(kit.theme.tokens().base);
    setPage(&page_);
    setContextMenuPolicy(Qt::NoContextMenu);
    setAcceptDrops(false);
    view_.SetBrowser(&page_);
  }
  ~PortalWidget() override {
    view_.SetBrowser(nullptr);
    setPage(nullptr);
  }

 private:
  widgets::PortalView& view_;
  PortalWebPage page_;
};

// Stands for a new window for as long as it takes to learn where that is to go.
class CaughtWindow : public QWebEnginePage {
 public:
  CaughtWindow(QWebEngineProfile* profile, QWebEnginePage& opener)
      : QWebEnginePage(profile, &opener), opener_(opener) {}

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType, bool) override {
    QTimer::singleShot(0, &opener_, [&opener = opener_, url] { opener.load(url); });
    deleteLater();
    return false;
  }

 private:
  QWebEnginePage& opener_;
};

class PortalPane : public QWidget {
 public:
  PortalPane(widgets::PortalView& view, QString accessible_name, const Toolkit& kit)
      : view_(view), name_(std::move(accessible_name)), kit_(kit) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
  }

 protected:
  void paintEvent(QPaintEvent* event) override {
    QWidget::paintEvent(event);
    if (!std::exchange(painted_, true)) QTimer::singleShot(0, this, [this] { StartBrowser(); });
  }

 private:
  void StartBrowser() {
    auto* const browser = new PortalWidget(view_, kit_);
    browser->setAccessibleName(name_);
    layout()->addWidget(browser);
    setFocusProxy(browser);
  }

  widgets::PortalView& view_;
  QString name_;
  Toolkit kit_;
  bool painted_ = false;
};

}  // namespace

struct PortalGround::Parts {
  class Wall : public QWebEngineUrlRequestInterceptor {
   public:
    explicit Wall(std::function<bool(const QUrl&)> may_fetch) : may_fetch_(std::move(may_fetch)) {}
    void interceptRequest(QWebEngineUrlRequestInfo& info) override {
      info.block(!may_fetch_(info.requestUrl()));
    }

   private:
    std::function<bool(const QUrl&)> may_fetch_;
  };

  explicit Parts(std::function<bool(const QUrl&)> may_fetch) : wall(std::move(may_fetch)) {
    KeepNothing(profile);
    profile.setUrlRequestInterceptor(&wall);
    QObject::connect(&profile, &QWebEngineProfile::downloadRequested, &profile,
                     [](QWebEngineDownloadRequest* download) { download->cancel(); });
  }
  Wall wall;
  QWebEngineProfile profile;  // without a name: nothing of it is kept
};

PortalGround::PortalGround(std::function<bool(const QUrl&)> may_fetch)
    : ground_(std::make_unique<Parts>(std::move(may_fetch))) {}

PortalGround::~PortalGround() = default;

PortalWebPage::PortalWebPage(widgets::PortalView& view, SlotGuard& guard)
    : PortalGround([this](const QUrl& url) { return !Cancels(url); }),
      QWebEnginePage(&ground_->profile),
      view_(view),
      guard_(guard) {
  ShutIn(*this);
  settings()->setAttribute(QWebEngineSettings::WebRTCPublicInterfacesOnly, true);
  connect(this, &QWebEnginePage::featurePermissionRequested, this, [this](const QUrl& of, Feature feature) {
    setFeaturePermission(of, feature, PermissionDeniedByUser);
  });
  connect(this, &QWebEnginePage::fullScreenRequested, this,
          [](QWebEngineFullScreenRequest request) { request.reject(); });
  for (const WebAction action : {QWebEnginePage::Back, QWebEnginePage::Forward})
    connect(this->action(action), &QAction::enabledChanged, this, [this] { TellCommands(); });
  connect(this, &QWebEnginePage::loadStarted, this, [this] { view_.ready = false; });
  connect(this, &QWebEnginePage::loadingChanged, this,
          [this](const QWebEngineLoadingInfo& loading) { OnLoading(loading); });
}

PortalWebPage::~PortalWebPage() = default;

void PortalWebPage::Navigate(const std::string& url) {
  load(QUrl(ToQt(url)));
}

bool PortalWebPage::Cancels(const QUrl& url) const {
  bool cancels = true;
  guard_(view_.name(), [&] { cancels = view_.Cancels(url.toEncoded().toStdString()); });
  return cancels;
}

bool PortalWebPage::acceptNavigationRequest(const QUrl& url, NavigationType, bool is_main_frame) {
  const bool cancels = Cancels(url);
  if (is_main_frame) cancelled_ = cancels;
  return !cancels;
}

QWebEnginePage* PortalWebPage::createWindow(WebWindowType) {
  return new CaughtWindow(profile(), *this);
}

void PortalWebPage::TellCommands() {
  guard_(view_.name(), [this] {
    view_.CommandStateChange.Raise(widgets::PortalView::kBack, action(QWebEnginePage::Back)->isEnabled());
    view_.CommandStateChange.Raise(widgets::PortalView::kForward,
                                   action(QWebEnginePage::Forward)->isEnabled());
  });
}

void PortalWebPage::OnLoading(const QWebEngineLoadingInfo& loading) {
  if (loading.status() == QWebEngineLoadingInfo::LoadStartedStatus) return;
  view_.ready = true;
  if (loading.status() == QWebEngineLoadingInfo::LoadSucceededStatus) {
    there_ = true;
    RaiseLater(view_.NavigateComplete);
  } else if (!there_ || (loading.status() == QWebEngineLoadingInfo::LoadFailedStatus && !cancelled_)) {
    // One that was cancelled leaves the page that was there, if there was one.
    RaiseLater(view_.NavigateError);
  }
}

void PortalWebPage::RaiseLater(widgets::Signal<>& signal) {
  QTimer::singleShot(0, this, [this, &signal] { guard_(view_.name(), [&signal] { signal.Raise(); }); });
}

QWidget* MakePortalView(widgets::PortalView& view, const QString& accessible_name, const Toolkit& kit) {
  auto* pane = new PortalPane(view, accessible_name, kit);
  BindControl(view, pane, accessible_name);
  return pane;
}

}  // namespace zendrix::qt
