// Where in a page the next character would stand, as a browser sees it: the states of the HTML standard's
// tokenizer, fed one character at a time. What a character may do depends on nothing else, so whoever writes
// characters of doubtful origin asks here first.
//
// A browser also switches states by the tree it builds, which this class does not have. Where that decides
// (raw text inside pictures and formulas, inside lists to choose from or frame sets, and text for browsers
// without scripts) the place is unknown from there on.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace zendrix::alerts {

enum class Place {
  kText,       // the page's text: references are decoded, tags are read
  kFieldText,  // text of a title or a text field: references are decoded, no tag but the closing one is read
  kRawText,    // text without references and tags, but for the closing one
  kCode,       // a script or a style sheet
  kComment,
  kValue,      // an attribute's value, in quotes
  kBareValue,  // an attribute's value without quotes, or the place where one begins
  kMarkup,     // anywhere else: a letter could become part of a tag, a name or a closing mark
  kUnsure,
};

// What a browser does with the value of an attribute.
enum class ValueUse {
  kText,
  kTarget,  // goes there or fetches it
  kCode,    // runs it, or lays the page out by it
};

class PageReader {
 public:
  void Read(char character);

  Place place() const;
  // In the text of the page and in no reference: what a page mostly is.
  bool in_plain_text() const { return state_ == State::kData && !in_reference_ && !unknown_; }
  // Inside what may become a character reference: behind "&", "&am" or "&#3".
  bool in_reference() const { return in_reference_; }
  // Of the attribute whose value is being read: its use, what has been read of it, and how many attributes
  // have begun with it.
  ValueUse value_use() const { return value_use_; }
  const std::string& value() const { return value_; }
  std::size_t attributes() const { return attributes_; }

 private:
  enum class State {
    kData,
    kTagOpen,
    kEndTagOpen,
    kTagName,
    kBeforeName,
    kName,
    kAfterName,
    kBeforeValue,
    kQuoted,
    kBare,
    kAfterQuoted,
    kSlash,
    kBang,
    kBangDash,
    kBogusComment,
    kCommentStart,
    kCommentStartDash,
    kComment,
    kCommentDash,
    kCommentEnd,
    kCommentEndBang,
    kRaw,
    kRawLess,
    kRawEndOpen,
    kRawEndName,
    kEscapeStart,
    kEscapeStartDash,
    kDoubleEscapeStart,
    kDoubleEscapeEnd,
  };
  // What the present element holds.
  enum class Content { kMarkup, kField, kRaw, kStyle, kScript, kRest };

  // One step; false when the character has to be read again in the new state.
  bool Step(char c);
  bool StepTag(char c);
  bool StepAttribute(char c);
  bool StepValue(char c);
  bool StepComment(char c);
  bool StepRaw(char c);
  bool StepRawText(char c);
  bool StepEscape(char c);
  bool To(State state, bool done = true);
  bool BeginTag(bool closing);
  bool BeginAttribute();
  void SetValueUse();
  bool EndTag();
  bool ClosesContent() const;
  void FollowReference(char c);

  State state_ = State::kData;
  Content content_ = Content::kMarkup;
  bool closing_ = false;
  bool other_ground_ = false;  // the tree decides what raw text is
  bool unknown_ = false;
  bool in_reference_ = false;
  bool reference_begins_ = false;
  char quote_ = 0;
  int escape_level_ = 0;  // of a script: 1 inside "<!--", 2 inside a script element in it
  int dashes_ = 0;        // directly in front, inside "<!--" of a script
  std::string tag_;       // name of the tag, in small letters
  std::string element_;   // name of the element whose content is raw
  std::string word_;      // letters behind a "<" of raw text
  std::string name_;
  std::string value_;
  ValueUse value_use_ = ValueUse::kText;
  std::size_t attributes_ = 0;
};

}  // namespace zendrix::alerts
