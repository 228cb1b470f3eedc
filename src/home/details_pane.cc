#include "home/details_pane.h"

#include "alerts/decisions.h"

namespace zendrix::home {
namespace {

constexpr char kPageHead[] = "About: <body bgcolor=#D1DCFA> <font size=1 color='#00009D' face='Tahoma'> <p>";
constexpr char kPageTail[] = "</font> </body>";
constexpr char kBodyHead[] = "<font size=1 color='#00009D' face='Tahoma'> <p>";
constexpr char kBodyTail[] = "</font>";
constexpr char kNoDescription[] = "Description Not Available";
constexpr char kDetailsLink[] = "H1";
constexpr char kDetailsBlock[] = "H2";

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
    : parts_(parts), app_(parts.state), page_(parts.state, parts.log, view) {
  view.BeforeNavigate = [this](const std::string& url, const std::string& subject) {
    return BeforeNavigate(url, subject);
  };
}

void DetailsPane::ShowText(const std::string& text) {
  page_.Navigate(kPageHead + text + kPageTail);
}

void DetailsPane::ShowAlert(const alerts::ListedAlert& alert) {
  const std::string html = parts_.alerts.RenderDetails(alert.id);
  if (html.empty()) {
    ShowText(kNoDescription);
  } else if (!page_.Write(std::string(kPageHead) + " " + kPageTail, kBodyHead + html + kBodyTail)) {
    return;
  }
  page_.view().SetSubject(SubjectOf(alert));
  page_.AddScripts("frmNewUI:AddScripts");
}

void DetailsPane::Decide(alerts::Answer answer, const std::string& subject) {
  if (subject.empty()) return;
  parts_.screen.MousePointer = widgets::kPointerHourglass;
  parts_.alerts.DecideFromPage(answer, AlertOf(subject));
  parts_.screen.MousePointer = widgets::kPointerDefault;
}

bool DetailsPane::BeforeNavigate(const std::string& url, const std::string& subject) {
  if (page_.OpenedLink(url, "frmNewUI:sDesc:beforeNavigate2")) return true;
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
  widgets::BrowserPage* page = page_.view().page();
  if (!page) return;
  page->AskDisplay(kDetailsBlock, [this](const std::optional<std::string>& display) {
    widgets::BrowserPage* now = page_.view().page();
    if (!now || !display) return;
    const bool open = display->empty();
    now->SetDisplay(kDetailsBlock, open ? "none" : "");
    now->SetFirstChildText(kDetailsLink, open ? "[Show details]" : "[Hide details]");
    app_.settings.ShowDetailsOpen = !open;
  });
}

}  // namespace zendrix::home
