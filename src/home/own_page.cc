#include "home/own_page.h"

#include <utility>

#include "core/guards.h"
#include "core/hash_utils.h"
#include "core/path_text.h"
#include "home/page_wait.h"
#include "store/descriptions.h"

namespace zendrix::home {
namespace {
constexpr int kScriptFile = 8;
}  // namespace

OwnPage::OwnPage(core::AppState& state, core::ErrorLog& log, widgets::BrowserView& view)
    : app_(state), log_(log), view_(view) {
  view_.NavigationComplete.ConnectForever([this] { DocumentReady_ = true; });
}

bool OwnPage::Write(const std::string& url, const std::string& html) {
  DocumentReady_ = false;
  view_.Navigate(url);
  if (!WaitForPage(app_, [this] { return stopped_ || DocumentReady_; }) || stopped_) return false;
  if (widgets::BrowserPage* page = view_.page()) page->SetBodyHtml(html);
  return true;
}

// The script file is read at each use: it counts as it is now, with the hash that it has now.
void OwnPage::AddScripts(const std::string& place) {
  const auto error = core::ErrorOf([&] {
    auto& files = app_.seams.files;
    const std::string path = store::DescPath(app_, kScriptFile);
    std::string script;
    if (files.Exists(path)) {
      auto verified = core::HashUtils(files, app_.seams.family).ReadVerified(path);
      if (verified)
        script = std::move(*verified);
      else
        log_.WriteLog(place, "Error: stored hash does not match for " + core::PathText(path));
    }
    widgets::BrowserPage* page = view_.page();
    if (page && !page->AddScript(script)) core::Raise(core::kObjectNotSet);
  });
  if (error) log_.WriteLog(place, "Error: Scripts not loaded " + error->description);
}

// Both are links of the portal: its address may be either.
bool OwnPage::OpenedLink(const std::string& url, const std::string& place) {
  if (!url.starts_with("http://") && !url.starts_with("https://")) return false;
  core::OrLog(log_, place, [&] { core::ValueOrRaise(app_.seams.shell.Open(url)); });
  return true;
}

void OwnPage::Stop() {
  stopped_ = true;
  if (widgets::BrowserPage* page = view_.page()) page->Stop();
}

}  // namespace zendrix::home
