// What is left of a page when a piece of it cannot be built. The failure is real: memory that runs out at one
// allocation of the rendering, each in its turn.
#include <cstdlib>
#include <new>
#include <set>

#include "support/alert_fixture.h"

namespace {

thread_local long allocations_until_failure = 0;  // 0: memory does not run out

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
  if (allocations_until_failure > 0 && --allocations_until_failure == 0) throw std::bad_alloc();
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace zendrix::test {
namespace {

using alerts::Purpose;
using ::testing::ElementsAre;
using ::testing::Not;

constexpr char kLinkFailed[] = "'EventUtils:GetLink': 7: Out of memory";
constexpr char kPageFailed[] = "'EventUtils:GetCurrDesc': 7: Out of memory";

// A rendering and the log lines that it left.
using Outcome = std::pair<std::string, std::vector<std::string>>;

class RenderingFailureTest : public AlertFixture {
 protected:
  RenderingFailureTest() {
    Have(AnAlert());
    alerts_.context().FirstEventDateTime = "01/02/2026 03:04:05 AM";
  }

  // Every outcome there is when one allocation of the rendering fails.
  template <class Render>
  std::set<Outcome> Outcomes(Render&& render) {
    std::set<Outcome> outcomes;
    render();  // tables that live as long as the program come into being here
    world_.quiet.Take();
    for (long nth = 1;; ++nth) {
      allocations_until_failure = nth;
      std::string text = render();
      const bool all_came = allocations_until_failure > 0;
      allocations_until_failure = 0;
      outcomes.emplace(std::move(text), world_.quiet.Take());
      if (all_came) return outcomes;
    }
  }
  static std::string Link(const std::string& word, const std::string& value) {
    return "<A HREF='http://portal.example.com/redir.asp?PostType=UserGetDescription&Mon=" + word +
           "&Desc=" + value + "'>";
  }
  // The table of one row with this text in it.
  std::string TableWith(std::string row) const {
    const std::size_t at = whole_.find('[');
    return whole_.substr(0, at) + row.insert(0, "[") + whole_.substr(whole_.rfind(']'));
  }
  // One blocked event whose row stands between brackets.
  void HaveRow(const std::string& monitor, const std::string& row, const std::string& description) {
    state_.Desc[2] = {monitor + ",1,[" + row + "]"};
    HaveEvent(monitor, description, "success");
    whole_ = Table("success");
  }

  std::string whole_;
};

// Half an addition left a text whose characters and origins did not match.
TEST_F(RenderingFailureTest, AdditionThatFailsLeavesTheTextAsItWas) {
  const std::string more = "a text that is longer than what fits in place";
  for (const Purpose purpose : {Purpose::kExact, Purpose::kShown}) {
    const alerts::MarkedText other(purpose, more, alerts::Origin::kEvent);
    for (const bool whole : {false, true})
      for (long nth = 1;; ++nth) {
        alerts::MarkedText text(purpose, "<b>");
        allocations_until_failure = nth;
        bool failed = false;
        try {
          if (whole)
            text.Append(other);
          else
            text.Append(more, alerts::Origin::kEvent);
        } catch (const std::bad_alloc&) {
          failed = true;
        }
        allocations_until_failure = 0;
        EXPECT_EQ(text.Finish(), failed ? "<b>" : "<b>" + more);
        text.Append("</b>");
        EXPECT_EQ(text.Finish(), failed ? "<b></b>" : "<b>" + more + "</b>") << "and takes what comes next";
        if (!failed) {
          EXPECT_GT(nth, 1) << "the addition asked for memory";
          break;
        }
      }
  }
}

TEST_F(RenderingFailureTest, LinkThatFailsIsLoggedAndItsPlaceholderStaysInTheWizard) {
  state_.Desc[5] = {"Windows Folder,[&lt;Click here&gt;]"};
  HaveEvent("Windows Folder", "new.dll", "");
  for (const Purpose purpose : {Purpose::kExact, Purpose::kShown})
    EXPECT_EQ(Outcomes([&] { return MonitorText(1, purpose); }),
              (std::set<Outcome>{{"", {}},
                                 {"[&lt;Click here&gt;]", {kLinkFailed}},
                                 {"[" + Link("WindowsFolder", "new.dll") + "Click here</A>]", {}}}));
}

TEST_F(RenderingFailureTest, ValueIsShownWithoutTheLinkThatFails) {
  HaveRow("Autorun Registry", "<description right of =>", "Run\\Some entry=update.exe");
  for (const Purpose purpose : {Purpose::kExact, Purpose::kShown}) {
    whole_ = Table("success", true, purpose);
    EXPECT_EQ(Outcomes([&] { return Table("success", true, purpose); }),
              (std::set<Outcome>{{"", {}}, {TableWith("update.exe"), {kLinkFailed}}, {whole_, {}}}));
  }
}

// The end of the link stands there all the same in the exact text; a page has no use for it.
TEST_F(RenderingFailureTest, DescriptionIsShownWithoutTheLinkThatFails) {
  HaveRow("System Users", "<description>", "a user whose name is longer");
  EXPECT_EQ(Outcomes([&] { return Table("success"); }),
            (std::set<Outcome>{
                {"", {}}, {TableWith("a user whose name is longer</A>"), {kLinkFailed}}, {whole_, {}}}));
  whole_ = Table("success", true, Purpose::kShown);
  EXPECT_EQ(
      Outcomes([&] { return Table("success", true, Purpose::kShown); }),
      (std::set<Outcome>{{"", {}}, {TableWith("a user whose name is longer"), {kLinkFailed}}, {whole_, {}}}));
}

TEST_F(RenderingFailureTest, EachLinkOfARowFailsByItself) {
  HaveRow("TCP Connections",
          "<description, left of :>|<description, right of :>|<description, right of last :>",
          "10.20.30.40:44300:C:\\T\\client.exe");
  const std::string address = Link("TCPConnections", "10.20.30.40") + "10.20.30.40</A>";
  const std::string port = Link("ListeningPorts", "44300") + "44300</A>";
  const std::string program = Link("RunningProcesses", "client.exe") + "client.exe</A>";
  EXPECT_EQ(Outcomes([&] { return Table("success"); }),
            (std::set<Outcome>{{"", {}},
                               {TableWith("10.20.30.40|" + port + "|" + program), {kLinkFailed}},
                               {TableWith(address + "|44300|" + program), {kLinkFailed}},
                               {TableWith(address + "|" + port + "|client.exe"), {kLinkFailed}},
                               {whole_, {}}}));
}

TEST_F(RenderingFailureTest, TableThatFailsIsLeftOutOfThePageWithoutAWord) {
  const std::string head = "Aggregation,N,[<Corrected>|<NotCorrected>]<undotext><dotext>";
  for (const char* reaction : {"success", "failed"}) {
    state_.Desc[2] = {head};
    Have(AnAlert());
    const std::string without = Page();
    state_.Desc[2] = {head, "System,1,row <description>"};
    HaveEvent("System", "an event with a longer text", reaction);
    const std::string whole = Page();
    ASSERT_NE(whole, without);
    EXPECT_EQ(Outcomes([&] { return Page(); }),
              (std::set<Outcome>{{"", {kPageFailed}}, {without, {}}, {whole, {}}}));
  }
}

TEST_F(RenderingFailureTest, LinkThatFailsInATableLeavesTheRestOfThePage) {
  state_.Desc[2] = {"Aggregation,N,[<Corrected>]", "Windows Folder,1,(<description>)"};
  HaveEvent("Windows Folder", "a new library.dll", "success");
  const auto outcomes = Outcomes([&] { return Page(true, Purpose::kShown); });
  std::vector<std::string> with_line;
  for (const auto& [text, lines] : outcomes)
    if (lines == std::vector<std::string>{kLinkFailed}) with_line.push_back(text);
  ASSERT_EQ(with_line.size(), 1U);
  EXPECT_THAT(with_line[0], ::testing::HasSubstr("(a new library.dll)"));
  EXPECT_THAT(with_line[0], Not(::testing::HasSubstr("<A HREF")));
}

TEST_F(RenderingFailureTest, FootnoteThatFailsIsLoggedAndThePageStands) {
  state_.Desc[2] = {"Aggregation,N,a text that is long enough"};
  const std::string whole = Page(false);
  const std::string without = whole.substr(0, whole.find("<font size=1>* Since"));
  ASSERT_NE(without, whole);
  EXPECT_EQ(Outcomes([&] { return Page(false); }),
            (std::set<Outcome>{{"", {kPageFailed}}, {without, {kPageFailed}}, {whole, {}}}));
}

TEST_F(RenderingFailureTest, WholeAlertThatFailsIsNotAvailableInTheWizard) {
  state_.Desc[2] = {"Aggregation,N,a text that is long enough"};
  state_.Desc[5] = {"Aggregation,(&lt;full description from right pane&gt;)"};
  const std::string whole = MonitorText(0);
  const std::string without = whole.substr(0, whole.find("<font size=1>* Since")) + ")";
  EXPECT_EQ(Outcomes([&] { return MonitorText(0); }),
            (std::set<Outcome>{{"", {}},
                               {"(<br>Description Not Available)", {kPageFailed}},
                               {without, {kPageFailed}},
                               {whole, {}}}));
}

}  // namespace
}  // namespace zendrix::test
