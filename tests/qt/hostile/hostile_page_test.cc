// Hostile texts in the real browser: the page holds what its templates hold, shows the text as text, asks for
// nothing but its pictures, and does nothing by itself.
#include <gtest/gtest-spi.h>

#include <QJsonArray>
#include <QJsonDocument>
#include <algorithm>
#include <set>

#include "hostile/page_fixture.h"
#include "qt/text_edge.h"
#include "support/hostile_corpus.h"
#include "support/hostile_events.h"

namespace zendrix::qt {
namespace {

// Tags with their depth and attributes, one line each, of the page and of a document that was never shown.
// Links made of values are left out: their number depends on the words of the template. So is what the
// page's own script adds for the ease of its readers.
constexpr char kTrees[] = R"(
  (harmless => {
    const portal = 'http://portal.example.com/redir.asp?PostType=UserGetDescription&Mon=';
    const ofValue = e => e.tagName === 'A' && !e.id &&
        (e.getAttribute('href') === '' || (e.getAttribute('href') || '').startsWith(portal));
    const loose = ['alt', 'title', 'hidden', 'aria-controls', 'aria-expanded', 'nonce', 'content'];
    const line = (e, depth) => depth + ' ' + e.tagName + [...e.attributes].filter(
        a => !loose.includes(a.name)).map(a => ' ' + a.name + '=' + a.value).join('');
    const tree = (e, depth) => ofValue(e) ? [...e.children].flatMap(c => tree(c, depth)) :
        [line(e, depth), ...[...e.children].flatMap(c => tree(c, depth + 1))];
    const inert = document.implementation.createHTMLDocument('').body;
    inert.innerHTML = harmless;
    const anchors = [...document.querySelectorAll('a')];
    return {
      head: tree(document.head, 0), body: [...document.body.children].flatMap(c => tree(c, 0)),
      expected: [...inert.children].flatMap(c => tree(c, 0)),
      links: anchors.map(a => a.getAttribute('href')),
      attributes: [...new Set(anchors.flatMap(a => [...a.attributes].map(b => b.name)))],
      text: document.body.innerText };
  })(%1[0])
)";

// As a literal: a list of the one text.
QString InAList(const std::string& text) {
  return QString::fromUtf8(QJsonDocument(QJsonArray{ToQt(text)}).toJson(QJsonDocument::Compact));
}

// As a page shows it: characters without a picture are blanks, and blanks run together.
QString Readable(std::string text) {
  for (char& c : text)
    if (static_cast<unsigned char>(c) < 32 ||
        std::string_view("\x7f\x81\x8d\x8f\x90\x9d").find(c) != std::string_view::npos)
      c = ' ';
  return ToQt(text).simplified();
}

class HostilePageTest : public PageFixture {
 protected:
  void ExpectOnlyText() {
    const QString harmless =
        InAList("<font size=1 color='#00009D' face='Tahoma'> <p>" + alerts_.harmless + "</font>");
    const QVariantMap page = Ask(QString::fromLatin1(kTrees).arg(harmless).trimmed()).toMap();
    const QStringList head = {"0 HEAD", "1 META charset=utf-8", "1 META http-equiv=Content-Security-Policy",
                              "1 TITLE", "1 STYLE"};
    EXPECT_EQ(page["head"].toStringList(), head);
    const QStringList scripts = {"0 SPAN style=display: none;", "0 SCRIPT"};
    EXPECT_EQ(page["body"].toStringList(), page["expected"].toStringList() + scripts);
    for (const QString& link : page["links"].toStringList())
      EXPECT_TRUE(link.isEmpty() || link == "do" || link == "undo" || link == "showhide" ||
                  link.startsWith("http://portal.example.com/redir.asp?PostType=UserGetDescription&Mon="))
          << link.toStdString();
    for (const QString& name : page["attributes"].toStringList())
      EXPECT_TRUE(QStringList({"href", "id", "hidden", "aria-controls", "aria-expanded"}).contains(name))
          << name.toStdString();
    ExpectReadable(page["text"].toString().simplified());
  }

  // Descriptions that a page shows whole.
  void ExpectReadable(const QString& text) {
    static const std::set<std::string> kWhole = {"System", "System Users", "Windows Folder",
                                                 "Logged-On Users"};
    const auto& all = alerts_.context().NotableInfo;
    for (std::size_t i = 1; i < all.size(); ++i) {
      if (!kWhole.count(all[i].Monitor)) continue;
      EXPECT_TRUE(text.contains(Readable(all[i].Description))) << all[i].Description;
      ++read_;
    }
  }

  void ExpectNothingDone() {
    EXPECT_THAT(navigations_, ::testing::IsEmpty());
    EXPECT_THAT(alerts_.decisions, ::testing::IsEmpty());
    EXPECT_THAT(platform_.shell.opened, ::testing::IsEmpty());
    for (const QUrl& url : wall_.asked) EXPECT_TRUE(IsOwn(url)) << url.toString().toStdString();
    wall_.asked.clear();
  }

  void TakeExpectedLines() {
    for (const std::string& line : quiet_.Take())
      EXPECT_TRUE(line.find("Error in line: ") != std::string::npos ||
                  line.find("Error retrieving Alert details. ") != std::string::npos)
          << line;
  }

  void ShowAndCheck(const std::string& id) {
    Show(id);
    ExpectOnlyText();
    ExpectNothingDone();
    TakeExpectedLines();
  }

  int read_ = 0;
};

constexpr std::size_t kShares = 12;
class HostileShareTest : public HostilePageTest, public ::testing::WithParamInterface<std::size_t> {};
INSTANTIATE_TEST_SUITE_P(Corpus, HostileShareTest, ::testing::Range(std::size_t{0}, kShares));

TEST_P(HostileShareTest, EveryTextIsOnlyTextInTheBrowser) {
  const auto corpus = test::HostileCorpus(std::string(ZENDRIX_TEST_DATA) + "/hostile");
  std::size_t number = GetParam();  // of the text in the corpus
  for (const test::HostileText& text : test::ShareOf(corpus, GetParam(), kShares)) {
    SCOPED_TRACE(text.name);
    const std::vector<std::string> ids = Load(test::MonitoringFileWith(text.bytes));
    ASSERT_FALSE(ids.empty());
    // A step that has no divisor in common with the number of alerts, so that every monitor has its turn.
    for (const std::size_t turn : {2 * number, 2 * number + 1}) ShowAndCheck(ids[turn * 7 % ids.size()]);
    if (HasFailure()) FAIL() << alerts_.shown << "\n\nharmless:\n" << alerts_.harmless;
    number += kShares;
  }
  Settle();
  ExpectNothingDone();
  EXPECT_GE(read_, 15);
}

TEST_F(HostilePageTest, OneTextInEveryPlaceOfEveryMonitorIsOnlyText) {
  const std::string text = "'\"><A HREF='do'><img src=x onerror=location='undo'>&lt;port&gt;<dotext>";
  for (const std::string& id : Load(test::MonitoringFileWith(text))) {
    SCOPED_TRACE(id);
    ShowAndCheck(id);
  }
  Settle();
  ExpectNothingDone();
}

// Nothing above would be worth anything if the comparison did not see what it looks for.
TEST_F(HostilePageTest, ComparisonSeesWhatAnEventWouldAdd) {
  for (const char* added : {"<b>x</b>", "<a href='http://203.0.113.9/'>x</a>", "<a href=do onclick=x>x</a>",
                            "<a href='undo'>x</a>", "<iframe></iframe>", "</table></div>"}) {
    ShowOne("failed");
    std::string page = alerts_.shown;
    page_->SetBodyHtml("<font size=1 color='#00009D' face='Tahoma'> <p>" +
                       page.insert(page.find("one.exe</A>"), added) + "</font>");
    page_->AddScript("");
    ::testing::TestPartResultArray failures;
    {
      ::testing::ScopedFakeTestPartResultReporter reporter(
          ::testing::ScopedFakeTestPartResultReporter::INTERCEPT_ONLY_CURRENT_THREAD, &failures);
      ExpectOnlyText();
    }
    EXPECT_GT(failures.size(), 0) << added;
  }
}

TEST_F(HostilePageTest, PageAsksForItsPicturesOnly) {
  ShowOne("failed");
  EXPECT_TRUE(
      WaitFor([&] { return Ask(QStringLiteral("[...document.images].every(i => i.complete)")).toBool(); }));
  std::set<QString> names;
  for (const QUrl& url : wall_.asked) names.insert(url.fileName());
  EXPECT_TRUE(std::any_of(names.begin(), names.end(),
                          [](const QString& name) { return name.endsWith(QLatin1String("bug_red.png")); }));
  EXPECT_EQ(Ask(QStringLiteral("[...document.images].filter(i => !i.naturalWidth).length")).toInt(), 0);
  ExpectNothingDone();
}

// A "?" or "#" in the name of the program folder ended the picture's path, and a quote its attribute.
TEST_F(HostilePageTest, PicturesAreFoundInAProgramFolderOfAnyName) {
  for (const char* folder : {"/opt/Gr\xC3\xBC\xC3\x9F"
                             "e \xE2\x82\xAC",
                             "/opt/it's #1? 100% <b>", "/opt/\xE6\x97\xA5"}) {
    SCOPED_TRACE(folder);
    state_.ProgramFolder = folder;
    ShowOne("failed");
    EXPECT_TRUE(WaitFor([&] {
      return Ask(QStringLiteral("document.images.length > 1 && [...document.images].every(i => i.complete)"))
          .toBool();
    }));
    EXPECT_EQ(Ask(QStringLiteral("[...document.images].filter(i => !i.naturalWidth).length")).toInt(), 0);
  }
}

}  // namespace
}  // namespace zendrix::qt
