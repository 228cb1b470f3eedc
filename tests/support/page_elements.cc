#include "support/page_elements.h"

#include <algorithm>
#include <cctype>
#include <map>

namespace zendrix::test {
namespace {

bool IsBlank(char c) {
  return c == ' ';
}

bool IsNameLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// Neither text nor a value ends or needs care at such a character.
bool IsPlain(char c) {
  return static_cast<unsigned char>(c) >= 32 && c != '<' && c != '>' && c != '&' && c != '\'' && c != '"';
}

bool IsNameCharacter(char c) {
  static constexpr std::string_view kOthers = "-_:.,\\%";
  return IsNameLetter(c) || (c >= '0' && c <= '9') || kOthers.find(c) != std::string_view::npos;
}

std::string SmallLetters(std::string_view text) {
  std::string small(text);
  std::transform(small.begin(), small.end(), small.begin(),
                 [](unsigned char c) { return static_cast<char>(std::tolower(c)); });
  return small;
}

class Reader {
 public:
  explicit Reader(std::string_view html) : html_(html) {}

  PageElements Run() {
    while (!AtEnd()) {
      ReadPlain(page_.text);
      if (AtEnd()) break;
      if (Now() == '<') {
        ReadTag();
      } else {
        ReadCharacter(page_.text, "text");
      }
    }
    return std::move(page_);
  }

 private:
  bool AtEnd() const { return at_ >= html_.size(); }
  char Now() const { return html_[at_]; }

  void Error(const std::string& what) {
    page_.errors.push_back(what + " at " + std::to_string(at_) + ": " +
                           std::string(html_.substr(at_ < 40 ? 0 : at_ - 40, 80)));
  }

  // The characters up to the next that needs a closer look.
  void ReadPlain(std::string& out) {
    const std::size_t start = at_;
    at_ = static_cast<std::size_t>(std::find_if_not(html_.begin() + start, html_.end(), IsPlain) -
                                   html_.begin());
    out.append(html_, start, at_ - start);
  }

  // One character, decoded. A "&" begins one of the references that the console writes, or is a template's
  // parameter in a link.
  void ReadCharacter(std::string& out, const char* where) {
    static const std::map<std::string_view, char> kReferences = {
        {"&lt;", '<'}, {"&gt;", '>'}, {"&amp;", '&'}, {"&quot;", '"'}, {"&#39;", '\''}, {"&#96;", '`'}};
    const char c = Now();
    if (c == '&') {
      for (const auto& [reference, character] : kReferences) {
        if (html_.substr(at_, reference.size()) != reference) continue;
        out += character;
        at_ += reference.size();
        return;
      }
      const std::size_t end = html_.find(';', at_);
      if (html_.substr(at_, 2) == "&#" && end != std::string_view::npos && end - at_ <= 5) {
        const std::string digits(html_.substr(at_ + 2, end - at_ - 2));
        if (digits.empty() || digits.find_first_not_of("0123456789") != std::string::npos)
          Error(std::string("odd reference in ") + where);
        else
          out += static_cast<char>(std::stoi(digits));
        at_ = end + 1;
        return;
      }
      const bool parameter = html_.substr(at_, 5) == "&Mon=" || html_.substr(at_, 6) == "&Desc=";
      if (!parameter) Error(std::string("bare & in ") + where);
    } else if (static_cast<unsigned char>(c) < 32 && c != '\r' && c != '\n') {
      Error(std::string("control character in ") + where);
    }
    out += c;
    ++at_;
  }

  void ReadTag() {
    const std::size_t start = at_++;
    PageTag tag;
    if (!AtEnd() && Now() == '/') tag.name = html_[at_++];
    if (AtEnd() || !(IsNameLetter(Now()) || Now() == '%' || Now() == ':')) {
      at_ = start;
      Error("< that opens no tag");
      ++at_;
      return;
    }
    while (!AtEnd() && !IsBlank(Now()) && Now() != '>') {
      if (!IsNameCharacter(Now())) Error("character in the name of a tag");
      tag.name += html_[at_++];
    }
    tag.name = SmallLetters(tag.name);
    while (true) {
      while (!AtEnd() && IsBlank(Now())) ++at_;
      if (AtEnd()) return Error("tag without an end");
      if (Now() == '>') break;
      ReadAttribute(tag);
    }
    ++at_;
    page_.tags.push_back(std::move(tag));
  }

  void ReadAttribute(PageTag& tag) {
    std::string name, value;
    const std::size_t start = at_;
    while (!AtEnd() && !IsBlank(Now()) && Now() != '>' && (Now() != '=' || at_ == start)) {
      if (!IsNameCharacter(Now()) && Now() != '=') Error("character in the name of an attribute");
      name += html_[at_++];
    }
    if (!AtEnd() && Now() == '=') {
      ++at_;
      ReadValue(value);
    }
    if (tag.Value(SmallLetters(name))) Error("attribute twice");
    tag.attributes.emplace_back(SmallLetters(name), value);
  }

  void ReadValue(std::string& value) {
    if (AtEnd()) return Error("attribute without its value");
    if (Now() != '\'' && Now() != '"') {
      while (!AtEnd() && !IsBlank(Now()) && Now() != '>') {
        if (std::string_view("'\"`<=&").find(Now()) != std::string_view::npos)
          Error("character in a bare value");
        value += html_[at_++];
      }
      return;
    }
    const char quote = html_[at_++];
    while (ReadPlain(value), !AtEnd() && Now() != quote) {
      if (Now() == '<' || Now() == '>') Error("markup in a value");
      ReadCharacter(value, "a value");
    }
    if (AtEnd()) return Error("value without an end");
    ++at_;
    if (!AtEnd() && !IsBlank(Now()) && Now() != '>') Error("no blank behind a value");
  }

  std::string_view html_;
  std::size_t at_ = 0;
  PageElements page_;
};

}  // namespace

std::string PageTag::Shape() const {
  std::string shape = name;
  for (const auto& attribute : attributes) shape += " " + attribute.first;
  return shape;
}

const std::string* PageTag::Value(std::string_view attribute) const {
  for (const auto& [name_of, value] : attributes)
    if (name_of == attribute) return &value;
  return nullptr;
}

PageElements ReadPage(std::string_view html) {
  return Reader(html).Run();
}

}  // namespace zendrix::test
