// The shipped description files: form, keys, and the rules that a text must keep.
#include <algorithm>
#include <map>
#include <set>

#include "core/desc_lookup.h"
#include "core/text_rules.h"
#include "unit/data/data_files.h"

namespace zendrix {
namespace {

using test::Contains;
using test::DescriptionBytes;
using test::DescriptionLines;
using test::MonitorSpellings;
using test::WrittenLines;

using Keys = std::vector<std::string>;

Keys ChangeKeys(const std::string& monitor) {
  Keys keys;
  for (const char* change : {"-1", "0", "1", "A", "R", "N", "B"})
    keys.push_back(monitor + "," + change + ",");
  return keys;
}

// Every key by which a line of the file is looked up.
Keys KeysOf(int number) {
  Keys keys;
  switch (number) {
    case 1:
      for (const char* group : {"0", "2", "3", "6"}) {
        for (const char* status : {"1", "2", "3"}) keys.push_back(std::string(group) + "," + status + ",");
      }
      return keys;
    case 2:
      for (const std::string& monitor : MonitorSpellings()) {
        if (monitor == "Aggregation") {
          for (const char* change : {"N", "-1", "0", "1"}) keys.push_back(monitor + "," + change + ",");
        } else {
          for (std::string& key : ChangeKeys(monitor)) keys.push_back(std::move(key));
        }
      }
      return keys;
    case 4:
      return {"1,", "2,", "3,"};
    case 5:
      for (const std::string& monitor : MonitorSpellings()) keys.push_back(monitor + ",");
      return keys;
    case 6:
      return {"yesmsg,", "nomsg,", "dknowmsg,"};
    case 9:
      return {"002,", "003,", "010,", "011,", "020,", "021,", "022,", "030,"};
    default:
      return keys;
  }
}

const int kKeyedFiles[] = {1, 2, 4, 5, 6, 9};

// The key with which a line begins; the longest, since one may begin another.
std::string OwnKey(const std::string& line, const Keys& keys) {
  std::string own;
  for (const std::string& key : keys) {
    if (line.starts_with(key) && key.size() > own.size()) own = key;
  }
  return own;
}

TEST(DescriptionFiles, AreWindows1252WithCrLfLineEnds) {
  for (int number = 0; number <= 10; ++number) {
    SCOPED_TRACE(number);
    const std::string bytes = DescriptionBytes(number);
    ASSERT_TRUE(bytes.ends_with("\r\n"));
    EXPECT_FALSE(bytes.ends_with("\r\n\r\n"));
    for (std::size_t i = 0; i < bytes.size(); ++i) {
      const auto code = static_cast<unsigned char>(bytes[i]);
      EXPECT_TRUE(code != '\n' || (i > 0 && bytes[i - 1] == '\r')) << "bare LF at " << i;
      EXPECT_TRUE(code != '\r' || bytes[i + 1] == '\n') << "bare CR at " << i;
      EXPECT_TRUE(code >= 32 || code == '\r' || code == '\n') << "control character at " << i;
      EXPECT_FALSE(code == 0x81 || code == 0x8D || code == 0x8F || code == 0x90 || code == 0x9D)
          << "no Windows-1252 character at " << i;
    }
  }
}

TEST(DescriptionFiles, HoldNoEmptyLineButInTheScript) {
  for (int number = 0; number <= 10; ++number) {
    if (number == 8) continue;
    for (const std::string& line : WrittenLines(number)) EXPECT_FALSE(line.empty()) << number;
  }
}

TEST(DescriptionFiles, EveryKeyFindsTheLineThatBeginsWithIt) {
  for (const int number : kKeyedFiles) {
    const std::vector<std::string> lines = DescriptionLines(number);
    for (const std::string& key : KeysOf(number)) {
      SCOPED_TRACE(std::to_string(number) + " \"" + key + "\"");
      const auto first = std::find_if(lines.begin(), lines.end(),
                                      [&](const std::string& line) { return Contains(line, key); });
      ASSERT_NE(first, lines.end());
      EXPECT_TRUE(first->starts_with(key));
      std::string text;
      ASSERT_TRUE(core::DescLookup(lines, key, text));
      EXPECT_EQ(text, first->substr(key.size()));
      EXPECT_FALSE(text.empty());
    }
  }
}

TEST(DescriptionFiles, EveryLineHasAKeyAndNoKeyComesTwice) {
  for (const int number : kKeyedFiles) {
    const Keys keys = KeysOf(number);
    std::multiset<std::string> found;
    for (const std::string& line : WrittenLines(number)) found.insert(OwnKey(line, keys));
    EXPECT_EQ(found, std::multiset<std::string>(keys.begin(), keys.end())) << number;
  }
}

TEST(DescriptionFiles, NoTextHoldsAKeyOfItsFile) {
  for (const int number : kKeyedFiles) {
    const Keys keys = KeysOf(number);
    for (const std::string& line : WrittenLines(number)) {
      const std::string text = line.substr(OwnKey(line, keys).size());
      for (const std::string& key : keys)
        EXPECT_FALSE(Contains(text, key)) << number << " \"" << key << "\": " << line;
    }
  }
}

TEST(PaneTexts, StandAtTheirPositions) {
  const std::vector<std::string> lines = DescriptionLines(0);
  ASSERT_GE(lines.size(), 8u);
  for (std::size_t i = 0; i < 8; ++i) {
    const std::string key = std::to_string(static_cast<int>(i) - 1) + ",";
    EXPECT_TRUE(lines[i].starts_with(key)) << lines[i];
    EXPECT_EQ(core::DescAt(lines, i), lines[i].substr(key.size()));
    EXPECT_FALSE(core::DescAt(lines, i).empty());
  }
}

// It is handed to the browser as part of an address, where these characters end or change what follows.
TEST(PaneTexts, TheOpeningPageHoldsNothingThatAnAddressWouldTakeApart) {
  EXPECT_EQ(core::DescAt(DescriptionLines(0), 1).find_first_of("#%?&<>'\""), std::string::npos);
}

// The second line of the Summary pane has room for two lines of text.
TEST(StatusSentences, FitTwoLines) {
  for (const std::string& line : WrittenLines(1)) EXPECT_LE(line.size(), 110u) << line;
}

TEST(StatusSentences, OnlyTheAlertsHaveACount) {
  for (const std::string& line : WrittenLines(1)) {
    EXPECT_EQ(Contains(line, "<countofalerts>"), line.starts_with("0,")) << line;
    EXPECT_LE(std::count(line.begin(), line.end(), '<'), 1) << line;
  }
}

TEST(ShortMessages, HoldThePlaceholdersThatAreFilled) {
  const std::map<std::string, std::vector<std::string>> expected = {
      {"002,", {"<date>", "<time>", "<crlf>", "<OriRisk>", "<ResRisk>", "<crlf>"}},
      {"003,", {}},
      {"010,", {"<NumEvents>"}},
      {"011,", {"<NumAlerts>"}},
      {"020,", {"<date>"}},
      {"021,", {}},
      {"022,", {"<date>"}},
      {"030,", {}}};
  const std::vector<std::string> lines = DescriptionLines(9);
  for (const auto& [key, placeholders] : expected) {
    std::string text;
    ASSERT_TRUE(core::DescLookup(lines, key, text)) << key;
    EXPECT_EQ(test::Between(text, "<", ">"), placeholders) << key;
  }
}

TEST(Portal, KeepsTheConfiguredAddress) {
  std::string base;
  EXPECT_FALSE(core::DescLookup(DescriptionLines(10), "Central,", base));
}

// It stands inside a script element, and a page may reach nothing outside itself.
TEST(PageScript, ReachesNothingOutsideThePage) {
  const std::string script = DescriptionBytes(8);
  EXPECT_FALSE(script.empty());
  for (const char* word : {"</",
                           "<!--",
                           "http",
                           "//www",
                           "fetch",
                           "XMLHttpRequest",
                           "WebSocket",
                           "EventSource",
                           "sendBeacon",
                           "import",
                           "require",
                           "Worker",
                           "eval",
                           "Function(",
                           "setTimeout",
                           "setInterval",
                           "innerHTML",
                           "outerHTML",
                           "insertAdjacentHTML",
                           "document.write",
                           "createElement",
                           "localStorage",
                           "sessionStorage",
                           "indexedDB",
                           "cookie",
                           "location",
                           "window.open",
                           ".click(",
                           ".submit(",
                           ".href",
                           ".src",
                           "postMessage"}) {
    EXPECT_FALSE(Contains(script, word)) << word;
  }
}

TEST(PageScript, IsOneClosedFunction) {
  const std::string script = DescriptionBytes(8);
  EXPECT_TRUE(Contains(script, "(function () {\r\n  'use strict';\r\n"));
  EXPECT_TRUE(script.ends_with("}());\r\n"));
  for (const auto& [open, close] : {std::pair('(', ')'), std::pair('{', '}'), std::pair('[', ']')}) {
    EXPECT_EQ(std::count(script.begin(), script.end(), open),
              std::count(script.begin(), script.end(), close));
  }
}

}  // namespace
}  // namespace zendrix
