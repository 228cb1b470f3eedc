// How the page looks and when it comes; and who may press its links.
#include "qt/details_page.h"

#include <QAccessible>
#include <QAccessibleInterface>
#include <QCoreApplication>
#include <QMouseEvent>
#include <QTest>

#include "hostile/page_fixture.h"

namespace zendrix::qt {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DetailsPageTest : public PageFixture {
 protected:
  QString StyleOf(const char* selector, const char* property) {
    return Ask(QStringLiteral("getComputedStyle(document.querySelector(\"%1\")).%2")
                   .arg(QLatin1String(selector), QLatin1String(property)))
        .toString();
  }
  static QString Css(const QColor& colour) {
    return QStringLiteral("rgb(%1, %2, %3)").arg(colour.red()).arg(colour.green()).arg(colour.blue());
  }
  // A click that comes to the browser by itself, as one of an assistive program does.
  void ClickWithoutTheToolkit(const QString& selector) {
    const QPointF at = MiddleOf(selector);
    for (const auto type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
      QMouseEvent event(type, at, Input()->mapToGlobal(at), Qt::LeftButton,
                        type == QEvent::MouseButtonPress ? Qt::LeftButton : Qt::NoButton, Qt::NoModifier);
      QCoreApplication::sendEvent(Input(), &event);
    }
  }
};

TEST_F(DetailsPageTest, InTheDarkThePageTakesThePalettesColours) {
  theme_.SetDark(true);
  ShowOne("failed");
  EXPECT_EQ(StyleOf("body", "backgroundColor"), Css(theme_.tokens().base));
  EXPECT_EQ(StyleOf("font[color='#00009D']", "color"), Css(theme_.tokens().text));
  EXPECT_EQ(StyleOf("#H1", "color"), Css(theme_.tokens().link));
}

TEST_F(DetailsPageTest, ThePageOnShowFollowsTheDesktop) {
  theme_.SetDark(false);
  ShowOne("failed");
  EXPECT_EQ(StyleOf("body", "backgroundColor"), QStringLiteral("rgb(209, 220, 250)"));
  theme_.SetDark(true);
  EXPECT_EQ(StyleOf("body", "backgroundColor"), Css(theme_.tokens().base));
  theme_.SetDark(false);
  EXPECT_EQ(StyleOf("body", "backgroundColor"), QStringLiteral("rgb(209, 220, 250)"));
}

// Finds an element of the tree that assistive programs read.
QAccessibleInterface* FindAccessible(QAccessibleInterface* root, QAccessible::Role role,
                                     const QString& name) {
  if (!root || !root->isValid()) return nullptr;
  if (root->role() == role && root->text(QAccessible::Name).contains(name)) return root;
  for (int i = 0; i < root->childCount(); ++i)
    if (QAccessibleInterface* found = FindAccessible(root->child(i), role, name)) return found;
  return nullptr;
}

TEST_F(DetailsPageTest, AssistiveProgramFindsTheTextAndCanGoToALinkAndEnterIt) {
  QAccessible::setActive(true);
  ShowOne("failed");
  QAccessibleInterface* link = nullptr;
  ASSERT_TRUE(WaitFor([&] {
    link = FindAccessible(QAccessible::queryAccessibleInterface(browser_), QAccessible::Link,
                          QStringLiteral("details"));
    return link != nullptr;
  }));
  ASSERT_TRUE(link->actionInterface());
  link->actionInterface()->doAction(QAccessibleActionInterface::setFocusAction());
  EXPECT_TRUE(WaitFor([&] { return Ask(QStringLiteral("document.activeElement.id")).toString() == u"H1"; }));
  QTest::keyClick(Input(), Qt::Key_Return);
  EXPECT_TRUE(WaitFor([&] { return !navigations_.empty(); }));
  EXPECT_THAT(navigations_, ElementsAre("about:showhide"));
}

// As an assistive program's press: the browser makes a click of its own, and the toolkit saw nobody act.
TEST_F(DetailsPageTest, ClickThatTheBrowserVouchesForCountsWithoutTheToolkit) {
  ShowOne("failed");
  ClickWithoutTheToolkit(QStringLiteral("#H1"));
  EXPECT_TRUE(WaitFor([&] { return !navigations_.empty(); }));
  EXPECT_THAT(navigations_, ElementsAre("about:showhide"));
  // And once only: a script that clicks the same link behind it is nobody.
  RunInPage(QStringLiteral("document.querySelector('#H1').click(); 0"));
  Settle();
  EXPECT_THAT(navigations_, ElementsAre("about:showhide"));
}

class LinkEndTest : public DetailsPageTest, public ::testing::WithParamInterface<const char*> {};
INSTANTIATE_TEST_SUITE_P(Links, LinkEndTest, ::testing::Values("todo?x=do", "x#undo"));

// Only the end of a link's address makes it a command, whichever part of the address that is.
TEST_P(LinkEndTest, ArrivesWithWhatStandsBehindTheName) {
  ShowOne("failed");
  RunInPage(QStringLiteral("document.body.innerHTML = '<a id=X href=\"%1\">here</a>'; 0")
                .arg(QLatin1String(GetParam())));
  Settle();
  ClickWithoutTheToolkit(QStringLiteral("#X"));
  EXPECT_TRUE(WaitFor([&] { return !navigations_.empty(); }));
  EXPECT_THAT(navigations_, ElementsAre(std::string("about:") + GetParam()));
}

TEST_F(DetailsPageTest, ScriptCannotUseTheClickOfAPersonASecondTime) {
  ShowOne("failed");
  Click(QStringLiteral("#H1"));
  EXPECT_TRUE(WaitFor([&] { return !navigations_.empty(); }));
  RunInPage(QStringLiteral("document.querySelector('#H1').click(); 0"));
  Settle();
  EXPECT_THAT(navigations_, ElementsAre("about:showhide"));
}

TEST_F(DetailsPageTest, ScriptThatFocusesALinkAndClicksItIsNobody) {
  ShowOne("failed");
  RunInPage(QStringLiteral("const a = document.querySelector('#H1'); a.focus(); a.click(); 0"));
  RunInPage(QStringLiteral(
      "document.querySelector('#H1').dispatchEvent(new MouseEvent('click', {bubbles: true, cancelable: "
      "true, detail: 1})); 0"));
  Settle();
  EXPECT_THAT(navigations_, IsEmpty());
}

class LatePageTest : public PageFixture {};

TEST_F(LatePageTest, BrowserComesWhenItIsFirstSeenAndShowsWhatWasWrittenBefore) {
  widgets::BrowserView view("late");
  int arrived = 0;
  view.NavigationComplete.ConnectForever([&] { ++arrived; });
  const Toolkit kit{guard_, pictures_, theme_};
  const std::unique_ptr<QWidget> place(MakeBrowserView(view, QStringLiteral("Late"), kit));
  view.Navigate("About: <body> </body>");
  EXPECT_EQ(arrived, 1);
  EXPECT_TRUE(view.page()->SetBodyHtml("<p id='told'>kept</p>"));
  EXPECT_TRUE(view.page()->AddScript("document.querySelector('#told').title = 'ran';"));
  EXPECT_FALSE(BrowserIn(place.get()));
  place->show();
  QWebEngineView* const browser = BrowserIn(place.get());
  ASSERT_TRUE(browser);
  page_ = dynamic_cast<DetailsPage*>(browser->page());
  EXPECT_TRUE(WaitFor([&] {
    return Ask(QStringLiteral("(e => e ? e.textContent + e.title : '')(document.querySelector('#told'))"))
               .toString() == QStringLiteral("keptran");
  }));
  EXPECT_EQ(arrived, 1);
}

TEST_F(LatePageTest, PageThatIsLeftWhileItCatchesUpShowsTheNextOneAlone) {
  widgets::BrowserView view("late");
  int arrived = 0;
  view.NavigationComplete.ConnectForever([&] { ++arrived; });
  const Toolkit kit{guard_, pictures_, theme_};
  const std::unique_ptr<QWidget> place(MakeBrowserView(view, QStringLiteral("Late"), kit));
  view.Navigate("About: <body> </body>");
  view.page()->SetBodyHtml("<p id='old'>old</p>");
  place->show();
  page_ = dynamic_cast<DetailsPage*>(BrowserIn(place.get())->page());
  view.Navigate("About: <body><p id='new'>new</p></body>");
  EXPECT_TRUE(WaitFor([&] { return arrived == 2; }));
  EXPECT_TRUE(Ask(QStringLiteral("!!document.querySelector('#new')")).toBool());
  EXPECT_FALSE(Ask(QStringLiteral("!!document.querySelector('#old')")).toBool());
}

}  // namespace
}  // namespace zendrix::qt
