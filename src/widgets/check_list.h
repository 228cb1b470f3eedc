// A list of texts, each with a box that the user ticks or clears. Its entries are replaced as a whole; after
// that only their boxes change.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "widgets/control.h"

namespace zendrix::widgets {

class CheckList : public Control {
 public:
  struct Entry {
    std::string text;
    bool checked = false;
    bool operator==(const Entry&) const = default;
  };

  explicit CheckList(std::string name) : Control(std::move(name)) {}

  void Fill(std::vector<Entry> entries);
  const std::vector<Entry>& entries() const { return entries_; }
  // How many are ticked.
  std::size_t CheckedCount() const;
  // The user's act: turns the box of the entry over. An entry that is not there is passed over.
  void Click(std::size_t index);
  // One line for each entry: "[x] text" or "[ ] text".
  std::string Print() const;

  Signal<> filled;
  // Behind the change.
  Signal<std::size_t> clicked;

 private:
  std::vector<Entry> entries_;
};

}  // namespace zendrix::widgets
