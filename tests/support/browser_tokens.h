// A page as a browser takes it apart: the tags it sees, by the tokenizer of the HTML standard. Written apart
// from the product's own reader of pages, as one pass over the whole text, so that the two can be held
// against one another.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zendrix::test {

struct BrowserTag {
  std::string name;  // small letters, "/" in front when it closes, "!" for a comment
  std::vector<std::pair<std::string, std::string>> attributes;  // name in small letters, value as written
};

struct BrowserPage {
  std::vector<BrowserTag> tags;
  // The text outside tags; references are left as written.
  std::string text;
};

BrowserPage ReadAsBrowser(std::string_view html);

// What a page is made of, a line a tag: names of elements and attributes. Two pages with equal lines differ
// in texts and values only. Left out are the links to the portal that values have, since what has one depends
// on where a value can be read; `portal` is what their targets begin with. A name that holds references,
// which only the text of an event can bring, has "*" in their place.
std::vector<std::string> ShapeOf(const BrowserPage& page, std::string_view portal);

}  // namespace zendrix::test
