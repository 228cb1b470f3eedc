// The renderers with the shipped texts: what a user reads is complete, with no placeholder left over.
#include <algorithm>
#include <set>

#include "alerts/renderer.h"
#include "core/desc_lookup.h"
#include "core/error_log.h"
#include "core/text_rules.h"
#include "platform/memory/memory_platform.h"
#include "unit/data/data_files.h"

namespace zendrix {
namespace {

using alerts::Purpose;
using test::Contains;

constexpr char kDetailsOpening[] =
    "<A ID='H1' href='showhide'>[Show details]</A><br><div ID='H2' style='display:none'>";
constexpr char kNoDetails[] = "No more details about this alert are on record.";

alerts::NotableRecord Event(const std::string& monitor, const std::string& change,
                            const std::string& description, const std::string& reaction) {
  alerts::NotableRecord event;
  event.ID = 7;
  event.DateTime = "11/21/2026 09:05:00 AM";
  event.Monitor = monitor;
  event.Change = change;
  event.Description = description;
  event.Reaction = reaction;
  event.TimesObserved = 2;
  return event;
}

// A description in the form that the monitor writes.
std::string SampleOf(const std::string& monitor) {
  if (monitor == "TCP Connections") return "10.1.2.3:443:C:\\Tools\\client.exe";
  if (monitor == "Listening Ports") return "8080:C:\\Tools\\server.exe";
  if (monitor == "Running Processes") return "C:\\Tools\\server.exe:4711";
  if (monitor == "Autorun Registry") return "Run\\Updater=C:\\Tools\\update.exe";
  if (monitor == "Memory Utilization") return "93.456:browser:mail";
  if (monitor == "Network Transmission Rate") return "12.5";
  return "sample";
}

class Pages : public ::testing::Test {
 protected:
  Pages() {
    state_.ProgramFolder = "/app";
    for (const int number : {0, 1, 2, 4, 5, 6, 7, 9, 10}) {
      state_.Desc[static_cast<std::size_t>(number)] = test::DescriptionLines(number);
    }
    state_.settings.ShowDetailsOpen = false;
    log_.on_line = [](const std::string& line) { ADD_FAILURE() << "log: " << line; };
    context_.FirstEventDateTime = "11/01/2026 08:00:00 AM";
    context_.NotableInfo = {Event("Aggregation", "0.95", "sample", "")};
  }

  void Add(const std::string& monitor, const std::string& change, const std::string& description,
           const std::string& reaction) {
    context_.NotableInfo.push_back(Event(monitor, change, description, reaction));
  }
  std::string Alert(bool short_form) { return renderer_.GetCurrDesc(short_form, Purpose::kExact); }
  std::string Table(const std::string& kind) {
    return renderer_.GetSummaryTable(kind, true, Purpose::kExact);
  }

  platform::MemoryPlatform platform_;
  platform::Seams seams_ = platform_.seams();
  core::AppState state_{seams_};
  core::ErrorLog log_{state_};
  alerts::AlertContext context_;
  alerts::Renderer renderer_{state_, log_, context_};
};

// Tags in the text that no page knows, such as a placeholder that nobody filled.
std::vector<std::string> UnknownTags(const std::string& html) {
  static const std::set<std::string> known = {"a", "b",   "br",    "div", "font", "h3",
                                              "p", "img", "table", "td",  "th",   "tr"};
  std::vector<std::string> unknown;
  for (const std::string& tag : test::Between(html, "<", ">")) {
    std::string name;
    for (const char c : tag.substr(tag[1] == '/' ? 2 : 1)) {
      if (!std::isalnum(static_cast<unsigned char>(c))) break;
      name += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    }
    if (!known.contains(name)) unknown.push_back(tag);
  }
  return unknown;
}

TEST_F(Pages, TheAlertTemplateHoldsEachPlaceholderOnceAndTheExactBlock) {
  std::string text;
  ASSERT_TRUE(core::DescLookup(state_.Desc[2], "Aggregation,N,", text));
  for (const char* part :
       {"<date>", "<time>.<br>", "<Corrected>", "<NotCorrected>", "<risklevel>", "<undotext>", "<dotext>",
        kDetailsOpening, "<A HREF='undo'><undotext></A>", "<A HREF='do'><dotext></A>"}) {
    EXPECT_EQ(core::Split(text, part).size(), 2U) << part;
  }
}

TEST_F(Pages, AnAlertWithoutEventsSaysThatThereAreNoDetails) {
  const std::string page = Alert(true);
  EXPECT_TRUE(Contains(page, kNoDetails));
  EXPECT_FALSE(Contains(page, "ID='H2'"));
  EXPECT_FALSE(Contains(page, "[Allow]"));
  EXPECT_FALSE(Contains(page, "[Block]"));
  EXPECT_THAT(UnknownTags(page), testing::IsEmpty());
}

TEST_F(Pages, WhatWasBlockedCanBeAllowed) {
  Add("System Users", "1", "guest", "success");
  const std::string page = Alert(true);
  EXPECT_TRUE(Contains(page, "<A HREF='undo'><IMG SRC='"));
  EXPECT_TRUE(Contains(page, "[Allow]</A>"));
  EXPECT_TRUE(Contains(page, kDetailsOpening));
  EXPECT_TRUE(Contains(page, "was blocked:<br>"));
  EXPECT_FALSE(Contains(page, kNoDetails));
  EXPECT_THAT(UnknownTags(page), testing::ElementsAre("<dotext>"));
}

TEST_F(Pages, WhatCouldNotBeBlockedCanBeBlocked) {
  Add("System Users", "1", "guest", "failed");
  const std::string page = Alert(true);
  EXPECT_TRUE(Contains(page, "<A HREF='do'><IMG SRC='"));
  EXPECT_TRUE(Contains(page, "[Block]</A>"));
  EXPECT_TRUE(Contains(page, "could not be blocked:<br>"));
  EXPECT_THAT(UnknownTags(page), testing::ElementsAre("<undotext>"));
}

// Below the events it was out of sight in a window of the usual size.
TEST_F(Pages, TheDecisionStandsAboveTheEvents) {
  Add("System Users", "1", "guest", "failed");
  const std::string page = Alert(true);
  ASSERT_TRUE(Contains(page, "[Block]</A>"));
  EXPECT_LT(page.find("[Block]</A>"), page.find("ID='H1'"));
}

TEST_F(Pages, OpenDetailsStayOpen) {
  Add("System Users", "1", "guest", "failed");
  state_.settings.ShowDetailsOpen = true;
  const std::string page = Alert(true);
  EXPECT_TRUE(Contains(page, "[Hide details]</A><br><div ID='H2' style='display:'>"));
  EXPECT_FALSE(Contains(page, "[Show details]"));
}

TEST_F(Pages, TheLongFormHasTheHeadOfTheEventTable) {
  Add("System Users", "1", "guest", "failed");
  const std::string page = Alert(false);
  EXPECT_FALSE(Contains(page, "<time>"));
  EXPECT_TRUE(Contains(page, "on 11/21/2026 at 09:05:00 AM.<tr "));
  EXPECT_TRUE(Contains(page, "# times observed*"));
}

TEST_F(Pages, EveryKindOfEventHasARowWithNothingLeftOver) {
  for (const std::string& monitor : test::MonitorSpellings()) {
    for (const char* change : {"-1", "0", "1", "A", "R", "N", "B"}) {
      if (monitor == "Aggregation" && !std::isdigit(static_cast<unsigned char>(*change)) && *change != '-')
        continue;
      SCOPED_TRACE(monitor + " " + change);
      context_.NotableInfo.resize(1);
      Add(monitor, change, SampleOf(monitor), "success");
      const std::string table = Table("success");
      EXPECT_TRUE(Contains(table, "<tr ALIGN='left' VALIGN='top'><td width=18>"));
      EXPECT_TRUE(table.ends_with("</font></td></tr></table>"));
      EXPECT_THAT(UnknownTags(table), testing::IsEmpty()) << table;
      for (const char* left : {"<:", ":>", "<%", "%1", "%2"}) EXPECT_FALSE(Contains(table, left)) << left;
    }
  }
}

TEST_F(Pages, ARowReadsAsASentence) {
  Add("Memory Utilization", "1", "93.456:browser:mail", "success");
  Add("Memory Utilization", "1", "93.456:browser", "success");
  Add("Memory Utilization", "1", "93.456", "success");
  const std::string table = Table("success");
  EXPECT_TRUE(Contains(table, "rose to 93.46 percent. Largest users of memory: browser, mail.</font>"));
  EXPECT_TRUE(Contains(table, "rose to 93.46 percent. Largest users of memory: browser.</font>"));
  EXPECT_TRUE(Contains(table, "rose to 93.46 percent.</font>"));
}

// An unknown program opens the sentence, which its fixed words begin with a capital.
TEST_F(Pages, AnUnknownProgramBeginsItsSentence) {
  Add("TCP Connections", "1", "10.1.2.3:443", "failed");
  EXPECT_TRUE(Contains(Table("failed"), "face='Tahoma'>An unknown program connected to another computer."));
}

// A number that is linked is replaced wherever it stands in the row, so the texts hold none of their own.
TEST_F(Pages, NoRowTextHoldsADigit) {
  for (const std::string& line : test::WrittenLines(2)) {
    const std::size_t text = line.find(',', line.find(',') + 1) + 1;
    if (line.starts_with("Aggregation,") || Contains(line, "<td") || Contains(line, "<%1>")) continue;
    EXPECT_EQ(line.find_first_of("0123456789", text), std::string::npos) << line;
  }
}

// The port is linked at its last place in the row, which must be its own.
TEST_F(Pages, ThePortOfAConnectionIsWhatIsLinked) {
  Add("TCP Connections", "1", "10.1.2.44:44:C:\\Tools\\client.exe", "success");
  const std::string table = Table("success");
  EXPECT_TRUE(Contains(table, "Mon=ListeningPorts&Desc=44'>44</A></font>")) << table;
}

TEST_F(Pages, TheWizardExplainsEveryMonitorWithNothingLeftOver) {
  Alert(false);
  for (const std::string& monitor : test::MonitorSpellings()) {
    SCOPED_TRACE(monitor);
    context_.NotableInfo.resize(1);
    Add(monitor, "1", SampleOf(monitor), "success");
    const std::string page = renderer_.GetMonitorDesc(1, Purpose::kExact);
    EXPECT_FALSE(page.empty());
    EXPECT_FALSE(Contains(page, "&lt;")) << page;
    EXPECT_FALSE(Contains(page, "<b></b>")) << page;
  }
}

TEST_F(Pages, TheWizardOpensWithTheWholeAlert) {
  const std::string page = renderer_.GetMonitorDesc(0, Purpose::kExact);
  EXPECT_TRUE(Contains(page, "bug_red_48.png"));
  EXPECT_TRUE(Contains(page, "<table cellspacing=0 cellpadding=4 border=0 width='100%'><br><tr "));
  EXPECT_TRUE(Contains(page, "Risk level: "));
}

TEST_F(Pages, TheWizardsLastPagesAreCompleteAndKnownToABrowser) {
  for (const std::string& line : test::WrittenLines(6)) {
    EXPECT_TRUE(line.ends_with("</font>"));
    EXPECT_TRUE(Contains(line, "Exit Wizard"));
    EXPECT_THAT(UnknownTags(line), testing::IsEmpty());
  }
}

TEST_F(Pages, EveryPictureOfAPageIsStaged) {
  const auto check = [](const std::string& page) {
    for (const std::string& source : test::Between(page, "Images\\", "'")) {
      const std::string name = source.substr(7, source.size() - 8);
      EXPECT_TRUE(std::filesystem::exists(std::filesystem::path(ZENDRIX_STAGED) / "Images" / name)) << name;
    }
  };
  for (const char* reaction : {"success", "failed"}) {
    for (const std::string& monitor : test::MonitorSpellings()) {
      context_.NotableInfo.resize(1);
      Add(monitor, "1", SampleOf(monitor), reaction);
      const std::string page = Alert(true);
      EXPECT_TRUE(Contains(page, "\\Images\\bug_red.png'"));
      check(page);
      check(renderer_.GetMonitorDesc(1, Purpose::kExact));
    }
  }
}

}  // namespace
}  // namespace zendrix
