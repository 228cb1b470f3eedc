// The text that the renderers build with. It remembers for every character whether it came from a template
// (the program's own words and markup) or from an event (words that whoever the console is meant to catch may
// have chosen), so that one rendering gives two texts:
//
// - the exact text, which the rules state to the character and which other rules go on working with;
// - the text to be shown, in which the characters of events are written such that no event can add markup, a
//   link, a command or a script to a page (page_writer.h), whatever the templates are like.
//
// A text is built for one of the two purposes. When it is built to be shown, placeholders are only replaced
// where they are the template's own: a placeholder that an event spells out stays what it is, text. An
// event's value is only linked where it can be read: a program by the name of "td" is linked, the cells of
// its table stay whole, and so do the template's references. And links are left out where no link can stand,
// as in the value of an attribute. Everything else comes out the same either way for texts without special
// characters.
//
// Every operation is done as a whole or, when memory runs out, not at all.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zendrix::alerts {

enum class Purpose { kExact, kShown };

// Where a character came from.
enum class Origin : char {
  kTemplate,
  kEvent,
  kEventInLink,  // a path of this machine, as part of an address: percent-encoded there but for ":" and "/"
  kLink,         // of the anchor around a value, which is no part of a template either
  kEmptyEvent,   // no character: the place of an event's text that is empty, in texts to be shown
};

class MarkedText {
 public:
  explicit MarkedText(Purpose purpose) : purpose_(purpose) {}
  MarkedText(Purpose purpose, std::string_view text, Origin origin = Origin::kTemplate);

  Purpose purpose() const { return purpose_; }
  bool empty() const { return flat_.empty(); }

  MarkedText& Append(std::string_view text, Origin origin = Origin::kTemplate);
  MarkedText& Append(const MarkedText& other);

  // Replaces all occurrences of a placeholder, left to right, not looking again at what was put in.
  void Replace(std::string_view placeholder, const MarkedText& by);
  void Replace(std::string_view placeholder, std::string_view by, Origin origin = Origin::kTemplate);
  // Puts the two texts around a value that came from an event, wherever it stands in the row, markup
  // included, as plain text replacement does. When built to be shown, only where the value can be read, and a
  // value with special characters only in the characters of events.
  void Surround(std::string_view value, const MarkedText& before, const MarkedText& behind);
  // The same for the last occurrence only.
  void SurroundLast(std::string_view value, const MarkedText& before, const MarkedText& behind);
  // Drops everything from the placeholder on, if it is there.
  void CutAt(std::string_view placeholder);

  // The text for its purpose: exact, or as a page may hold it.
  std::string Finish() const;

 private:
  // Which occurrences of a text count.
  enum class Among {
    kAll,
    kPlaceholders,  // those that are all of a template
    kReadable,      // those in the text of the page
    kEvents,        // those in the text of the page that are all of events
  };

  bool IsTemplates(std::size_t at) const { return origins_[at] == static_cast<char>(Origin::kTemplate); }
  // Positions of `text`, none overlapping the one before it. `readable` is needed for the last two kinds.
  std::vector<std::size_t> Find(std::string_view text, Among among, std::string_view readable) const;
  bool Counts(std::size_t at, std::size_t length, Among among, std::string_view readable) const;
  Among PlaceholdersAmong() const { return purpose_ == Purpose::kShown ? Among::kPlaceholders : Among::kAll; }
  Among ValuesAmong(std::string_view value) const;
  // One byte per character, not 0 where it is text of the page; empty for an exact text.
  std::string Readable() const;
  std::vector<std::size_t> FindValue(std::string_view value, Among among) const;
  // The text with every `length` characters at the positions between the two texts.
  void SurroundAt(const std::vector<std::size_t>& positions, std::size_t length, const MarkedText& before,
                  const MarkedText& behind);
  void AppendPart(const MarkedText& other, std::size_t from, std::size_t end);
  // Calls `see` with every position and what is written there, in order.
  template <class See>
  std::string WritePage(See&& see) const;

  Purpose purpose_;
  std::string flat_;
  std::string origins_;  // one Origin per character of flat_
};

}  // namespace zendrix::alerts
