// The text that the renderers build with. It remembers for every character whether it came from a template
// (the program's own words and markup) or from an event (words that whoever the console is meant to catch may
// have chosen), so that one rendering gives two texts:
//
// - the exact text, which the rules state to the character and which other rules go on working with;
// - the text to be shown, in which the characters of events are escaped, and percent-encoded inside a link,
//   so that no event can add markup, a link, a command or a script to a page.
//
// A text is built for one of the two purposes. When it is built to be shown, placeholders are only replaced
// where they are the template's own: a placeholder that an event spells out stays what it is, text. And an
// event's value is only found where it can be read, never inside a tag: a program by the name of "td" is
// linked, the cells of its table stay whole. Everything else comes out the same either way for texts without
// special characters.
#pragma once

#include <string>
#include <string_view>

namespace zendrix::alerts {

enum class Purpose { kExact, kShown };

// Where a character came from.
enum class Origin : char {
  kTemplate,
  kEvent,
  kEventInLink,  // an event's character that stands inside the target of a link
};

class MarkedText {
 public:
  explicit MarkedText(Purpose purpose) : purpose_(purpose) {}
  MarkedText(Purpose purpose, std::string_view text, Origin origin = Origin::kTemplate);

  Purpose purpose() const { return purpose_; }
  bool empty() const { return flat_.empty(); }
  // The characters alone.
  const std::string& flat() const { return flat_; }

  MarkedText& Append(std::string_view text, Origin origin = Origin::kTemplate);
  MarkedText& Append(const MarkedText& other);

  // Replaces all occurrences of a placeholder, left to right, not looking again at what was put in.
  void Replace(std::string_view placeholder, const MarkedText& by);
  void Replace(std::string_view placeholder, std::string_view by, Origin origin = Origin::kTemplate);
  // Replaces a value that came from an event wherever it stands in the row, markup included, as plain text
  // replacement does. When built to be shown, tags are left alone, and a value with special characters is
  // only found in the characters of events.
  void ReplaceValue(std::string_view value, const MarkedText& by);
  // The same for the last occurrence only.
  void ReplaceLastValue(std::string_view value, const MarkedText& by);
  // Drops everything from the placeholder on, if it is there.
  void CutAt(std::string_view placeholder);

  // The text for its purpose: exact, or escaped for a page.
  std::string Finish() const;

 private:
  // Which occurrences of a text count.
  enum class Among {
    kAll,
    kPlaceholders,  // those whose special characters are the template's
    kReadable,      // those outside tags
    kEvents,        // those outside tags that are all of events
  };

  // Position of `text` at or behind `from`; npos when there is none. `in_tags` is needed for the last two.
  std::size_t Find(std::string_view text, std::size_t from, Among among, std::string_view in_tags) const;
  bool Counts(std::size_t at, std::size_t length, Among among, std::string_view in_tags) const;
  // One byte per character, not 0 inside a tag; empty for an exact text, where tags do not matter.
  std::string InTags() const;
  Among PlaceholdersAmong() const { return purpose_ == Purpose::kShown ? Among::kPlaceholders : Among::kAll; }
  Among ValuesAmong(std::string_view value) const;
  void ReplaceAt(std::size_t position, std::size_t length, const MarkedText& by);
  void ReplaceAll(std::string_view text, const MarkedText& by, Among among, std::string_view in_tags = {});

  Purpose purpose_;
  std::string flat_;
  std::string origins_;  // one Origin per character of flat_
};

// Whether a character of an event is shown as something else than itself.
bool IsSpecialInText(char character);

}  // namespace zendrix::alerts
