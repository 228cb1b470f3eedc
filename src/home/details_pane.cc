#include "home/details_pane.h"

#include "alerts/decisions.h"
#include "core/guards.h"
#include "core/hash_utils.h"
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

}  // namespace

DetailsPane::DetailsPane(DetailsParts parts, widgets::BrowserView& view)
    : parts_(parts), app_(parts.state), view_(view) {
  view_.NavigationComplete.ConnectForever([this] { DocumentReady = true; });
  view_.BeforeNavigate = [this](const std::string& url) { return BeforeNavigate(url); };
}

void DetailsPane::ShowText(const std::string& text) {
  view_.Navigate(kPageHead + text + kPageTail);
}

void DetailsPane::ShowAlert(const std::string& id) {
  const std::string html = parts_.alerts.RenderDetails(id);
  if (html.empty()) {
    ShowText(kNoDescription);
  } else {
    DocumentReady = false;
    ShowText(" ");
    if (!WaitForDocument()) return;
    if (widgets::BrowserPage* page = view_.page()) page->SetBodyHtml(kBodyHead + html + kBodyTail);
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
  try {
    auto& files = app_.seams.files;
    const std::string path = store::DescPath(app_, kScriptFile);
    std::string script;
    if (files.Exists(path)) {
      if (core::HashUtils(files, app_.seams.family).VerifyFileHash(path))
        script = core::ValueOrRaise(files.ReadAll(path));
      else
        parts_.log.WriteLog(kPlace, "Error: stored hash does not match for " + path);
    }
    widgets::BrowserPage* page = view_.page();
    if (page && !page->AddScript(script)) core::Raise(core::kObjectNotSet);
  } catch (const core::RunTimeError& error) {
    parts_.log.WriteLog(kPlace, "Error: Scripts not loaded " + error.description);
  }
}

bool DetailsPane::BeforeNavigate(const std::string& url) {
  if (url.starts_with("http://")) {
    core::OrLog(parts_.log, "frmNewUI:sDesc:beforeNavigate2",
                [&] { core::ValueOrRaise(app_.seams.shell.Open(url)); });
    return true;
  }
  switch (alerts::PageCommandOf(url)) {
    case alerts::PageCommand::kUndo:
      parts_.screen.MousePointer = widgets::kPointerHourglass;
      parts_.alerts.DecideFromPage(alerts::Answer::kAllow);
      parts_.screen.MousePointer = widgets::kPointerDefault;
      return true;
    case alerts::PageCommand::kDo:
      parts_.screen.MousePointer = widgets::kPointerHourglass;
      parts_.alerts.DecideFromPage(alerts::Answer::kBlock);
      parts_.screen.MousePointer = widgets::kPointerDefault;
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
