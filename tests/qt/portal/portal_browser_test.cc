#include "qt/portal_browser.h"

#include <gmock/gmock.h>

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QPushButton>
#include <QStandardPaths>
#include <QTest>
#include <QTimer>
#include <QWebEngineProfile>
#include <QWebEngineView>

#include "home/portal_page.h"
#include "local_server.h"
#include "qt/qt_loop.h"
#include "qt/text_edge.h"
#include "support/console_world.h"

namespace zendrix::qt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr qint64 kHangMs = 60000;

class PortalBrowserTest : public ::testing::Test {
 protected:
  PortalBrowserTest() {
    world_.state.PortalBase = FromQt(portal_.Url(QStringLiteral("/redir.asp")));
    portal_.Put(QStringLiteral("/one"), "<title>one</title>one");
    portal_.Put(QStringLiteral("/two"), "<title>two</title>two");
    other_.Put(QStringLiteral("/"), "<title>other</title>other");
    view_.NavigateComplete.ConnectForever([this] { ++complete_; });
    view_.NavigateError.ConnectForever([this] { ++errors_; });
    view_.CommandStateChange.ConnectForever([this](int command, bool possible) {
      (command == widgets::PortalView::kBack ? back_ : forward_) = possible;
    });
    pane_.reset(MakePortalView(view_, QStringLiteral("Tour"), {guard_, pictures_, theme_}));
    pane_->resize(400, 300);
  }

  bool WaitFor(const std::function<bool()>& condition) {
    QElapsedTimer since;
    for (since.start(); since.elapsed() < kHangMs;) {
      if (condition()) return true;
      QTimer wake;
      wake.start(20);
      QApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return condition();
  }
  QWebEnginePage* Page() {
    const auto* view = pane_->findChild<QWebEngineView*>();
    return view ? view->page() : nullptr;
  }
  QString Title() { return Page() ? Page()->title() : QString(); }
  // Goes to a page of the portal and waits until it is there.
  void Open(const QString& path) {
    pane_->show();
    const int before = complete_;
    page_.Navigate(FromQt(portal_.Url(path)));
    ASSERT_TRUE(WaitFor([&] { return complete_ > before; })) << path.toStdString();
  }
  // Serves a page with this body, and goes to it.
  void OpenWith(const QByteArray& body) {
    portal_.Put(QStringLiteral("/start"), "<title>start</title>" + body);
    Open(QStringLiteral("/start"));
  }
  QVariant Run(const QString& script) {
    bool done = false;
    QVariant answer;
    Page()->runJavaScript(script, [&](const QVariant& value) {
      answer = value;
      done = true;
    });
    EXPECT_TRUE(WaitFor([&] { return done; }));
    return answer;
  }
  // Lets the browser do what it is about to do: what was asked of it before has had its effect when it has
  // fetched another page of the portal.
  void Settle() {
    portal_.Put(QStringLiteral("/ping"), "x");
    Run(QStringLiteral("fetch('/ping')"));
    const auto pings = [this] { return portal_.asked.count(QStringLiteral("/ping")); };
    const auto before = pings();
    Run(QStringLiteral("setTimeout(() => fetch('/ping'), 100)"));
    WaitFor([&] { return pings() > before + (before == 0 ? 1 : 0); });
  }
  void ExpectStays(const QString& script) {
    Run(script);
    Settle();
    EXPECT_EQ(Title(), QStringLiteral("start")) << script.toStdString();
    EXPECT_TRUE(Page()->url().toString().startsWith(portal_.Url(QString()))) << script.toStdString();
    EXPECT_TRUE(other_.asked.isEmpty()) << script.toStdString();
    EXPECT_FALSE(page_.lblNoPage.visible) << "what was there is still there";
  }
  QString Other() const { return other_.Url(QStringLiteral("/")); }

  zendrix::testing::ConsoleWorld world_;
  SlotGuard guard_{world_.log};
  Pictures pictures_{"/nowhere"};
  Theme theme_{pictures_};
  LocalServer portal_{QStringLiteral("127.0.0.1")};
  LocalServer other_{QStringLiteral("127.0.0.2")};
  widgets::PortalView view_{"WBr"};
  home::PortalPage page_{world_.state, view_};
  int complete_ = 0, errors_ = 0;
  bool back_ = false, forward_ = false;
  std::unique_ptr<QWidget> pane_;
};

TEST_F(PortalBrowserTest, BrowserStartsWhenThePaneIsFirstPaintedAndGoesToThePageThatWaits) {
  page_.Navigate(FromQt(portal_.Url(QStringLiteral("/one"))));
  QApplication::processEvents();
  EXPECT_EQ(Page(), nullptr) << "nothing to see yet";
  pane_->show();
  EXPECT_EQ(Page(), nullptr) << "the window does not wait for it";
  ASSERT_TRUE(WaitFor([this] { return complete_ == 1; }));
  EXPECT_EQ(Title(), QStringLiteral("one"));
  EXPECT_TRUE(view_.ready);
  EXPECT_EQ(pane_->findChild<QWebEngineView*>()->accessibleName(), QStringLiteral("Tour"));
  EXPECT_EQ(pane_->findChild<QWebEngineView*>()->size(), pane_->size());
  pane_->resize(500, 350);
  EXPECT_TRUE(WaitFor([this] { return pane_->findChild<QWebEngineView*>()->size() == pane_->size(); }));
}

TEST_F(PortalBrowserTest, HistoryTellsWhichWayIsPossible) {
  Open(QStringLiteral("/one"));
  EXPECT_FALSE(back_ || forward_);
  Open(QStringLiteral("/two"));
  ASSERT_TRUE(WaitFor([this] { return back_; }));
  EXPECT_FALSE(forward_);
  page_.GoBack();
  ASSERT_TRUE(WaitFor([this] { return forward_ && !back_ && Title() == QStringLiteral("one"); }));
  page_.GoForward();
  ASSERT_TRUE(WaitFor([this] { return back_ && !forward_ && Title() == QStringLiteral("two"); }));
}

TEST_F(PortalBrowserTest, LinkOfThePortalIsFollowed) {
  OpenWith("<a href='/two'>x</a>");
  Run(QStringLiteral("document.links[0].click()"));
  EXPECT_TRUE(WaitFor([this] { return Title() == QStringLiteral("two"); }));
}

TEST_F(PortalBrowserTest, RedirectWithinThePortalIsFollowed) {
  portal_.Redirect(QStringLiteral("/redir.asp"), QStringLiteral("/two"));
  Open(QStringLiteral("/redir.asp"));
  EXPECT_EQ(Title(), QStringLiteral("two"));
}

TEST_F(PortalBrowserTest, LinkToAnotherHostStaysWhereItIs) {
  OpenWith("<a href='" + Other().toLatin1() + "'>x</a>");
  ExpectStays(QStringLiteral("document.links[0].click()"));
}

TEST_F(PortalBrowserTest, RealClickOnALinkToAnotherHostStaysWhereItIs) {
  OpenWith("<style>a { position: fixed; inset: 0; }</style><a href='" + Other().toLatin1() + "'>x</a>");
  QWidget* const input = pane_->findChild<QWebEngineView*>()->focusProxy();
  ASSERT_NE(input, nullptr);
  QTest::mouseClick(input, Qt::LeftButton, {}, QPoint(200, 150));
  ExpectStays(QStringLiteral("0"));
}

TEST_F(PortalBrowserTest, RedirectToAnotherHostStaysWhereItIs) {
  portal_.Redirect(QStringLiteral("/away"), Other());
  OpenWith("<a href='/away'>x</a>");
  ExpectStays(QStringLiteral("document.links[0].click()"));
  EXPECT_TRUE(portal_.asked.contains(QStringLiteral("/away"))) << "it came as far as the redirect";
  EXPECT_EQ(errors_, 0);
}

TEST_F(PortalBrowserTest, FirstPageThatRedirectsToAnotherHostIsSaidNotToBeThere) {
  portal_.Redirect(QStringLiteral("/redir.asp"), Other());
  pane_->show();
  page_.Navigate(FromQt(portal_.Url(QStringLiteral("/redir.asp"))));
  ASSERT_TRUE(WaitFor([this] { return errors_ == 1; }));
  EXPECT_TRUE(page_.lblNoPage.visible);
  EXPECT_TRUE(other_.asked.isEmpty());
}

TEST_F(PortalBrowserTest, ScriptFormAndRefreshToAnotherHostStayWhereTheyAre) {
  OpenWith("<form method='post' action='" + Other().toLatin1() + "'></form>");
  ExpectStays(QStringLiteral("location.href = '%1'").arg(Other()));
  ExpectStays(QStringLiteral("location.replace('%1')").arg(Other()));
  ExpectStays(QStringLiteral("document.forms[0].submit()"));
  ExpectStays(QStringLiteral("document.head.innerHTML += '<meta http-equiv=refresh content=\"0;url=%1\">'")
                  .arg(Other()));
}

TEST_F(PortalBrowserTest, FilesOfTheComputerAreNotShown) {
  OpenWith("x");
  ExpectStays(QStringLiteral("location.href = 'file:///etc/passwd'"));
  ExpectStays(QStringLiteral("location.href = 'data:text/html,<title>data</title>'"));
  ExpectStays(QStringLiteral("document.body.innerHTML += '<iframe src=file:///etc/passwd></iframe>'"));
}

TEST_F(PortalBrowserTest, NothingIsFetchedFromAnotherHost) {
  OpenWith("x");
  ExpectStays(QStringLiteral("document.body.innerHTML += '<img src=%1><iframe src=%1></iframe>'"
                             "+ '<link rel=stylesheet href=%1>'")
                  .arg(Other()));
  ExpectStays(QStringLiteral("fetch('%1', {mode: 'no-cors'}).catch(e => 0); 0").arg(Other()));
}

TEST_F(PortalBrowserTest, LinkIntoANewWindowOpensInThisOneIfItIsOfThePortal) {
  OpenWith("<a href='/two' target='_blank'>x</a>");
  QWidget* const input = pane_->findChild<QWebEngineView*>()->focusProxy();
  Run(QStringLiteral("Object.assign(document.links[0].style, {position: 'fixed', inset: 0})"));
  Settle();
  QTest::mouseClick(input, Qt::LeftButton, {}, QPoint(200, 150));
  EXPECT_TRUE(WaitFor([this] { return Title() == QStringLiteral("two"); }));
}

TEST_F(PortalBrowserTest, NewWindowOfAnotherHostDoesNotOpen) {
  OpenWith("<style>a { position: fixed; inset: 0; }</style><a target='_blank' href='" + Other().toLatin1() +
           "'>x</a>");
  QWidget* const input = pane_->findChild<QWebEngineView*>()->focusProxy();
  QTest::mouseClick(input, Qt::LeftButton, {}, QPoint(200, 150));
  ExpectStays(QStringLiteral("window.open('%1'); 0").arg(Other()));
  ExpectStays(QStringLiteral("window.open('/two'); 0"));
}

TEST_F(PortalBrowserTest, DownloadIsRefusedAndThePageStays) {
  portal_.PutHead(QStringLiteral("/file"),
                  "HTTP/1.1 200 OK\r\nContent-Type: application/octet-stream\r\n"
                  "Content-Disposition: attachment; filename=zendrix-portal-test.bin\r\n");
  OpenWith("<a href='/file' download>x</a>");
  ExpectStays(QStringLiteral("location.href = '/file'"));
  ExpectStays(QStringLiteral("document.links[0].click()"));
  const QDir downloads(QStandardPaths::writableLocation(QStandardPaths::DownloadLocation));
  EXPECT_FALSE(downloads.exists(QStringLiteral("zendrix-portal-test.bin")));
}

TEST_F(PortalBrowserTest, NothingIsKept) {
  portal_.PutHead(QStringLiteral("/cookie"),
                  "HTTP/1.1 200 OK\r\nContent-Type: text/html\r\n"
                  "Set-Cookie: a=b; Max-Age=1000\r\nCache-Control: max-age=1000\r\n");
  Open(QStringLiteral("/cookie"));
  EXPECT_TRUE(Page()->profile()->isOffTheRecord());
  EXPECT_EQ(Run(QStringLiteral("document.cookie = 'c=d'; document.cookie")).toString(), QString());
  EXPECT_EQ(Run(QStringLiteral("try { localStorage.x = 1; 'kept' } catch (e) { 'refused' }")).toString(),
            QStringLiteral("refused"));
  Open(QStringLiteral("/two"));
  Open(QStringLiteral("/cookie"));
  EXPECT_EQ(portal_.asked.count(QStringLiteral("/cookie")), 2) << "no cache";
  for (const QByteArray& head : portal_.heads) EXPECT_FALSE(head.toLower().contains("\ncookie:"));
}

TEST_F(PortalBrowserTest, PermissionsAndDialogsOfScriptsAreRefused) {
  OpenWith("x");
  EXPECT_EQ(Run(QStringLiteral("alert('x'); String(confirm('x')) + prompt('x')")).toString(),
            QStringLiteral("falsenull"));
  Run(QStringLiteral("Notification.requestPermission().then(p => document.title = p); 0"));
  EXPECT_TRUE(WaitFor([this] { return Title() != QStringLiteral("start"); }));
  EXPECT_NE(Title(), QStringLiteral("granted"));
}

TEST_F(PortalBrowserTest, PageThatCannotBeHadIsAnErrorAndTheNextOneIsNone) {
  portal_.Drop(QStringLiteral("/gone"));
  pane_->show();
  page_.Navigate(FromQt(portal_.Url(QStringLiteral("/gone"))));
  ASSERT_TRUE(WaitFor([this] { return errors_ == 1; }));
  EXPECT_TRUE(view_.ready);
  EXPECT_TRUE(page_.lblNoPage.visible);
  Open(QStringLiteral("/one"));
  EXPECT_FALSE(page_.lblNoPage.visible);
}

}  // namespace
}  // namespace zendrix::qt
