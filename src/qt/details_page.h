// The page of the details pane: a real browser, shut in.
//
// Its documents come from memory under a scheme of their own; pictures come from the Images folder and
// nothing else comes from anywhere: no network, no file, no cookie, no cache. The content policy of the
// document allows no script but the verified one, which carries a nonce of its own for each page. The browser
// itself never navigates: a person's click on a link in the main frame is handed to the logic, and every
// other navigation (redirect, refresh, form, frame, another window, a script and its clicks) is refused.
// A link pressed through the accessibility bus reaches the page without the toolkit: it counts as a click
// when the page itself got a click on that link which no script can make.
#pragma once

#include <QString>
#include <QWebEnginePage>
#include <QWebEngineUrlRequestInterceptor>
#include <QWebEngineUrlSchemeHandler>
#include <functional>
#include <memory>
#include <string>

#include "widgets/browser_view.h"

class QWebEngineProfile;

namespace zendrix::qt {

class Theme;
class UserActs;

// To be called before the application object exists.
void RegisterPageScheme();

// Serves the document of the moment and the pictures.
class PageSource : public QWebEngineUrlSchemeHandler {
 public:
  explicit PageSource(QString images_folder) : images_folder_(std::move(images_folder)) {}
  void SetDocument(QByteArray document) { document_ = std::move(document); }
  void requestStarted(QWebEngineUrlRequestJob* job) override;

 private:
  void Reply(QWebEngineUrlRequestJob* job, const QByteArray& type, const QByteArray& bytes) const;

  QString images_folder_;
  QByteArray document_;
};

// Refuses every request that is not the page's own.
class RequestWall : public QWebEngineUrlRequestInterceptor {
 public:
  void interceptRequest(QWebEngineUrlRequestInfo& info) override;
};

// What a page stands on: its profile, which must be there before it and go after it.
class DetailsShell {
 protected:
  struct Parts;
  explicit DetailsShell(std::unique_ptr<Parts> parts);
  ~DetailsShell();

  std::unique_ptr<Parts> shell_;
};

class DetailsPage : private DetailsShell, public QWebEnginePage, public widgets::BrowserPage {
 public:
  // `images_folder`: the pictures. The page follows the theme. `subject` tells what the document explains at
  // the moment. `clicked` gets the address of a clicked link as the logic knows it, commands as "about:do",
  // links as they stand, and the subject of the document that the click was made in.
  DetailsPage(const QString& images_folder, Theme& theme, std::function<std::string()> subject,
              std::function<void(const std::string& url, const std::string& subject)> clicked,
              std::function<void()> navigated);
  ~DetailsPage() override;

  void Navigate(const std::string& url) override;
  bool SetBodyHtml(const std::string& html) override;
  bool AddScript(const std::string& script) override;
  void AskDisplay(const std::string& id, std::function<void(std::optional<std::string>)> then) override;
  void SetDisplay(const std::string& id, const std::string& display) override;
  void SetFirstChildText(const std::string& id, const std::string& text) override;
  void Stop() override;

 protected:
  bool acceptNavigationRequest(const QUrl& url, NavigationType type, bool is_main_frame) override;
  QWebEnginePage* createWindow(WebWindowType) override { return nullptr; }
  void javaScriptConsoleMessage(JavaScriptConsoleMessageLevel, const QString&, int, const QString&) override {
  }

 private:
  // The browser is at the page that it was sent to last.
  bool IsThere() const;
  void Run(const QString& script);
  void FollowTheme();
  // The address of a link as the logic knows it; empty for what is no link of a page.
  std::string AddressOf(const QUrl& url) const;
  // Behind the browser's call: a command may show a message box, which the browser must not wait for.
  void TellClick(const std::string& address);
  void AskForTrustedClick(const QUrl& url, const std::string& address);

  Theme& theme_;

  std::unique_ptr<UserActs> acts_;
};

}  // namespace zendrix::qt
