// What a script could do if one ever ran in the page: nothing that reaches the logic or leaves the host. And
// what a person can do: click a link, once.
#include <QTcpServer>
#include <QTest>

#include "hostile/page_fixture.h"

namespace zendrix::qt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class HostileScriptTest : public PageFixture {
 protected:
  HostileScriptTest() {
    EXPECT_TRUE(outside_.listen(QHostAddress::LocalHost));
    ShowOne("failed");
    Settle();
    wall_.asked.clear();
  }

  // A script in the page's own world. %1 stands for an address that somebody listens at.
  void Attack(const QString& script) {
    SCOPED_TRACE(script.toStdString());
    Ask(QStringLiteral("window.same = true"));
    QString run = script;
    run.replace(QStringLiteral("%1"), QStringLiteral("127.0.0.1:%1").arg(outside_.serverPort()));
    RunInPage(QStringLiteral("try { %1 } catch (e) {} 0").arg(run));
    Settle();
    EXPECT_THAT(navigations_, IsEmpty());
    EXPECT_THAT(alerts_.decisions, IsEmpty());
    EXPECT_THAT(platform_.shell.opened, IsEmpty());
    EXPECT_TRUE(Ask(QStringLiteral("window.same && !!document.querySelector('#H1')")).toBool());
    EXPECT_FALSE(outside_.hasPendingConnections());
  }
  void AttackAll(const QStringList& scripts) {
    for (const QString& script : scripts) Attack(script);
  }

  bool WaitForNavigation() {
    return WaitFor([&] { return !navigations_.empty(); });
  }

  QTcpServer outside_;
};

TEST_F(HostileScriptTest, ScriptsCannotNavigate) {
  AttackAll({"location = 'do'", "location.href = 'undo'", "location.assign('do')", "location.replace('undo')",
             "location = 'http://%1/'", "location = 'file:///etc/passwd'",
             "location = 'javascript:location=\"do\"'", "location = 'data:text/html,x'", "location.reload()",
             "window.open('do')", "window.open('http://%1/', '_blank')", "window.open('undo', '_top')",
             "window.open('do', '_self')", "history.pushState(0, '', 'page99'); history.go(0)",
             "history.back()", "document.location = 'zendrix-page://details/undo'",
             "navigation.navigate('do')"});
}

// The browser asks nobody before it goes to a blank page. That page is nobody's: nothing is written into it.
TEST_F(HostileScriptTest, ScriptCanOnlyBlankItsOwnPage) {
  for (const char* script : {"location = 'about:do'",
                             "const a = document.createElement('a'); a.href = "
                             "'about:undo'; document.body.append(a); a.click()"}) {
    SCOPED_TRACE(script);
    bool arrived = false;
    const auto link = view_.NavigationComplete.Connect([&] { arrived = true; });
    RunInPage(QString::fromLatin1(script) + QStringLiteral("; 0"));
    EXPECT_TRUE(WaitFor([&] { return page_->url().scheme() == QLatin1String("about"); }));
    Settle();
    EXPECT_FALSE(arrived);
    EXPECT_FALSE(page_->SetBodyHtml("<b>x</b>"));
    EXPECT_FALSE(page_->AddScript("window.ran = 1"));
    EXPECT_THAT(navigations_, IsEmpty());
    EXPECT_THAT(alerts_.decisions, IsEmpty());
    ShowOne("failed");
    EXPECT_TRUE(Ask(QStringLiteral("!!document.querySelector('#H1')")).toBool());
  }
}

TEST_F(HostileScriptTest, AlertOvertakenByAnotherIsNotTakenForIt) {
  for (int round = 0; round < 10; ++round) {
    view_.Navigate("About: <body>first</body>");
    ShowOne("failed");
    EXPECT_TRUE(Ask(QStringLiteral("!!document.querySelector('#H1')")).toBool());
  }
}

TEST_F(HostileScriptTest, ScriptsCannotClick) {
  AttackAll(
      {"document.querySelector('a[href=do]').click()", "document.querySelector('#H1').click()",
       "document.querySelector('a[href^=http]').click()",
       "const a = document.querySelector('a[href=do]'); a.focus(); a.click()",
       "document.querySelector('a[href=do]').dispatchEvent(new MouseEvent('click', {bubbles: true, "
       "cancelable: true, view: window, detail: 1}))",
       "document.querySelector('a[href=do]').dispatchEvent(new KeyboardEvent('keydown', {key: 'Enter', "
       "keyCode: "
       "13, bubbles: true}))",
       "const a = document.createElement('a'); a.href = 'undo'; document.body.append(a); a.click()",
       "const a = document.createElement('a'); a.href = 'undo'; a.target = '_top'; document.body.append(a); "
       "a.click()",
       "const a = document.createElement('a'); a.href = 'http://%1/'; a.target = '_blank'; "
       "document.body.append(a); a.click()",
       "const a = document.createElement('a'); a.href = 'do'; a.download = 'x'; document.body.append(a); "
       "a.click()",
       "const a = document.createElement('a'); a.href = '#'; a.ping = 'http://%1/'; document.body.append(a); "
       "a.click()",
       "document.body.insertAdjacentHTML('beforeend', '<map><area href=do></map>'); "
       "document.querySelector('area').click()",
       "document.body.insertAdjacentHTML('beforeend', '<svg><a href=do><text>x</text></a></svg>'); "
       "document.querySelector('svg a').dispatchEvent(new MouseEvent('click', {bubbles: true, cancelable: "
       "true, "
       "view: window}))"});
}

TEST_F(HostileScriptTest, FormsAndRefreshesGoNowhere) {
  AttackAll(
      {"document.body.insertAdjacentHTML('beforeend', '<form action=do></form>'); document.forms[0].submit()",
       "document.forms[0].requestSubmit()",
       "document.body.insertAdjacentHTML('beforeend', '<form method=post action=http://%1/><button "
       "formaction=undo></button></form>'); document.querySelector('button').click()",
       "const m = document.createElement('meta'); m.httpEquiv = 'refresh'; m.content = '0;url=do'; "
       "document.head.append(m)",
       "const m = document.createElement('meta'); m.httpEquiv = 'refresh'; m.content = '0;url=http://%1/'; "
       "document.head.append(m)",
       "const b = document.createElement('base'); b.href = 'http://%1/'; document.head.append(b); "
       "document.querySelector('a[href=do]').click()"});
}

TEST_F(HostileScriptTest, FramesReachNothing) {
  AttackAll(
      {"const f = document.createElement('iframe'); f.src = 'do'; document.body.append(f)",
       "const f = document.createElement('iframe'); f.src = 'http://%1/'; document.body.append(f)",
       "const f = document.createElement('iframe'); f.src = 'javascript:top.location=\"do\"'; "
       "document.body.append(f)",
       "const f = document.createElement('iframe'); f.srcdoc = '<a target=_top href=do>x</a>'; f.onload = "
       "() => f.contentDocument.querySelector('a').click(); document.body.append(f)",
       "const f = document.createElement('iframe'); f.srcdoc = '<a href=undo>x</a>'; f.onload = () => "
       "f.contentDocument.querySelector('a').click(); document.body.append(f)",
       "const f = document.createElement('iframe'); f.srcdoc = "
       "'<script>top.location=\"do\"</scr' + 'ipt>'; document.body.append(f)",
       "document.body.insertAdjacentHTML('beforeend', '<object data=do></object><embed src=undo>')",
       "document.body.insertAdjacentHTML('beforeend', '<object data=http://%1/></object>')"});
}

TEST_F(HostileScriptTest, NothingIsFetched) {
  AttackAll({"fetch('http://%1/').catch(() => {})", "fetch('zendrix-page://details/page1').catch(() => {})",
             "new Image().src = 'http://%1/x.png'", "navigator.sendBeacon('http://%1/', 'x')",
             "new WebSocket('ws://%1/')", "new EventSource('http://%1/')", "new Worker('http://%1/x.js')",
             "import('http://%1/x.js').catch(() => {})", "new XMLHttpRequest().open('GET', 'http://%1/')",
             "const x = new XMLHttpRequest(); x.open('GET', 'file:///etc/passwd'); x.send()",
             "const s = document.createElement('script'); s.src = 'http://%1/x.js'; document.head.append(s)",
             "document.head.insertAdjacentHTML('beforeend', '<link rel=stylesheet href=http://%1/>')",
             "document.head.insertAdjacentHTML('beforeend', '<link rel=prefetch href=http://%1/>')",
             "document.head.insertAdjacentHTML('beforeend', '<link rel=preconnect href=http://%1/>')",
             "document.body.style.background = 'url(http://%1/x.png)'",
             "document.head.insertAdjacentHTML('beforeend', '<style>@import url(http://%1/x.css)</style>')",
             "document.body.insertAdjacentHTML('beforeend', '<video src=http://%1/ autoplay></video>')",
             "new FontFace('x', 'url(http://%1/)').load().catch(() => {})"});
}

TEST_F(HostileScriptTest, MarkupWrittenIntoThePageRunsNoScript) {
  page_->SetBodyHtml(
      "<script>window.ran = 1</script><img src=x onerror='window.ran = 2'><svg onload='window.ran = 3'>"
      "<iframe srcdoc='<script>parent.ran = 4</script>'></iframe><details open ontoggle='window.ran = 5'>"
      "<a id=j href='javascript:window.ran = 6'>x</a>");
  RunInPage(
      QStringLiteral("const s = document.createElement('script'); s.textContent = 'window.ran = 7';"
                     "document.body.append(s); document.getElementById('j').click(); 0"));
  Settle();
  EXPECT_FALSE(RunInPage(QStringLiteral("window.ran")).isValid());
  EXPECT_THAT(navigations_, IsEmpty());
}

TEST_F(HostileScriptTest, ScriptOfAFormerPageDoesNotRunInTheNext) {
  const QString nonce = RunInPage(QStringLiteral("document.querySelector('script').nonce")).toString();
  EXPECT_EQ(nonce.size(), 32);
  ShowOne("failed");
  RunInPage(QStringLiteral("const s = document.createElement('script'); s.nonce = '%1';"
                           "s.textContent = 'window.ran = 1'; document.body.append(s); 0")
                .arg(nonce));
  EXPECT_FALSE(RunInPage(QStringLiteral("window.ran")).isValid());
}

TEST_F(HostileScriptTest, PictureIsReadFromTheFolderOnly) {
  for (const char* path :
       {"Images/../KorvessaDesc2.kvl", "Images/x.png", "../../etc/passwd", "Images/app/icon.svg",
        "KorvessaDesc2.kvl", "Images/..%2fx.png", "Images\\..\\x.png", "Images/bug_red.png%00.txt"}) {
    SCOPED_TRACE(path);
    EXPECT_EQ(
        RunInPage(QStringLiteral("window.state = 0; (i => { i.onload = () => { window.state = 1; };"
                                 "i.onerror = () => { window.state = 2; }; i.src = '/opt/zendrix/%1'; })"
                                 "(new Image()); 0")
                      .arg(QString::fromLatin1(path).replace('\\', "\\\\")))
            .toInt(),
        0);
    EXPECT_TRUE(WaitFor([&] { return RunInPage(QStringLiteral("window.state")).toInt() != 0; }));
    EXPECT_EQ(RunInPage(QStringLiteral("window.state")).toInt(), 2);
  }
}

TEST_F(HostileScriptTest, ClickOnTheBlockLinkBlocksOnce) {
  Click(QStringLiteral("a[href='do']"));
  EXPECT_TRUE(WaitForNavigation());
  Settle();
  EXPECT_THAT(navigations_, ElementsAre("about:do"));
  EXPECT_THAT(alerts_.decisions, ElementsAre("block"));
}

TEST_F(HostileScriptTest, ClickOnTheAllowLinkAllowsOnce) {
  ShowOne("success");
  Click(QStringLiteral("a[href='undo']"));
  EXPECT_TRUE(WaitForNavigation());
  Settle();
  EXPECT_THAT(alerts_.decisions, ElementsAre("allow"));
}

TEST_F(HostileScriptTest, DoubleClickCountsOnce) {
  const QPoint link = MiddleOf(QStringLiteral("a[href='do']"));
  QTest::mouseClick(Input(), Qt::LeftButton, Qt::NoModifier, link);
  QTest::mouseDClick(Input(), Qt::LeftButton, Qt::NoModifier, link);
  QTest::mouseRelease(Input(), Qt::LeftButton, Qt::NoModifier, link);
  EXPECT_TRUE(WaitForNavigation());
  Settle();
  EXPECT_THAT(alerts_.decisions, ElementsAre("block"));
}

TEST_F(HostileScriptTest, EnterOnTheLinkWithTheKeyboardCounts) {
  Ask(QStringLiteral("document.querySelector(\"a[href='do']\").focus(); 0"));
  Input()->setFocus();
  QTest::keyClick(Input(), Qt::Key_Return);
  EXPECT_TRUE(WaitForNavigation());
  Settle();
  EXPECT_THAT(alerts_.decisions, ElementsAre("block"));
}

TEST_F(HostileScriptTest, ClickOnTheDetailsLinkOpensAndCloses) {
  Click(QStringLiteral("#H1"));
  EXPECT_TRUE(WaitForNavigation());
  Settle();
  EXPECT_THAT(navigations_, ElementsAre("about:showhide"));
  EXPECT_EQ(Ask(QStringLiteral("document.getElementById('H2').style.display")).toString(), "none");
  EXPECT_FALSE(state_.settings.ShowDetailsOpen);
}

TEST_F(HostileScriptTest, DetailsAreAsThePersonLeftThemAtTheNextAlert) {
  for (const char* display : {"none", ""}) {
    navigations_.clear();
    Click(QStringLiteral("#H1"));
    EXPECT_TRUE(WaitForNavigation());
    Settle();
    ShowOne("failed");
    EXPECT_EQ(Ask(QStringLiteral("document.getElementById('H2').style.display")).toString(), display);
  }
}

TEST_F(HostileScriptTest, ClickOnAValueOpensThePortalInTheUsersBrowser) {
  Click(QStringLiteral("a[href*='RunningProcesses']"));
  EXPECT_TRUE(WaitForNavigation());
  Settle();
  EXPECT_THAT(
      platform_.shell.opened,
      ElementsAre("http://portal.example.com/redir.asp?PostType=UserGetDescription&Mon=RunningProcesses&"
                  "Desc=one.exe"));
}

TEST_F(HostileScriptTest, OtherButtonsAndOtherPlacesDoNothing) {
  Click(QStringLiteral("a[href='do']"), Qt::RightButton);
  Click(QStringLiteral("a[href='do']"), Qt::MiddleButton);
  QTest::mouseClick(Input(), Qt::LeftButton, Qt::ControlModifier, MiddleOf(QStringLiteral("a[href='do']")));
  Click(QStringLiteral("b"));
  Settle();
  EXPECT_THAT(navigations_, IsEmpty());
}

// The act of a person that a script could use is the one that was meant for the page, and it is used up.
TEST_F(HostileScriptTest, ScriptDoesNotFollowAPersonsClick) {
  Click(QStringLiteral("#H1"));
  EXPECT_TRUE(WaitForNavigation());
  RunInPage(QStringLiteral("document.querySelector(\"a[href='do']\").click(); 0"));
  Settle();
  EXPECT_THAT(navigations_, ElementsAre("about:showhide"));
}

// More cannot be told apart from outside the browser. No script runs that could make use of it.
TEST_F(HostileScriptTest, OneActOfAPersonLetsOneLinkThrough) {
  Click(QStringLiteral("b"));
  for (int time = 0; time < 2; ++time) {
    RunInPage(QStringLiteral("document.querySelector(\"a[href='do']\").click(); 0"));
    Settle();
  }
  EXPECT_THAT(navigations_, ElementsAre("about:do"));
}

TEST_F(HostileScriptTest, ClickOnAFormerPageDoesNotCountOnTheNext) {
  Click(QStringLiteral("b"));
  ShowOne("failed");
  RunInPage(QStringLiteral("document.querySelector(\"a[href='do']\").click(); 0"));
  Settle();
  EXPECT_THAT(navigations_, IsEmpty());
}

}  // namespace
}  // namespace zendrix::qt
