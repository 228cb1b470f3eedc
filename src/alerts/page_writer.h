// Writes a page out of characters of two origins: those of templates, which go out as they are, and those of
// events, which are written such that a browser reads them as the text they are, or as part of the one value
// or comment in which they stand, and as nothing else. What a page is made of therefore never depends on what
// an event says.
//
// - In text an event's character that means something is a character reference.
// - In the value of an attribute it is a numeric one. In a target (HREF, SRC) the value is percent-encoded;
//   only behind an address that a template gives with "http://" or "https://" it may hold ":" and "/", and it
//   never makes a command of a target that is no address. Where a value is run or laid out by (STYLE,
//   ONCLICK), and in scripts and style sheets, only letters and digits are kept.
// - Anywhere else in a tag every character is a numeric reference, and a "<" that an event stands behind is
//   text.
// - Where only the browser knows what it reads, the characters of events are question marks.
#pragma once

#include <cstddef>
#include <string>

#include "alerts/page_reader.h"

namespace zendrix::alerts {

class PageWriter {
 public:
  // A template's character; `before_event` when an event's text comes directly behind it, or behind the "/"
  // that follows it.
  void Template(char character, bool before_event = false);
  void Event(char character);
  // A character of a path of this machine: in a target it goes on an address, and stands for itself elsewhere
  // as an event's does.
  void Path(char character);
  // The place of an event's text that is empty. It keeps apart what stands around it.
  void EmptyEvent();

  // Where the next character would stand.
  const PageReader& reader() const { return reader_; }
  // Whether an anchor can stand here: in plain text, and not inside a reference.
  bool LinkMayStand() const { return reader_.in_plain_text(); }
  const std::string& page() const { return page_; }

 private:
  enum class Target { kAddress, kBeside, kScheme };

  void Put(char character);
  void Put(std::string_view text);
  void PutNumeric(char character);
  void PutText(char character);
  void PutValue(char character);
  void PutTarget(char character);
  void PutLettersOnly(char character);
  void PutPercent(char character);
  Target TargetOf();
  void BreakCommand(char next);

  PageReader reader_;
  std::string page_;
  Target target_ = Target::kBeside;
  std::size_t attribute_ = 0;  // whose value an event last wrote into
};

// Whether a character of an event is shown as something else than itself.
bool IsSpecialInText(char character);

}  // namespace zendrix::alerts
