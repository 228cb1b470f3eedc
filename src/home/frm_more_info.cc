#include "home/frm_more_info.h"

#include <utility>

#include "alerts/templates.h"

namespace zendrix::home {

namespace {

constexpr char kTitle[] = "Korvessa Zendrix Alert Analisys Wizard ";
constexpr char kStart[] = "Start Wizard >";
constexpr char kNext[] = "Next >";
constexpr char kBlankPage[] = "About: <body> </body>";
constexpr char kBanner[] =
    "<table border='0' width='100%'><tr align='center'><td bgcolor='#0052A5'><h3><font color='#FFFFFF'>"
    "Korvessa Zendrix Alert Analisys Wizard</font></h3></td></tr></table>";
constexpr char kCorrupted[] =
    "<br><br><center> A corrupted file was encountered. Please reinstall the Korvessa Zendrix Home product "
    "to correct this issue. <br> Thank you for your time. </center>";
constexpr char kNoMessage[] =
    "<br><br><center> No message found in Descriptions file. <br> Thank you for your time. </center>";

}  // namespace

frmMoreInfo::frmMoreInfo(core::AppState& app, core::ErrorLog& log, alerts::Explanation explanation,
                         std::function<void(std::int16_t)> report)
    : Form(app.forms, "frmMoreInfo"),
      app_(app),
      explanation_(std::move(explanation)),
      report_(std::move(report)),
      page_(app, log, WBr),
      events_(static_cast<int>(explanation_.events)) {
  title = kTitle;
  bFinish.visible = false;
  bBack.visible = false;
  bNext.clicked.ConnectForever([this] { bNext_Click(); });
  bBack.clicked.ConnectForever([this] { bBack_Click(); });
  bFinish.clicked.ConnectForever([this] { bFinish_Click(); });
  for (std::size_t i = 0; i < optAns.size(); ++i)
    optAns[i].clicked.ConnectForever([this, i] { optAns_Click(static_cast<int>(i)); });
  WBr.BeforeNavigate = [this](const std::string& url, const std::string&) {
    return page_.OpenedLink(url, "frmMoreInfo:WBr_BeforeNavigate2");
  };
}

// A window that goes because nobody could show it has come to no outcome.
frmMoreInfo::~frmMoreInfo() {
  report_ = nullptr;
  Unload();
}

void frmMoreInfo::OnLoad() {
  answers_.assign(static_cast<std::size_t>(events_) + 1, 0);
  bNext.caption = kStart;
}

void frmMoreInfo::OnActivate() {
  if (std::exchange(introduced_, true)) return;
  LoadHTML(Page(0));
}

// A page that came up while an earlier one still waited is the one that the buttons are about: whoever is
// through with the waiting writes the newest.
void frmMoreInfo::LoadHTML(const std::string& html) {
  html_ = html;
  page_.Write(kBlankPage, html_);
}

std::string frmMoreInfo::Page(int index) const {
  return explanation_.page(static_cast<std::size_t>(index));
}

void frmMoreInfo::bNext_Click() {
  bNext.caption = kNext;
  if (step_ < events_) {
    ++step_;
    ShowStep();
  } else {
    ShowEnd();
  }
}

// The buttons stand as the new page wants them before the wait for it: the user may answer meanwhile.
void frmMoreInfo::ShowStep() {
  title = std::string(kTitle) + "- Step " + std::to_string(step_) + " of " + std::to_string(events_);
  bBack.visible = true;
  bNext.visible = true;
  bNext.enabled = false;
  fraQ.visible = true;
  StartQuestion();
  LoadHTML("<h3><font color='#0052A5'>" + title.Get() + "</font></h3>" + Page(step_));
}

void frmMoreInfo::ShowEnd() {
  bNext.visible = false;
  bBack.visible = true;
  step_ = events_ + 1;
  fraQ.visible = false;
  bFinish.visible = true;
  title = std::string(kTitle) + "- End ";
  verdict_ = SumOfAnswers();
  StartQuestion();
  LoadHTML(EndPage());
}

int frmMoreInfo::SumOfAnswers() const {
  int sum = 0;
  for (std::size_t i = 1; i < answers_.size(); ++i) sum += answers_[i];
  return sum;
}

std::string frmMoreInfo::EndPage() const {
  const core::DescArray& texts = app_.Desc[6];
  if (texts.empty()) return std::string(kBanner) + kCorrupted;
  const char* const key = verdict_ == 0 ? "yesmsg," : verdict_ <= events_ ? "nomsg," : "dknowmsg,";
  return alerts::FindTemplate(texts, key).value_or(std::string(kBanner) + kNoMessage);
}

void frmMoreInfo::StartQuestion() {
  group_.Clear();
  WBr.focus.Raise();
}

void frmMoreInfo::optAns_Click(int index) {
  if (step_ > events_) return;
  answers_[static_cast<std::size_t>(step_)] = static_cast<std::int16_t>(index);
  if (verdict_ < index) verdict_ = index;
  bNext.enabled = true;
}

void frmMoreInfo::bBack_Click() {
  if (step_ > 0) --step_;
  if (step_ > 0) return ShowStep();
  bNext.visible = true;
  bBack.visible = false;
  fraQ.visible = false;
  bNext.caption = kStart;
  bNext.enabled = true;
  title = kTitle;
  StartQuestion();
  LoadHTML(Page(0));
}

bool frmMoreInfo::QueryUnload(widgets::UnloadCause cause) {
  if (cause == widgets::UnloadCause::kCloseBox) {
    const auto said = app_.seams.message_boxes.Show(
        {app_.ProductName,
         std::string("You are about to exit the ") + kTitle +
             "without completing an analysis on this alert.\r\nAre you sure you want to exit?",
         platform::BoxIcon::kInformation, platform::BoxButtons::kYesNo});
    return said == platform::BoxAnswer::kYes;
  }
  if (report_) report_(verdict_ != 0 ? 1 : 0);
  return true;
}

void frmMoreInfo::OnUnload() {
  page_.Stop();
}

}  // namespace zendrix::home
