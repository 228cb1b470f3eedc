#include "home/details_pane.h"

#include <utility>

#include "alerts/decisions.h"
#include "core/guards.h"
#include "core/hash_utils.h"
#include "core/path_text.h"
#include "store/descriptions.h"

namespace zendrix::home {
namespace {

constexpr char kPageHead[] = "About: <body bgcolor=#D1DCFA> <font size=1 color='#00009D' face='Tahoma'> <p>";
constexpr char kPageTail[] = "</font> </body>";
constexpr char kBodyHead[] = "<font size=1 color='#00009D' face='Tahoma'> <p>";
constexpr char kBodyTail[] = "</font>";
constexpr char kNoDescription[] = "Description Not Available";
constexpr char kDetailsLink[] = "H1";
constexpr char kDetailsBlock[] = "H2";
constexpr int kScriptFile = 8;
constexpr std::int64_t kLongestWaitMs = 10000;
constexpr std::int64_t kRestMs = 50;

// The alert that a page explains, as the page carries it: "179 1795225500".
std::string SubjectOf(const alerts::ListedAlert& alert) {
  return alert.id + " " + alert.date_utc;
}

alerts::ListedAlert AlertOf(const std::string& subject) {
  const std::size_t blank = subject.find(' ');
  return {subject.substr(0, blank), subject.substr(blank + 1), ""};
}

}  // namespace

DetailsPane::DetailsPane(DetailsParts parts, widgets::BrowserView& view)
    : parts_(parts), app_(parts.state), view_(view) {
  view_.NavigationComplete.ConnectForever([this] { DocumentReady = true; });
  view_.BeforeNavigate = [this](const std::string& url, const std::string& subject) {
    return BeforeNavigate(url, subject);
  };
}

void DetailsPane::ShowText(const std::string& text) {
  view_.Navigate(kPageHead + text + kPageTail);
}

void DetailsPane::ShowAlert(const alerts::ListedAlert& alert) {
  const std::string html = parts_.alerts.RenderDetails(alert.id);
  if (html.empty()) {
    ShowText(kNoDescription);
    view_.SetSubject(SubjectOf(alert));
  } else {
    DocumentReady = false;
    ShowText(" ");
    if (!WaitForDocument()) return;
    if (widgets::BrowserPage* page = view_.page()) page->SetBodyHtml(kBodyHead + html + kBodyTail);
    view_.SetSubject(SubjectOf(alert));
  }
  AddScripts();
}

bool DetailsPane::WaitForDocument() {
  auto& clock = app_.seams.clock;
  const std::int64_t start = clock.MonotonicMs();
  while (!DocumentReady) {
    app_.seams.loop.ProcessMessages();
    if (DocumentReady) break;
    if (clock.MonotonicMs() - start >= kLongestWaitMs) return false;
    app_.seams.loop.WaitForMessages(kRestMs);
  }
  return true;
}

// The script file is read at each use: it counts as it is now, with the hash that it has now.
void DetailsPane::AddScripts() {
  constexpr char kPlace[] = "frmNewUI:AddScripts";
  const auto error = core::ErrorOf([&] {
    auto& files = app_.seams.files;
    const std::string path = store::DescPath(app_, kScriptFile);
    std::string script;
    if (files.Exists(path)) {
      auto verified = core::HashUtils(files, app_.seams.family).ReadVerified(path);
      if (verified)
        script = std::move(*verified);
      else
        parts_.log.WriteLog(kPlace, "Error: stored hash does not match for " + core::PathText(path));
    }
    widgets::BrowserPage* page = view_.page();
    if (page && !page->AddScript(script)) core::Raise(core::kObjectNotSet);
  });
  if (error) parts_.log.WriteLog(kPlace, "Error: Scripts not loaded " + error->description);
}

void DetailsPane::Decide(alerts::Answer answer, const std::string& subject) {
  if (subject.empty()) return;
  parts_.screen.MousePointer = widgets::kPointerHourglass;
  parts_.alerts.DecideFromPage(answer, AlertOf(subject));
  parts_.screen.MousePointer = widgets::kPointerDefault;
}

bool DetailsPane::BeforeNavigate(const std::string& url, const std::string& subject) {
  // Both are links of the portal: its address may be either.
  if (url.starts_with("http://") || url.starts_with("https://")) {
    core::OrLog(parts_.log, "frmNewUI:sDesc:beforeNavigate2",
                [&] { core::ValueOrRaise(app_.seams.shell.Open(url)); });
    return true;
  }
  switch (alerts::PageCommandOf(url)) {
    case alerts::PageCommand::kUndo:
      Decide(alerts::Answer::kAllow, subject);
      return true;
    case alerts::PageCommand::kDo:
      Decide(alerts::Answer::kBlock, subject);
      return true;
    case alerts::PageCommand::kShowHide:
      ToggleDetails();
      return true;
    case alerts::PageCommand::kNone:
      break;
  }
  return false;
}

// The choice is remembered: the next alert opens in the same state, and the next start too.
void DetailsPane::ToggleDetails() {
  widgets::BrowserPage* page = view_.page();
  if (!page) return;
  page->AskDisplay(kDetailsBlock, [this](const std::optional<std::string>& display) {
    widgets::BrowserPage* now = view_.page();
    if (!now || !display) return;
    const bool open = display->empty();
    now->SetDisplay(kDetailsBlock, open ? "none" : "");
    now->SetFirstChildText(kDetailsLink, open ? "[Show details]" : "[Hide details]");
    app_.settings.ShowDetailsOpen = !open;
  });
}

void DetailsPane::Stop() {
  if (widgets::BrowserPage* page = view_.page()) page->Stop();
}

}  // namespace zendrix::home
