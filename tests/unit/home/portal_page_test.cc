#include "home/portal_page.h"

#include "support/console_world.h"
#include "support/fake_portal.h"

namespace zendrix::home {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using zendrix::testing::FakePortal;

constexpr char kHome[] = "http://portal.example.com/redir.asp?x";

class PortalPageTest : public ::testing::Test {
 protected:
  std::int64_t Now() { return world_.platform.clock.MonotonicMs(); }

  zendrix::testing::ConsoleWorld world_;
  widgets::PortalView view_{"WBr"};
  std::unique_ptr<PortalPage> page_ = std::make_unique<PortalPage>(world_.state, view_);
};

TEST_F(PortalPageTest, ViewWithoutALogicGoesNowhere) {
  const widgets::PortalView view("WBr");
  EXPECT_TRUE(view.Cancels(kHome));
}

TEST_F(PortalPageTest, NoFailureIsToldBeforeThereIsOne) {
  EXPECT_FALSE(page_->lblNoPage.visible);
}

TEST_F(PortalPageTest, GoesBackForwardAndStopsInTheBrowser) {
  FakePortal browser(view_);
  page_->Navigate(kHome);
  page_->GoBack();
  page_->GoForward();
  page_->Stop();
  EXPECT_THAT(browser.events, ElementsAre(std::string("navigate ") + kHome, "back", "forward", "stop"));
  EXPECT_FALSE(page_->lblNoPage.visible);
}

TEST_F(PortalPageTest, PageWaitsForABrowserThatComesLate) {
  page_->Navigate("http://portal.example.com/1");
  page_->Navigate(kHome);
  FakePortal browser(view_);
  EXPECT_THAT(browser.events, ElementsAre(std::string("navigate ") + kHome)) << "the last one, once";
  EXPECT_EQ(view_.awaited(), "");
}

TEST_F(PortalPageTest, StopForgetsThePageThatWaits) {
  page_->Navigate(kHome);
  page_->Stop();
  FakePortal browser(view_);
  EXPECT_THAT(browser.events, IsEmpty());
}

TEST_F(PortalPageTest, CommandsWithoutABrowserDoNothing) {
  page_->GoBack();
  page_->GoForward();
  page_->Stop();
}

TEST_F(PortalPageTest, OtherHostsAreCancelled) {
  EXPECT_FALSE(view_.Cancels("http://portal.example.com/next"));
  EXPECT_TRUE(view_.Cancels("http://evil.org/"));
  EXPECT_TRUE(view_.Cancels("http://portal.example.com.evil.org/"));
}

TEST_F(PortalPageTest, AddressThatIsNotThePortalsIsNotGoneTo) {
  FakePortal browser(view_);
  page_->Navigate("file:///etc/passwd");
  EXPECT_THAT(browser.events, IsEmpty());
  EXPECT_TRUE(page_->lblNoPage.visible);
}

TEST_F(PortalPageTest, FailedPageSaysSoUntilOneIsThere) {
  FakePortal browser(view_);
  page_->Navigate(kHome);
  view_.ready = true;
  browser.Fail();
  EXPECT_TRUE(page_->lblNoPage.visible);
  browser.Arrive();
  EXPECT_FALSE(page_->lblNoPage.visible);
  browser.Fail();
  page_->Navigate(kHome);
  EXPECT_FALSE(page_->lblNoPage.visible);
}

TEST_F(PortalPageTest, ErrorWaitsForTheReadyFlagAndLetsOthersWork) {
  FakePortal browser(view_);
  page_->Navigate(kHome);
  const auto ready = world_.platform.timers.MakeTimer([&] { view_.ready = true; });
  ready->StartOnce(3000);
  const std::int64_t start = Now();
  browser.Fail();
  EXPECT_GE(Now() - start, 3000);
  EXPECT_LT(Now() - start, 3200);
}

TEST_F(PortalPageTest, ErrorWaitsTenSecondsAtTheMost) {
  FakePortal browser(view_);
  page_->Navigate(kHome);
  const std::int64_t start = Now();
  browser.Fail();
  EXPECT_EQ(Now() - start, 10000);
}

TEST_F(PortalPageTest, ErrorOfAReadyPageWaitsForNothing) {
  FakePortal browser(view_);
  view_.ready = true;
  const std::int64_t start = Now();
  browser.Fail();
  EXPECT_EQ(Now(), start);
}

// A page that failed again and again during the wait made a wait in the wait, each of ten seconds.
TEST_F(PortalPageTest, ErrorDuringTheWaitDoesNotWaitOnceMore) {
  FakePortal browser(view_);
  page_->Navigate(kHome);
  int errors = 0;
  const auto again = world_.platform.timers.MakeTimer([&] {
    if (++errors < 5) browser.Fail();
  });
  again->Start(1000);
  const std::int64_t start = Now();
  browser.Fail();
  EXPECT_EQ(Now() - start, 10000);
  again->Stop();
  browser.Fail();
  EXPECT_EQ(Now() - start, 20000) << "the next error waits again";
}

// The window was closed while it waited, and the next opening destroyed it.
TEST_F(PortalPageTest, PageThatGoesDuringTheWaitIsNotTouched) {
  widgets::PortalView view("WBr");
  auto page = std::make_unique<PortalPage>(world_.state, view);
  const auto closes = world_.platform.timers.MakeTimer([&] { page.reset(); });
  closes->StartOnce(1000);
  const std::int64_t start = Now();
  view.NavigateError.Raise();
  EXPECT_EQ(page, nullptr);
  EXPECT_LT(Now() - start, 1100);
}

}  // namespace
}  // namespace zendrix::home
