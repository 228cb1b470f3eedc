// wizard: the Alert Analysis wizard of one alert, answered from the command line.
#include <memory>
#include <vector>

#include "home/frm_more_info.h"
#include "inspect/commands.h"
#include "inspect/home_console.h"
#include "widgets/form_host.h"

namespace zendrix::inspect {
namespace {

constexpr char kWizardUsage[] = "wizard ID [ANSWER...], each answer 0 (Yes), 1 (No) or 2 (I don't know)";

// Keeps the pages that a browser pane is given.
class PageKeeper : public widgets::BrowserPage {
 public:
  explicit PageKeeper(widgets::BrowserView& view) : view_(view) { view_.SetPage(this); }
  ~PageKeeper() override { view_.SetPage(nullptr); }
  PageKeeper(const PageKeeper&) = delete;
  PageKeeper& operator=(const PageKeeper&) = delete;

  void Navigate(const std::string&) override { view_.NavigationComplete.Raise(); }
  bool SetBodyHtml(const std::string& html) override {
    pages.push_back(Text(html));
    return true;
  }
  bool AddScript(const std::string&) override { return true; }
  void AskDisplay(const std::string&, std::function<void(std::optional<std::string>)> then) override {
    then(std::nullopt);
  }
  void SetDisplay(const std::string&, const std::string&) override {}
  void SetFirstChildText(const std::string&, const std::string&) override {}
  void Stop() override {}

  Json pages = Json::array();

 private:
  widgets::BrowserView& view_;
};

// Stands in for the user of the wizard's window: presses what the window offers, one button after the other.
class WizardUser : public widgets::HiddenForms {
 public:
  explicit WizardUser(std::vector<std::size_t> answers) : answers_(std::move(answers)) {}

  Json pages = Json::array();

 protected:
  void MakeWindow(widgets::Form& form, const widgets::ShowOptions&) override {
    if (auto* const wizard = dynamic_cast<home::frmMoreInfo*>(&form))
      pane_ = std::make_unique<PageKeeper>(wizard->WBr);
  }
  void RunModal(widgets::Form& form) override {
    if (auto* const wizard = dynamic_cast<home::frmMoreInfo*>(&form)) Answer(*wizard);
    // Only the end page has a button that reports; from any other the way out is the close box.
    if (form.loaded()) HiddenForms::RunModal(form);
    if (pane_) pages = std::move(pane_->pages);
    pane_.reset();
  }

 private:
  void Answer(home::frmMoreInfo& wizard) {
    Press(wizard.bNext);
    for (const std::size_t answer : answers_) {
      if (!wizard.fraQ.visible) break;
      wizard.optAns[answer].Click();
      Press(wizard.bNext);
    }
    Press(wizard.bFinish);
  }
  static void Press(widgets::Label& button) {
    if (button.visible && button.enabled) button.clicked.Raise();
  }

  std::vector<std::size_t> answers_;
  std::unique_ptr<PageKeeper> pane_;
};

}  // namespace

void Wizard(Console& console, const Words& words) {
  RequireWords(words, 1, words.size(), kWizardUsage);
  std::vector<std::size_t> answers;
  for (std::size_t i = 1; i < words.size(); ++i) {
    if (words[i] != "0" && words[i] != "1" && words[i] != "2")
      throw WrongUsage(std::string("usage: ") + kWizardUsage);
    answers.push_back(static_cast<std::size_t>(words[i][0] - '0'));
  }
  WizardUser user(std::move(answers));
  HomeConsole home(console);
  home.Click(words[0]);
  console.state().UseHost(user);
  home.form().alerts.sMoreInfo.clicked.Raise();
  const std::int16_t result = home.form().alerts.WizardResult;
  console.Print({{"pages", std::move(user.pages)}, {"result", result < 0 ? Json(nullptr) : Json(result)}});
}

}  // namespace zendrix::inspect
