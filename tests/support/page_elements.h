// A page taken apart into its tags and its text, by a reader that is stricter than any browser: what a
// browser would have to guess at is an error.
#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zendrix::test {

struct PageTag {
  std::string name;  // in small letters, "/" in front when it closes
  std::vector<std::pair<std::string, std::string>> attributes;  // names in small letters, values decoded

  // "img src align hspace"
  std::string Shape() const;
  const std::string* Value(std::string_view attribute) const;
};

struct PageElements {
  std::vector<PageTag> tags;
  std::string text;  // decoded
  std::vector<std::string> errors;
};

PageElements ReadPage(std::string_view html);

}  // namespace zendrix::test
