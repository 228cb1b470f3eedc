// A list that drops down, of which at most one entry is chosen; entries may have pictures. Its owner fills it
// when it opens, so that it shows what there is at that moment.
#pragma once

#include <string>
#include <vector>

#include "widgets/control.h"

namespace zendrix::widgets {

class ComboBox : public Control {
 public:
  struct Entry {
    std::string text;
    int picture = 0;  // from 1; 0 none
    bool operator==(const Entry&) const = default;
  };

  explicit ComboBox(std::string name) : Control(std::move(name)) {}

  // Replaces all entries. The chosen one stays chosen where its text is still among them.
  void Fill(std::vector<Entry> entries);
  const std::vector<Entry>& entries() const { return entries_; }
  // The chosen entry, from 0; -1: none.
  int index() const { return index_; }
  // Its text; empty without one.
  std::string text() const;
  // Nothing is chosen; the entries stay.
  void Clear();

  // The user's acts. What is not there cannot be chosen.
  void Open() { opened.Raise(); }
  void Choose(int index);
  // As somebody who looks the text up in the open list; false when it is not there.
  bool OpenAndChoose(const std::string& text);

  Signal<> opened;
  Signal<> filled;
  Signal<> changed;  // another entry is chosen, or none
  Signal<> chosen;   // by the user, behind the change

 private:
  int IndexOf(const std::string& text) const;
  void Put(int index);

  std::vector<Entry> entries_;
  int index_ = -1;
};

}  // namespace zendrix::widgets
