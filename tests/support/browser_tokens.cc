#include "support/browser_tokens.h"

#include <algorithm>
#include <set>

namespace zendrix::test {
namespace {

constexpr std::string_view kBlanks = " \t\n\f\r";
constexpr auto kNone = std::string_view::npos;

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

std::string Small(std::string_view text) {
  std::string small(text);
  for (char& c : small)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c + ('a' - 'A'));
  return small;
}

// "x&#49;&#50;y" as "x*y".
std::string WithoutReferences(std::string_view name) {
  std::string result;
  for (std::size_t at = 0; at < name.size();) {
    const std::size_t digits = std::min(name.find_first_not_of("0123456789", at + 2), name.size());
    const bool reference = name.substr(at, 2) == "&#" && digits > at + 2 && name.substr(digits, 1) == ";";
    if (!reference)
      result += name[at];
    else if (!result.ends_with('*'))
      result += '*';
    at = reference ? digits + 1 : at + 1;
  }
  return result;
}

class Browser {
 public:
  explicit Browser(std::string_view html) : html_(html) {}

  BrowserPage Run() {
    while (at_ < html_.size()) {
      const std::size_t open = std::min(html_.find('<', at_), html_.size());
      page_.text += html_.substr(at_, open - at_);
      at_ = open;
      if (at_ < html_.size()) Open();
    }
    return std::move(page_);
  }

 private:
  bool Has(std::string_view text, std::size_t at) const { return html_.substr(at, text.size()) == text; }
  bool LetterAt(std::size_t at) const { return at < html_.size() && IsLetter(html_[at]); }

  void Open() {
    if (LetterAt(at_ + 1)) return Tag(at_ + 1, false);
    if (Has("</", at_) && LetterAt(at_ + 2)) return Tag(at_ + 2, true);
    if (Has("<!--", at_)) return Comment();
    if (Has("</>", at_)) {
      at_ += 3;
    } else if (Has("</", at_) || Has("<!", at_) || Has("<?", at_)) {
      page_.tags.push_back({"!", {}});
      at_ = Behind(html_.find('>', at_ + 2));
    } else {
      page_.text += html_[at_++];
    }
  }

  std::size_t Behind(std::size_t at) const { return at == kNone ? html_.size() : at + 1; }

  void Comment() {
    page_.tags.push_back({"!", {}});
    at_ += 4;
    if (Has(">", at_)) return void(at_ += 1);
    if (Has("->", at_)) return void(at_ += 2);
    const std::size_t plain = html_.find("-->", at_), odd = html_.find("--!>", at_);
    if (plain == kNone && odd == kNone)
      at_ = html_.size();
    else
      at_ = plain < odd ? plain + 3 : odd + 4;
  }

  void Tag(std::size_t start, bool closing) {
    const std::size_t end = std::min(html_.find_first_of("/> \t\n\f\r", start), html_.size());
    BrowserTag tag{(closing ? "/" : "") + Small(html_.substr(start, end - start)), {}};
    at_ = end;
    while (Attribute(tag)) continue;
    if (at_ >= html_.size()) return;  // a tag that does not end is none
    ++at_;
    page_.tags.push_back(tag);
    if (!closing) Content(tag.name);
  }

  // False at the ">" or the end of the page.
  bool Attribute(BrowserTag& tag) {
    at_ = std::min(html_.find_first_not_of("/ \t\n\f\r", at_), html_.size());
    if (at_ >= html_.size() || html_[at_] == '>') return false;
    const std::size_t end = std::min(html_.find_first_of("=/> \t\n\f\r", at_ + 1), html_.size());
    const std::string name = Small(html_.substr(at_, end - at_));
    at_ = std::min(html_.find_first_not_of(kBlanks, end), html_.size());
    std::string value;
    if (at_ < html_.size() && html_[at_] == '=') value = Value();
    tag.attributes.emplace_back(name, value);
    return true;
  }

  std::string Value() {
    at_ = std::min(html_.find_first_not_of(kBlanks, at_ + 1), html_.size());
    if (at_ >= html_.size()) return "";
    const char quote = html_[at_];
    const bool quoted = quote == '"' || quote == '\'';
    const std::size_t start = quoted ? at_ + 1 : at_;
    const std::size_t end =
        std::min(quoted ? html_.find(quote, start) : html_.find_first_of("> \t\n\f\r", start), html_.size());
    at_ = std::min(quoted ? end + 1 : end, html_.size());
    return std::string(html_.substr(start, end - start));
  }

  // Elements whose content is no markup end at their own closing tag.
  void Content(const std::string& name) {
    static const std::set<std::string> kRaw = {"title",  "textarea", "style",    "xmp",
                                               "iframe", "noembed",  "noframes", "script"};
    if (name == "plaintext") {
      page_.text += html_.substr(at_);
      at_ = html_.size();
    } else if (kRaw.count(name)) {
      const std::size_t end = name == "script" ? EndOfScript() : EndOf(name, at_);
      page_.text += html_.substr(at_, end - at_);
      at_ = end;
    }
  }

  bool Closes(const std::string& name, std::size_t at) const {
    const std::size_t behind = at + 2 + name.size();
    return Has("</", at) && Small(html_.substr(at + 2, name.size())) == name && behind < html_.size() &&
           std::string_view("/> \t\n\f\r").find(html_[behind]) != kNone;
  }

  std::size_t EndOf(const std::string& name, std::size_t at) const {
    while (at < html_.size() && !Closes(name, at)) ++at;
    return at;
  }

  // Inside "<!--" a script may hold another one, whose closing tag does not end it.
  std::size_t EndOfScript() const {
    bool hidden = false, inner = false;
    std::size_t begun = 0;  // where the "<!--" was
    for (std::size_t at = at_; at < html_.size(); ++at) {
      if (!hidden && Has("<!--", at)) {
        hidden = true;
        begun = at;
        at += 1;
      } else if (hidden && Has("-->", at) && at >= begun + 2) {
        hidden = inner = false;
        at += 2;
      } else if (!inner && Closes("script", at)) {
        return at;
      } else if (hidden && inner && Closes("script", at)) {
        inner = false;
        at += 8;
      } else if (hidden && !inner && Opens(at)) {
        inner = true;
        at += 7;
      }
    }
    return html_.size();
  }

  bool Opens(std::size_t at) const {
    const std::size_t behind = at + 7;
    return Small(html_.substr(at, 7)) == "<script" && behind < html_.size() &&
           std::string_view("/> \t\n\f\r").find(html_[behind]) != kNone;
  }

  std::string_view html_;
  std::size_t at_ = 0;
  BrowserPage page_;
};

}  // namespace

BrowserPage ReadAsBrowser(std::string_view html) {
  return Browser(html).Run();
}

std::vector<std::string> ShapeOf(const BrowserPage& page, std::string_view portal) {
  std::vector<std::string> shape;
  for (const BrowserTag& tag : page.tags) {
    const bool link = tag.name == "a" && tag.attributes.size() == 1 && tag.attributes[0].first == "href" &&
                      (tag.attributes[0].second.empty() || tag.attributes[0].second.starts_with(portal));
    if (link || tag.name == "/a") continue;
    std::string line = WithoutReferences(tag.name);
    for (const auto& [name, value] : tag.attributes) line += " " + WithoutReferences(name);
    shape.push_back(line);
  }
  return shape;
}

}  // namespace zendrix::test
