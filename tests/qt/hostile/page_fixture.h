// The details pane in the real browser, with the shipped description files and pictures: shows the alerts of
// a monitoring file, asks the page by scripts that its own scripts cannot see, and writes down every request,
// every navigation that reaches the logic, and every decision.
#pragma once

#include <gmock/gmock.h>

#include <QPoint>
#include <QStringList>
#include <QTimer>
#include <QVariant>
#include <QWebEngineView>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "alerts/console_alerts.h"
#include "home/details_pane.h"
#include "platform/linux/linux_clock.h"
#include "platform/memory/memory_platform.h"
#include "qt/bind_browser_view.h"
#include "qt/details_page.h"
#include "store/reader.h"
#include "support/quiet_log.h"

namespace zendrix::qt {

// Waits for the next event instead of coming back at once: a browser answers over many small steps, and a
// rest after each would be most of the time of these tests.
class WaitingLoop : public platform::MessageLoop {
 public:
  WaitingLoop();
  void ProcessMessages() override;
  void WaitForMessages(std::int64_t) override { ProcessMessages(); }

 private:
  QTimer wake_;
};

// Never rests, and goes slowly: what the console waits for at the most, ten seconds, is a minute here, which
// a busy machine may need.
class RestlessClock : public platform::LinuxClock {
 public:
  std::int64_t MonotonicMs() override { return LinuxClock::MonotonicMs() / 6; }
  void Sleep(std::int64_t) override {}
};

// The wall with an ear.
class ListeningWall : public RequestWall {
 public:
  std::vector<QUrl> asked;
  void interceptRequest(QWebEngineUrlRequestInfo& info) override;
};

// The alert logic; the page's own commands are only written down.
class WatchedAlerts : public alerts::ConsoleAlerts {
 public:
  using ConsoleAlerts::ConsoleAlerts;
  std::vector<std::string> decisions;
  std::string RenderDetails(const std::string& id) override;
  void DecideFromPage(alerts::Answer answer, const alerts::ListedAlert& alert) override;

  std::string shown;     // what was rendered last
  std::string harmless;  // the same of harmless texts in the place of an event's
};

class PageFixture : public ::testing::Test {
 protected:
  PageFixture();
  ~PageFixture() override;

  // Reads a monitoring file; the IDs of its alerts.
  std::vector<std::string> Load(const std::string& bytes);
  // Shows the alert and waits until the page has it.
  void Show(const std::string& id) { pane_.ShowAlert({id, "", ""}); }
  // Shows an alert of one event about which the Agent reports this.
  void ShowOne(const std::string& reaction);

  QVariant Ask(const QString& script, quint32 world = 1);
  // Runs as the page itself would.
  QVariant RunInPage(const QString& script) { return Ask(script, 0); }
  // Handles events until the condition holds; false when it never does.
  bool WaitFor(const std::function<bool()>& condition);
  // Lets the browser do what it is about to do.
  void Settle();

  QPoint MiddleOf(const QString& selector);
  void Click(const QString& selector, Qt::MouseButton button = Qt::LeftButton);
  QWidget* Input() { return browser_->focusProxy() ? browser_->focusProxy() : browser_; }
  // A page of the console's own, or one of its pictures.
  static bool IsOwn(const QUrl& url);

  platform::MemoryPlatform platform_;
  RestlessClock clock_;
  WaitingLoop loop_;
  platform::Seams seams_;
  core::AppState state_;
  core::ErrorLog log_;
  testing::QuietLog quiet_;
  std::unique_ptr<store::CMkvlf> reader_;
  WatchedAlerts alerts_;
  widgets::Screen screen_;
  widgets::BrowserView view_{"sDesc"};
  home::DetailsPane pane_;
  std::vector<std::string> navigations_;  // that reached the logic

  ListeningWall wall_;
  SlotGuard guard_;
  Pictures pictures_;
  Theme theme_;
  std::unique_ptr<QWidget> widget_;
  QWebEngineView* browser_ = nullptr;
  DetailsPage* page_ = nullptr;
};

}  // namespace zendrix::qt
