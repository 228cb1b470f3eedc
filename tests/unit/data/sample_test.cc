// The sample history: shipped as made, readable by the consoles, and about nobody.
#include <array>
#include <map>
#include <set>

#include "agent/host/text.h"
#include "data/sample/household.h"
#include "data_files.h"

namespace zendrix::sample {
namespace {

using agent::Form;
using agent::SplitFields;
using test::Contains;

std::string Shipped(const std::string& name) {
  return test::ReadBytes(std::filesystem::path(ZENDRIX_DATA) / "sample" / name);
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::size_t start = 0;
  for (std::size_t end; (end = text.find("\r\n", start)) != std::string::npos; start = end + 2) {
    lines.push_back(text.substr(start, end - start));
  }
  EXPECT_EQ(start, text.size());
  return lines;
}

std::vector<std::string> Pieces(std::string_view text, const std::string& separator) {
  std::vector<std::string> pieces;
  for (;;) {
    const std::size_t at = text.find(separator);
    pieces.emplace_back(text.substr(0, at));
    if (at == std::string_view::npos) return pieces;
    text.remove_prefix(at + separator.size());
  }
}

TEST(SampleTest, ShippedFilesAreThoseOfTheProgram) {
  const History home = MakeHistory(Form::kHome, kSeed, kEnd);
  EXPECT_TRUE(Shipped("home/KorvessaMonitoring.kvl") == home.monitoring) << "run zendrix-sample data/sample";
  EXPECT_TRUE(Shipped("home/KorvessaEventLog.kvl") == home.agent_log);
  EXPECT_EQ(Shipped("home/KorvessaAlr.kvl"), home.decided);
  const History admin = MakeHistory(Form::kAdmin, kSeed, kEnd);
  EXPECT_TRUE(Shipped("admin/KorvessaMonitoring.kvl") == admin.monitoring);
  EXPECT_TRUE(Shipped("admin/KorvessaEventLog.kvl") == admin.agent_log);
  EXPECT_EQ(admin.decided, "");
}

TEST(SampleTest, AnotherSeedIsAnotherMonthWithTheSameIncidents) {
  const History one = MakeHistory(Form::kHome, 1, kEnd);
  const History two = MakeHistory(Form::kHome, 2, kEnd);
  EXPECT_NE(one.monitoring, two.monitoring);
  for (const History* history : {&one, &two}) {
    EXPECT_TRUE(Contains(history->monitoring, "office_update.exe"));
    EXPECT_TRUE(Contains(history->monitoring, "failed logins for Administrator"));
    EXPECT_TRUE(Contains(history->monitoring, "Invoice_2291.pdf.exe"));
  }
}

TEST(SampleTest, TimesRiseThroughAMonthAndEndAtTheEnd) {
  for (const std::uint64_t seed : {kSeed, std::uint64_t{1}, std::uint64_t{2}, std::uint64_t{3}}) {
    const auto lines = LinesOf(MakeHistory(Form::kHome, seed, kEnd).monitoring);
    std::int64_t last = 0;
    for (const std::string& line : lines) {
      const std::int64_t second = std::stoll(line);
      EXPECT_GE(second, last) << line;
      last = second;
    }
    EXPECT_EQ(last, kEnd);
    EXPECT_GT(std::stoll(lines.front()), kEnd - 30 * 24 * 3600);
    EXPECT_LT(std::stoll(lines.front()), kEnd - 29 * 24 * 3600);
  }
}

TEST(SampleTest, HomeLinesAreFullAndAdministratorLinesHaveFiveFields) {
  for (const std::string& line : LinesOf(Shipped("home/KorvessaMonitoring.kvl"))) {
    const auto fields = SplitFields(line, '|');
    ASSERT_EQ(fields.size(), 7u) << line;
    EXPECT_EQ(SplitFields(fields[0], ',').size(), 4u) << line;
    EXPECT_LE(fields[3].size(), 1536u) << line;
    EXPECT_FALSE(Contains(line, "'")) << line;  // the search for an alert's events could not bear it
  }
  for (const std::string& line : LinesOf(Shipped("admin/KorvessaMonitoring.kvl"))) {
    EXPECT_EQ(SplitFields(line, ',').size(), 5u) << line;
  }
}

// Each pair of an alert was an event before, each alert has a second of its own, and the reaction stands
// right behind it: otherwise its page would leave things out.
TEST(SampleTest, EveryAlertFindsItsEventsAndItsReaction) {
  std::set<std::pair<std::string, std::string>> seen;  // monitor and description
  std::set<std::string> seconds;
  const auto lines = LinesOf(Shipped("home/KorvessaMonitoring.kvl"));
  std::size_t alerts = 0;
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const auto fields = Pieces(lines[i], "|");
    const auto stamp = Pieces(fields[0], ",");
    if (stamp[3] != "Aggregation") {
      for (const std::string& part : Pieces(fields[3], " * ")) seen.insert({stamp[3], part});
      continue;
    }
    ++alerts;
    EXPECT_TRUE(seconds.insert(stamp[0]).second) << lines[i];
    ASSERT_TRUE(Contains(fields[3], ";")) << lines[i];
    std::set<std::string> monitors;
    for (const std::string& pair : Pieces(fields[3], ";")) {
      if (pair.empty()) continue;
      const std::size_t sign = pair.find('=');
      monitors.insert(pair.substr(0, sign));
      EXPECT_TRUE(seen.contains({pair.substr(0, sign), pair.substr(sign + 1)})) << pair;
    }
    ASSERT_LT(i + 1, lines.size());
    const auto reaction = Pieces(lines[i + 1], "|");
    EXPECT_EQ(reaction[0], stamp[0] + "," + stamp[1] + "," + stamp[2] + ",Community");
    for (const std::string& name : monitors) {
      EXPECT_TRUE(Contains(reaction[4], name + "=failed") || Contains(reaction[4], name + "=success"))
          << reaction[4];
    }
  }
  EXPECT_EQ(alerts, 11u);
  for (const std::string& line : LinesOf(Shipped("home/KorvessaAlr.kvl"))) {
    EXPECT_TRUE(seconds.contains(line.substr(0, line.find('A')))) << line;
  }
}

// Nobody's computer: what is meant for documents, by the standards that set it aside.
TEST(SampleTest, AddressesAreThoseForDocumentation) {
  std::size_t found = 0;
  for (const std::string& line : LinesOf(Shipped("home/KorvessaMonitoring.kvl"))) {
    const auto fields = Pieces(line, "|");
    if (!fields[0].ends_with(",TCP Connections")) continue;
    ++found;
    EXPECT_TRUE(fields[3].starts_with("192.0.2.") || fields[3].starts_with("198.51.100.") ||
                fields[3].starts_with("203.0.113."))
        << line;
  }
  EXPECT_GT(found, 100u);
}

}  // namespace
}  // namespace zendrix::sample
