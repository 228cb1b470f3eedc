#include "alerts/page_reader.h"

#include <algorithm>
#include <array>

namespace zendrix::alerts {
namespace {

bool IsBlank(char c) {
  return c == ' ' || c == '\t' || c == '\n' || c == '\f' || c == '\r';
}

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

char Small(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

template <std::size_t N>
bool IsOneOf(std::string_view word, const std::array<std::string_view, N>& words) {
  return std::find(words.begin(), words.end(), word) != words.end();
}

bool IsTarget(std::string_view attribute) {
  static constexpr std::array<std::string_view, 21> kTargets = {
      "href",    "src",      "action", "formaction", "background", "cite",       "data",
      "poster",  "longdesc", "usemap", "manifest",   "ping",       "srcset",     "imagesrcset",
      "archive", "codebase", "lowsrc", "dynsrc",     "profile",    "xlink:href", "xml:base"};
  return IsOneOf(attribute, kTargets);
}

bool IsCode(std::string_view attribute) {
  static constexpr std::array<std::string_view, 3> kCode = {"style", "srcdoc", "content"};
  return attribute.starts_with("on") || IsOneOf(attribute, kCode);
}

}  // namespace

void PageReader::Read(char character) {
  while (!Step(character)) continue;
  FollowReference(character);
}

Place PageReader::place() const {
  if (unknown_) return Place::kUnsure;
  switch (state_) {
    case State::kData:
      return Place::kText;
    case State::kRaw:
      if (content_ == Content::kField) return Place::kFieldText;
      return content_ == Content::kScript || content_ == Content::kStyle ? Place::kCode : Place::kRawText;
    case State::kQuoted:
      return Place::kValue;
    case State::kBare:
    case State::kBeforeValue:
      return Place::kBareValue;
    case State::kBogusComment:
    case State::kCommentStart:
    case State::kCommentStartDash:
    case State::kComment:
    case State::kCommentDash:
    case State::kCommentEnd:
    case State::kCommentEndBang:
      return Place::kComment;
    default:
      return Place::kMarkup;
  }
}

bool PageReader::To(State state, bool done) {
  state_ = state;
  return done;
}

bool PageReader::Step(char c) {
  if (state_ <= State::kTagName) return StepTag(c);
  if (state_ <= State::kAfterName) return StepAttribute(c);
  if (state_ <= State::kSlash) return StepValue(c);
  if (state_ <= State::kCommentEndBang) return StepComment(c);
  if (state_ <= State::kRawEndName) return StepRaw(c);
  return StepEscape(c);
}

bool PageReader::StepTag(char c) {
  switch (state_) {
    case State::kData:
      return c == '<' ? To(State::kTagOpen) : true;
    case State::kTagOpen:
      if (c == '!') return To(State::kBang);
      if (c == '/') return To(State::kEndTagOpen);
      if (c == '?') return To(State::kBogusComment);
      return IsLetter(c) ? BeginTag(false) : To(State::kData, false);
    case State::kEndTagOpen:
      if (c == '>') return To(State::kData);
      return IsLetter(c) ? BeginTag(true) : To(State::kBogusComment, false);
    default:
      if (IsBlank(c)) return To(State::kBeforeName);
      if (c == '/') return To(State::kSlash);
      if (c == '>') return EndTag();
      tag_ += Small(c);
      return true;
  }
}

bool PageReader::BeginTag(bool closing) {
  closing_ = closing;
  tag_.clear();
  return To(State::kTagName, false);
}

bool PageReader::StepAttribute(char c) {
  if (state_ == State::kName) {
    if (IsBlank(c) || c == '/' || c == '>') return To(State::kAfterName, false);
    if (c == '=') {
      SetValueUse();
      return To(State::kBeforeValue);
    }
    name_ += Small(c);
    return true;
  }
  if (IsBlank(c)) return true;
  if (c == '/') return To(State::kSlash);
  if (c == '>') return EndTag();
  if (c != '=') return BeginAttribute();
  if (state_ == State::kAfterName) {
    SetValueUse();
    return To(State::kBeforeValue);
  }
  // A name may begin with "=".
  BeginAttribute();
  name_ = c;
  return true;
}

bool PageReader::BeginAttribute() {
  name_.clear();
  return To(State::kName, false);
}

void PageReader::SetValueUse() {
  ++attributes_;
  value_.clear();
  value_use_ = IsTarget(name_) ? ValueUse::kTarget : IsCode(name_) ? ValueUse::kCode : ValueUse::kText;
}

bool PageReader::StepValue(char c) {
  switch (state_) {
    case State::kBeforeValue:
      if (IsBlank(c)) return true;
      if (c == '>') return EndTag();
      if (c != '\'' && c != '"') return To(State::kBare, false);
      quote_ = c;
      return To(State::kQuoted);
    case State::kQuoted:
      if (c == quote_) return To(State::kAfterQuoted);
      value_ += c;
      return true;
    case State::kBare:
      if (IsBlank(c)) return To(State::kBeforeName);
      if (c == '>') return EndTag();
      value_ += c;
      return true;
    case State::kAfterQuoted:
      if (c == '/') return To(State::kSlash);
      [[fallthrough]];
    default:
      return c == '>' ? EndTag() : To(State::kBeforeName, false);
  }
}

// Behind the ">" of a tag.
bool PageReader::EndTag() {
  static constexpr std::array<std::string_view, 4> kOtherGround = {"svg", "math", "select", "frameset"};
  static constexpr std::array<std::string_view, 2> kFields = {"title", "textarea"};
  static constexpr std::array<std::string_view, 4> kRaw = {"xmp", "iframe", "noembed", "noframes"};
  state_ = State::kData;
  if (closing_) return true;
  if (tag_ == "noscript") unknown_ = true;
  if (IsOneOf(tag_, kOtherGround)) other_ground_ = true;
  content_ = IsOneOf(tag_, kFields) ? Content::kField
             : IsOneOf(tag_, kRaw)  ? Content::kRaw
             : tag_ == "style"      ? Content::kStyle
             : tag_ == "script"     ? Content::kScript
             : tag_ == "plaintext"  ? Content::kRest
                                    : Content::kMarkup;
  if (content_ == Content::kMarkup) return true;
  if (other_ground_) unknown_ = true;
  element_ = tag_;
  escape_level_ = dashes_ = 0;
  return To(State::kRaw);
}

bool PageReader::StepComment(char c) {
  switch (state_) {
    case State::kBang:
      if (c == '-') return To(State::kBangDash);
      if (c == '[' && other_ground_) unknown_ = true;
      return To(State::kBogusComment, false);
    case State::kBangDash:
      return c == '-' ? To(State::kCommentStart) : To(State::kBogusComment, false);
    case State::kBogusComment:
      return c == '>' ? To(State::kData) : true;
    case State::kCommentStart:
    case State::kCommentStartDash:
      if (c == '>') return To(State::kData);
      if (c != '-') return To(State::kComment, false);
      return To(state_ == State::kCommentStart ? State::kCommentStartDash : State::kCommentEnd);
    case State::kComment:
      return c == '-' ? To(State::kCommentDash) : true;
    case State::kCommentDash:
      return c == '-' ? To(State::kCommentEnd) : To(State::kComment, false);
    default:
      if (c == '>') return To(State::kData);
      if (state_ == State::kCommentEndBang && c == '-') return To(State::kCommentDash);
      if (state_ == State::kCommentEnd && c == '!') return To(State::kCommentEndBang);
      return state_ == State::kCommentEnd && c == '-' ? true : To(State::kComment, false);
  }
}

bool PageReader::ClosesContent() const {
  return word_ == element_;
}

bool PageReader::StepRaw(char c) {
  switch (state_) {
    case State::kRaw:
      return StepRawText(c);
    case State::kRawLess:
      word_.clear();
      if (c == '/') return To(escape_level_ == 2 ? State::kDoubleEscapeEnd : State::kRawEndOpen);
      if (content_ == Content::kScript && escape_level_ == 0 && c == '!') return To(State::kEscapeStart);
      if (escape_level_ == 1 && IsLetter(c)) return To(State::kDoubleEscapeStart, false);
      return To(State::kRaw, false);
    case State::kRawEndOpen:
      return To(IsLetter(c) ? State::kRawEndName : State::kRaw, false);
    default:
      if (IsLetter(c)) {
        word_ += Small(c);
        return true;
      }
      if (!ClosesContent() || !(IsBlank(c) || c == '/' || c == '>')) return To(State::kRaw, false);
      closing_ = true;
      content_ = Content::kMarkup;
      if (c == '>') return EndTag();
      return To(c == '/' ? State::kSlash : State::kBeforeName);
  }
}

bool PageReader::StepRawText(char c) {
  if (c == '<' && content_ != Content::kRest) {
    dashes_ = 0;
    return To(State::kRawLess);
  }
  if (c == '-') {
    ++dashes_;
    return true;
  }
  if (c == '>' && dashes_ >= 2) escape_level_ = 0;
  dashes_ = 0;
  return true;
}

// A script may hide from browsers that know none inside "<!--", and hold the text of another one there.
bool PageReader::StepEscape(char c) {
  switch (state_) {
    case State::kEscapeStart:
      return c == '-' ? To(State::kEscapeStartDash) : To(State::kRaw, false);
    case State::kEscapeStartDash:
      if (c != '-') return To(State::kRaw, false);
      escape_level_ = 1;
      dashes_ = 2;
      return To(State::kRaw);
    default:
      if (IsLetter(c)) {
        word_ += Small(c);
        return true;
      }
      if (!IsBlank(c) && c != '/' && c != '>') return To(State::kRaw, false);
      if (word_ == "script") escape_level_ = state_ == State::kDoubleEscapeStart ? 2 : 1;
      return To(State::kRaw);
  }
}

void PageReader::FollowReference(char c) {
  const bool decodes = state_ == State::kData || state_ == State::kQuoted || state_ == State::kBare ||
                       (state_ == State::kRaw && content_ == Content::kField);
  const bool goes_on = IsLetter(c) || (c >= '0' && c <= '9') || (reference_begins_ && c == '#');
  in_reference_ = decodes && (c == '&' || (in_reference_ && goes_on));
  reference_begins_ = in_reference_ && c == '&';
}

}  // namespace zendrix::alerts
