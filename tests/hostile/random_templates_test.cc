// Whatever a template is like, and wherever it puts the text of an event, the page is made of the same tags
// and attributes as with a harmless text in that place.
#include <random>

#include "support/alert_fixture.h"
#include "support/browser_tokens.h"
#include "support/hostile_corpus.h"
#include "support/hostile_events.h"
#include "support/odd_texts.h"
#include "support/sanitizers.h"

namespace zendrix::alerts {
namespace {

class Templates {
 public:
  explicit Templates(unsigned seed) : random_(seed) {}

  std::size_t Below(std::size_t end) { return random_() % end; }
  // Of pieces of markup and these placeholders.
  std::string With(const std::vector<std::string>& placeholders) {
    std::string text;
    for (auto left = 3 + Below(8); left > 0; --left)
      text += Below(3) == 0 ? placeholders[Below(placeholders.size())] : Piece();
    return text;
  }

 private:
  std::string Piece() {
    static const std::vector<std::string> kPieces = {
        "<",        ">",         "</",          "<!--",     "-->",       "--",      "-",        "!",
        "<!",       "<?",        "<![CDATA[",   "]]>",      "'",         "\"",      "=",        " ",
        "/",        "/>",        "&",           "&am",      "&#",        "&#x",     ";",        "&lt;",
        "x",        "td",        "80",          "script",   "<b",        "<b ",     "<b>",      "</b>",
        "<a href=", "<A HREF='", "<img src=\"", " title=",  " title='",  " alt=\"", " style='", " onclick=\"",
        "<script>", "</script>", "<!--<script", "<script ", "</script ", "<style>", "</style>", "<textarea>",
        "</text",   "area>",     "</textarea>", "<title>",  "</title>",  "<xmp>",   "</xmp>",   "<svg>",
        "<select>", "<math>",    "<noscript>",  "<iframe>", "</iframe>", "<TD",     "http://x", "javascript:",
        "?q=",      "#",         "do",          "<dotext>", "\t",        "--!>",    "`",        "\\"};
    // What never ends would leave the rest of the template unread.
    return Below(400) == 0 ? "<plaintext>" : kPieces[Below(kPieces.size())];
  }

  std::mt19937 random_;
};

const std::vector<std::string>& RowPlaceholders() {
  static const std::vector<std::string> all = {"<description>",
                                               "<description, right of :>",
                                               "<description, left of :>",
                                               "<description, right of last :>",
                                               "<description, right of last \\>",
                                               "<description right of =>",
                                               "<%1>",
                                               ".<%2>",
                                               "<:",
                                               ":>"};
  return all;
}

const std::vector<std::string>& PagePlaceholders() {
  static const std::vector<std::string> all = {"<date>",         "<time>",      "<time>.<br>", "<Corrected>",
                                               "<NotCorrected>", "<risklevel>", "<undotext>",  "<dotext>"};
  return all;
}

const std::vector<std::string>& WizardPlaceholders() {
  static const std::vector<std::string> all = {
      "&lt;port&gt;",        "&lt;ip address&gt;",     "&lt;program&gt;",
      "&lt;description&gt;", "&lt;time of alert&gt;",  "&lt;click here&gt;",
      "&lt;Click here&gt;",  "&lt;important icon&gt;", "&lt;full description from right pane&gt;"};
  return all;
}

class RandomTemplatesTest : public test::AlertFixture, public ::testing::WithParamInterface<unsigned> {
 protected:
  // The tags and attributes that a browser sees.
  static std::vector<std::string> Shape(const std::string& shown) {
    return test::ShapeOf(test::ReadAsBrowser(shown),
                         "http://portal.example.com/redir.asp?PostType=UserGetDescription&Mon=");
  }
  void HaveTemplates(Templates& templates, const std::string& monitor) {
    state_.Desc[2] = {"Aggregation,N," + templates.With(PagePlaceholders()),
                      monitor + ",1," + templates.With(RowPlaceholders())};
    state_.Desc[5] = {monitor + "," + templates.With(WizardPlaceholders()),
                      "Aggregation," + templates.With(WizardPlaceholders())};
  }
  void HaveAlert(const std::string& monitor, const std::string& description, const std::string& text) {
    NotableRecord alert = AnAlert();
    alert.DateTime = text;
    Have(alert);
    HaveEvent(monitor, description, "success failed");
    alerts_.context().FirstEventDateTime = text;
  }
  std::vector<std::string> Pages() {
    std::vector<std::string> all = {Page(true, Purpose::kShown), Page(false, Purpose::kShown)};
    for (std::size_t i = 0; i < 2; ++i) all.push_back(MonitorText(i, Purpose::kShown));
    return all;
  }
  void ExpectSameShapes(const std::vector<std::string>& pages, const std::vector<std::string>& harmless) {
    for (std::size_t i = 0; i < pages.size(); ++i) {
      EXPECT_EQ(Shape(pages[i]), Shape(harmless[i])) << pages[i] << "\n\nharmless:\n" << harmless[i];
      if (HasFailure()) return;
    }
  }
};

TEST_P(RandomTemplatesTest, PageIsMadeOfTheSameAsWithAHarmlessText) {
  Templates templates(GetParam());
  const auto& texts = test::OddTexts();
  const auto& monitors = test::PageMonitors();
  for (int round = 0; round < test::Rounds(400); ++round) {
    const std::string& monitor = monitors[templates.Below(monitors.size())];
    const std::string& text = texts[templates.Below(texts.size())];
    const auto descriptions = test::DescriptionsWith(monitor, text);
    const std::string& description = descriptions[templates.Below(descriptions.size())];
    HaveTemplates(templates, monitor);
    SCOPED_TRACE(monitor + ": " + description + "\n" + state_.Desc[2][0] + "\n" + state_.Desc[2][1] + "\n" +
                 state_.Desc[5][0]);
    test::Harmless harmless;
    HaveAlert(monitor, description, text);
    const std::vector<std::string> pages = Pages();
    HaveAlert(monitor, harmless.Of(description), harmless.Of(text));
    ExpectSameShapes(pages, Pages());
    if (HasFailure()) return;
  }
}

// An event that says nothing is an event's text as well.
TEST_P(RandomTemplatesTest, PageIsMadeOfTheSameWithAnEmptyText) {
  Templates templates(GetParam() + 1000);
  for (int round = 0; round < test::Rounds(200); ++round) {
    const std::string monitor = templates.Below(2) ? "System" : "Autorun Registry";
    const bool entry = monitor != "System";
    HaveTemplates(templates, monitor);
    SCOPED_TRACE(state_.Desc[2][0] + "\n" + state_.Desc[2][1] + "\n" + state_.Desc[5][0]);
    HaveAlert(monitor, entry ? "=" : "", "");
    const std::vector<std::string> pages = Pages();
    HaveAlert(monitor, entry ? "Q=Q" : "Q", "Q");
    ExpectSameShapes(pages, Pages());
    if (HasFailure()) return;
  }
}

INSTANTIATE_TEST_SUITE_P(Seeds, RandomTemplatesTest, ::testing::Range(0U, 12U));

}  // namespace
}  // namespace zendrix::alerts
