#include "home/portal_page.h"

#include "core/portal_endpoint.h"
#include "home/page_wait.h"

namespace zendrix::home {

PortalPage::PortalPage(core::AppState& state, widgets::PortalView& view) : app_(state), view_(view) {
  lblNoPage.visible = false;
  view_.BeforeNavigate = [this](const std::string& url) { return !core::IsOnPortal(app_, url); };
  view_.NavigateComplete.ConnectForever([this] { lblNoPage.visible = false; });
  view_.NavigateError.ConnectForever([this] {
    SayNoPage();
    WaitUntilReady();
  });
}

void PortalPage::Navigate(const std::string& url) {
  if (view_.Cancels(url)) return SayNoPage();
  lblNoPage.visible = false;
  view_.Navigate(url);
}

// The page may go while others work; nothing of it is touched then.
void PortalPage::WaitUntilReady() {
  if (waiting_) return;
  waiting_ = true;
  const std::weak_ptr<char> alive = alive_;
  WaitForPage(app_, [this, alive] { return alive.expired() || view_.ready; });
  if (alive.expired()) return;
  waiting_ = false;
}

}  // namespace zendrix::home
