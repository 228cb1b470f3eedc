// Hostile texts through the file, the table, the lookup and the renderers: a page holds the tags of its
// templates, the portal's links, and nothing else, whatever an event says.
#include <algorithm>
#include <random>
#include <set>

#include "core/text_rules.h"
#include "support/alert_fixture.h"
#include "support/hostile_corpus.h"
#include "support/hostile_events.h"
#include "support/page_elements.h"
#include "support/sanitizers.h"
#include "unit/data/data_files.h"

namespace zendrix::alerts {
namespace {

using test::DescriptionsWith;
using test::HostileText;
using test::PageElements;
using test::PageMonitors;
using test::PageTag;

constexpr std::string_view kPortal = "http://portal.example.com/redir.asp?PostType=UserGetDescription&Mon=";

// What templates and renderers are made of, as "name attribute attribute". Placeholders that were not
// replaced are tags as well.
const std::set<std::string>& KnownShapes() {
  static const std::set<std::string> shapes = {"p",
                                               "b",
                                               "/b",
                                               "br",
                                               "i",
                                               "/i",
                                               "tr align valign",
                                               "/tr",
                                               "td",
                                               "td width",
                                               "td colspan",
                                               "td align",
                                               "/td",
                                               "th width bgcolor",
                                               "th bgcolor",
                                               "/th",
                                               "table cellspacing cellpadding border width",
                                               "/table",
                                               "font size",
                                               "font size color",
                                               "font size color face",
                                               "font face size",
                                               "/font",
                                               "div id style",
                                               "/div",
                                               "img src align hspace",
                                               "img src alt align hspace",
                                               "a href",
                                               "a id href",
                                               "/a",
                                               "dotext",
                                               "undotext",
                                               "description",
                                               "description, left of :",
                                               "ul",
                                               "/ul",
                                               "li",
                                               "/li"};
  return shapes;
}

class HostileTextTest : public test::AlertFixture {
 protected:
  HostileTextTest() {
    for (const int number : {2, 5, 9, 10}) state_.Desc[number] = test::DescriptionLines(number);
  }

  static const std::vector<HostileText>& Corpus() {
    static const std::vector<HostileText> corpus =
        test::HostileCorpus(std::string(ZENDRIX_TEST_DATA) + "/hostile");
    return corpus;
  }

  // The alert of one event, with the text wherever a record has one.
  void HaveAlertOf(const std::string& monitor, const std::string& description, const std::string& text) {
    NotableRecord alert = AnAlert();
    alert.DateTime = text;
    alert.Description = text;
    alert.Reaction = text;
    Have(alert);
    HaveEvent(monitor, description, text + " success failed");
    alerts_.context().FirstEventDateTime = text;
  }

  // The renderings that reach a page, of the alert in the context.
  std::vector<std::string> Renderings() {
    std::vector<std::string> all = {Page(true, Purpose::kShown), Page(false, Purpose::kShown)};
    for (std::size_t i = 0; i < alerts_.context().NotableInfo.size(); ++i)
      all.push_back(MonitorText(i, Purpose::kShown));
    return all;
  }

  // The same alert with harmless texts in the place of those of events.
  std::vector<std::string> HarmlessRenderings() {
    test::Harmless harmless;
    const AlertContext hostile = alerts_.context();
    AlertContext& context = alerts_.context();
    context.FirstEventDateTime = harmless.Of(context.FirstEventDateTime);
    for (NotableRecord& record : context.NotableInfo) {
      record.DateTime = harmless.Of(record.DateTime);
      record.Description = harmless.Of(record.Description);
    }
    std::vector<std::string> all = Renderings();
    context = hostile;
    return all;
  }

  void ExpectLink(const PageTag& tag) {
    const std::string& target = *tag.Value("href");
    if (target.empty() || target == "do" || target == "undo" || target == "showhide") return;
    ASSERT_TRUE(target.starts_with(kPortal)) << target;
    const std::size_t value = target.find("&Desc=", kPortal.size());
    ASSERT_NE(value, std::string::npos) << target;
    EXPECT_EQ(target.find_first_not_of(
                  "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~:/%", value + 6),
              std::string::npos)
        << target;
  }

  // Everything but the links that were made of values: those differ in number with the words of a template.
  static std::vector<std::string> Tree(const PageElements& page) {
    std::vector<std::string> tree;
    for (const PageTag& tag : page.tags) {
      const std::string* target = tag.Value("href");
      if (tag.name == "/a" ||
          (tag.name == "a" && tag.Shape() == "a href" && (target->empty() || target->starts_with(kPortal))))
        continue;
      std::string line = tag.name;
      for (const auto& [name, value] : tag.attributes)
        line += " " + name + (name == "alt" ? "" : "=" + value);
      tree.push_back(line);
    }
    return tree;
  }

  // An empty amount leaves its template as it stands, and the marks of the optional clause are no tags. None
  // of this can be an event's: the "<" is bare.
  static std::string WithoutOpenClauses(std::string shown) {
    for (const char* clause : {"<: Largest users of memory: <%1><%2>:>", "<: Reported with it: <%1><%2>:>"})
      shown = core::Replace(shown, clause, "");
    return shown;
  }

  // Nothing of the shown page is an event's but text. Returns the page taken apart.
  PageElements ExpectOnlyText(const std::string& shown) {
    PageElements page = test::ReadPage(WithoutOpenClauses(shown));
    EXPECT_THAT(page.errors, ::testing::IsEmpty());
    for (const PageTag& tag : page.tags) {
      EXPECT_TRUE(KnownShapes().count(tag.Shape())) << tag.Shape();
      if (tag.name == "a") ExpectLink(tag);
    }
    return page;
  }

  void ExpectOnlyTexts() {
    const std::vector<std::string> shown = Renderings(), harmless = HarmlessRenderings();
    ASSERT_EQ(shown.size(), harmless.size());
    for (std::size_t i = 0; i < shown.size(); ++i) {
      EXPECT_EQ(Tree(ExpectOnlyText(shown[i])), Tree(test::ReadPage(WithoutOpenClauses(harmless[i]))));
      if (HasFailure()) FAIL() << shown[i] << "\n\nharmless:\n" << harmless[i];
    }
  }

  // A text as a page shows it.
  static std::string Readable(std::string text) {
    for (char& c : text)
      if (static_cast<unsigned char>(c) < 32 ||
          std::string_view("\x7f\x81\x8d\x8f\x90\x9d").find(c) != std::string_view::npos)
        c = ' ';
    return text;
  }
};

// The long ones among these tests, in shares of the corpus that are short enough for any machine.
constexpr std::size_t kShares = 12;
class HostileShareTest : public HostileTextTest, public ::testing::WithParamInterface<std::size_t> {
 protected:
  // A sixth of each share serves the sanitizers. Without them every text runs.
  static std::vector<HostileText> Share() {
    std::vector<HostileText> share = test::ShareOf(Corpus(), GetParam(), kShares);
    constexpr std::size_t kStep = test::kSanitized ? 6 : 1;
    std::vector<HostileText> taken;
    for (std::size_t i = GetParam() % kStep; i < share.size(); i += kStep) taken.push_back(share[i]);
    return taken;
  }
};
INSTANTIATE_TEST_SUITE_P(Corpus, HostileShareTest, ::testing::Range(std::size_t{0}, kShares));

TEST_F(HostileTextTest, CorpusIsLarge) {
  EXPECT_GE(Corpus().size(), 200U);
}

TEST_F(HostileTextTest, SharesTogetherAreTheCorpus) {
  std::multiset<std::string> dealt_out, all;
  for (const HostileText& text : Corpus()) all.insert(text.name);
  for (std::size_t share = 0; share < kShares; ++share)
    for (const HostileText& text : test::ShareOf(Corpus(), share, kShares)) dealt_out.insert(text.name);
  EXPECT_EQ(dealt_out, all);
}

TEST_P(HostileShareTest, NoTextAddsAnythingToAPageOfAnyMonitor) {
  for (const HostileText& text : Share()) {
    for (const std::string& monitor : PageMonitors()) {
      for (const std::string& description : DescriptionsWith(monitor, text.bytes)) {
        SCOPED_TRACE(text.name + " in " + monitor + ": " + description);
        HaveAlertOf(monitor, description, text.bytes);
        ExpectOnlyTexts();
        if (HasFailure()) return;
      }
    }
  }
}

TEST_F(HostileTextTest, NoTextAddsAnythingAsTheNameOfAMonitor) {
  for (const HostileText& text : Corpus()) {
    SCOPED_TRACE(text.name);
    HaveAlertOf(text.bytes, text.bytes, text.bytes);
    for (const std::string& shown : Renderings()) ExpectOnlyText(shown);
    alerts_.context().NotableInfo[0].Monitor = text.bytes;
    for (const std::string& shown : Renderings()) ExpectOnlyText(shown);
    if (HasFailure()) return;
  }
}

TEST_F(HostileTextTest, NoTextAddsAnythingAsTheChangeOfAnAlert) {
  for (const HostileText& text : Corpus()) {
    SCOPED_TRACE(text.name);
    HaveAlertOf("System", text.bytes, text.bytes);
    alerts_.context().NotableInfo[0].Change = text.bytes;
    alerts_.context().NotableInfo[1].Change = text.bytes;
    for (const std::string& shown : Renderings()) ExpectOnlyText(shown);
  }
}

TEST_F(HostileTextTest, NoTextAddsAnythingWithoutTheDescriptionFiles) {
  for (const int number : {2, 5, 9}) state_.Desc[number].clear();
  for (const HostileText& text : Corpus()) {
    SCOPED_TRACE(text.name);
    HaveAlertOf(text.bytes, text.bytes, text.bytes);
    for (const std::string& shown : Renderings()) {
      const PageElements page = test::ReadPage(shown);
      EXPECT_THAT(page.errors, ::testing::IsEmpty());
      EXPECT_THAT(page.tags, ::testing::IsEmpty());
    }
    EXPECT_NE(test::ReadPage(Page(true, Purpose::kShown)).text.find(Readable(text.bytes)), std::string::npos);
  }
}

// What was done about it is told in full: nothing of a description gets lost on its way to the eye.
TEST_F(HostileTextTest, EveryTextIsReadableInThePage) {
  for (const HostileText& text : Corpus()) {
    for (const char* monitor : {"System", "System Users", "Windows Folder", "Logged-On Users"}) {
      SCOPED_TRACE(text.name + " in " + monitor);
      HaveAlertOf(monitor, text.bytes, "x");
      EXPECT_NE(test::ReadPage(Page(true, Purpose::kShown)).text.find(": " + Readable(text.bytes)),
                std::string::npos);
    }
  }
}

TEST_F(HostileTextTest, EveryTextIsReadableInTheWizard) {
  for (const HostileText& text : Corpus()) {
    for (const char* monitor :
         {"Running Processes", "Listening Ports", "Autorun Registry", "Windows Folder"}) {
      SCOPED_TRACE(text.name + " in " + monitor);
      HaveAlertOf(monitor, text.bytes, text.bytes);
      EXPECT_NE(test::ReadPage(MonitorText(1, Purpose::kShown)).text.find(Readable(text.bytes)),
                std::string::npos);
    }
  }
}

// The portal gets the very bytes of the value.
TEST_F(HostileTextTest, EveryTextReachesItsLinkWhole) {
  const auto decoded = [](const std::string& target) {
    std::string bytes;
    for (std::size_t i = 0; i < target.size(); ++i) {
      if (target[i] != '%') {
        bytes += target[i];
      } else {
        bytes += static_cast<char>(std::stoi(target.substr(i + 1, 2), nullptr, 16));
        i += 2;
      }
    }
    return bytes;
  };
  for (const HostileText& text : Corpus()) {
    SCOPED_TRACE(text.name);
    HaveAlertOf("Windows Folder", text.bytes, "x");
    std::vector<std::string> values;
    for (const PageTag& tag : test::ReadPage(Page(true, Purpose::kShown)).tags) {
      const std::string* target = tag.Value("href");
      if (target && target->starts_with(kPortal)) values.push_back(decoded(target->substr(kPortal.size())));
    }
    // Once in the table of what was blocked, once in that of what was not.
    const std::string value = "WindowsFolder&Desc=" + text.bytes;
    EXPECT_THAT(values, ::testing::ElementsAre(value, value));
  }
}

TEST_P(HostileShareTest, NoTextAddsAnythingOnItsWayThroughTheFile) {
  for (const HostileText& text : Share()) {
    SCOPED_TRACE(text.name);
    lines_ = test::MonitoringFileWith(text.bytes);
    store::CMkvlf reader(state_, world_.log);
    world_.platform.files.Put(world_.InFolder("KorvessaMonitoring.kvl"), lines_);
    reader.InitClass(world_.InFolder("KorvessaMonitoring.kvl"));
    ASSERT_TRUE(reader.EventTable);
    ConsoleAlerts console(state_, world_.log, [&] { return reader.EventTable; });
    std::size_t events = 0;
    for (store::Bookmark row = 0; row < reader.EventTable->RowCount(); ++row) {
      if (reader.EventTable->Text(row, store::kMonitor) != "Aggregation") continue;
      console.GetNotableInfo(std::to_string(reader.EventTable->ID(row)));
      events += console.context().NotableInfo.size() - 1;
      alerts_.context() = console.context();
      ExpectOnlyTexts();
      if (HasFailure()) return;
    }
    EXPECT_GE(events, PageMonitors().size());
    for (const std::string& line : world_.quiet.Take())
      EXPECT_TRUE(line.find("Error in line: ") != std::string::npos ||
                  line.find("Error retrieving Alert details. ") != std::string::npos)
          << line;
  }
}

class PlainTextTest : public HostileTextTest, public ::testing::WithParamInterface<unsigned> {};
INSTANTIATE_TEST_SUITE_P(Seed, PlainTextTest, ::testing::Range(2026U, 2032U));

// A page of texts that need no care is the exact text of the rules, but for the percent signs of its links.
TEST_P(PlainTextTest, PlainTextsAreShownExactlyInEveryRendering) {
  std::mt19937 random(GetParam());
  const auto pick = [&](std::string_view from) { return from[random() % from.size()]; };
  const auto word = [&] {
    std::string text;
    for (auto left = 6 + random() % 8; left > 0; --left) text += pick("qwxzkjvQWXZKJV\xE4\xF6\xFC\xDF");
    return text;
  };
  const auto plain = [&] {
    std::string text = word();
    for (auto left = random() % 5; left > 0; --left) text += pick(":=\\.,;- /()") + word();
    return text;
  };
  const auto without_percents = [](const std::string& shown) {
    std::string text;
    for (std::size_t i = 0; i < shown.size(); ++i) {
      const bool encoded = shown[i] == '%' && i + 2 < shown.size() && std::isxdigit(shown[i + 1]) &&
                           std::isxdigit(shown[i + 2]);
      text += encoded ? static_cast<char>(std::stoi(shown.substr(i + 1, 2), nullptr, 16)) : shown[i];
      if (encoded) i += 2;
    }
    return text;
  };
  for (int round = 0; round < test::Rounds(50); ++round) {
    for (const std::string& monitor : PageMonitors()) {
      for (std::string description : DescriptionsWith(monitor, "?")) {
        // Equal values would also be found in one another's links.
        for (std::size_t at; (at = description.find('?')) != std::string::npos;)
          description.replace(at, 1, plain());
        SCOPED_TRACE(monitor + ": " + description);
        HaveAlertOf(monitor, description, plain());
        for (const bool short_form : {true, false}) {
          EXPECT_EQ(without_percents(Page(short_form, Purpose::kShown)), Page(short_form));
          for (const char* kind : {"success", "failed"})
            EXPECT_EQ(without_percents(Table(kind, short_form, Purpose::kShown)), Table(kind, short_form));
        }
        for (const std::size_t index : {0U, 1U})
          EXPECT_EQ(without_percents(MonitorText(index, Purpose::kShown)), MonitorText(index));
        if (HasFailure()) return;
      }
    }
  }
}

}  // namespace
}  // namespace zendrix::alerts
