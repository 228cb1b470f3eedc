// The portal's pages: a real browser that stays on the portal.
//
// Every navigation, of the page or a frame, by a link, a script, a form, a redirect or the history, is asked
// of the logic before it happens, and so is every request; what is not the portal's gets nowhere. Links that
// ask for a window of their own open in this one. Downloads, permissions, files of the computer, dialogs of
// scripts and bad certificates are refused. The profile is the page's own and keeps nothing.
#pragma once

#include <QWebEnginePage>
#include <QWebEngineUrlRequestInterceptor>
#include <functional>
#include <memory>
#include <string>

#include "qt/bind.h"
#include "widgets/portal_view.h"

class QWebEngineLoadingInfo;

namespace zendrix::qt {

// What a page stands on: its profile, which must be there before it and go after it.
class PortalGround {
 protected:
  struct Parts;
  explicit PortalGround(std::function<bool(const QUrl&)> may_fetch);
  ~PortalGround();

  std::unique_ptr<Parts> ground_;
};

class PortalWebPage : private PortalGround, public QWebEnginePage, public widgets::PortalBrowser {
 public:
  // `view` outlives the page.
  PortalWebPage(widgets::PortalView& view, SlotGuard& guard);
  ~PortalWebPage() override;

  void Navigate(const std::string& url) override;
  void GoBack() override { triggerAction(QWebEnginePage::Back); }
  void GoForward() override { triggerAction(QWebEnginePage::Forward); }
  void Stop() override { triggerAction(QWebEnginePage::Stop); }

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool is_main_frame) override;
  // A link into a new window is followed in this one.
  QWebEnginePage* createWindow(WebWindowType) override;
  QStringList chooseFiles(FileSelectionMode, const QStringList&, const QStringList&) override { return {}; }
  void javaScriptAlert(const QUrl&, const QString&) override {}
  bool javaScriptConfirm(const QUrl&, const QString&) override { return false; }
  bool javaScriptPrompt(const QUrl&, const QString&, const QString&, QString*) override { return false; }
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int, const QString&) override {
  }

 private:
  bool Cancels(const QUrl& url) const;
  void TellCommands();
  void OnLoading(const QWebEngineLoadingInfo& loading);
  // Behind the browser's own call: the logic may wait, and this page may go meanwhile.
  void RaiseLater(widgets::Signal<>& signal);

  widgets::PortalView& view_;
  SlotGuard& guard_;
  bool cancelled_ = false;  // the last navigation of the page itself
  bool there_ = false;      // a page is on show
};

// A pane for the view. The browser in it, which is a program of its own, is started when the pane has been
// painted for the first time, so that no window waits for it.
QWidget* MakePortalView(widgets::PortalView& view, const QString& accessible_name, const Toolkit& kit);

}  // namespace zendrix::qt
