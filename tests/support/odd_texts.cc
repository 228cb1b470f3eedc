#include "support/odd_texts.h"

#include "support/hostile_corpus.h"

namespace zendrix::test {

const std::vector<std::string>& OddTexts() {
  static const std::vector<std::string> texts = [] {
    std::vector<std::string> all = {"script",
                                    "img",
                                    "a b",
                                    "onclick=x",
                                    "x onclick=x",
                                    "' onclick='x",
                                    "\" onclick=\"x",
                                    ">",
                                    "->",
                                    "--",
                                    "--!",
                                    "-",
                                    "!",
                                    "/",
                                    "=",
                                    "am",
                                    "amp",
                                    "lt",
                                    "lt;",
                                    "#60;",
                                    "#x3c;",
                                    ";",
                                    "p",
                                    "do",
                                    "undo",
                                    "showhide",
                                    "dotext",
                                    "undotext",
                                    "description",
                                    "Corrected",
                                    "risklevel",
                                    "td",
                                    "tr",
                                    "/td",
                                    "80",
                                    "0",
                                    "]]>",
                                    "]]",
                                    "--><b>",
                                    "'><b>",
                                    "\"><b>",
                                    "</script><b>",
                                    "</style><b>",
                                    "</textarea><b>",
                                    "</title>",
                                    "/script",
                                    "?",
                                    "<!--",
                                    "<script>",
                                    "<svg>",
                                    "javascript:alert(1)",
                                    "http://evil.example/",
                                    "//evil.example",
                                    "\t",
                                    "a\tb",
                                    "`",
                                    "\\",
                                    "{}",
                                    ":expression(1)",
                                    "&",
                                    "&lt",
                                    "\x01",
                                    "\x81",
                                    "%3C"};
    for (const auto& hostile : HostileCorpus(std::string(ZENDRIX_TEST_DATA) + "/hostile"))
      all.push_back(hostile.bytes);
    return all;
  }();
  return texts;
}

}  // namespace zendrix::test
