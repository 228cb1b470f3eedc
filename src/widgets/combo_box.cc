#include "widgets/combo_box.h"

#include <algorithm>
#include <utility>

namespace zendrix::widgets {

void ComboBox::Fill(std::vector<Entry> entries) {
  if (entries == entries_) return;
  const bool had_one = index_ >= 0;
  const std::string before = text();
  entries_ = std::move(entries);
  index_ = had_one ? IndexOf(before) : -1;
  filled.Raise();
  if (had_one && index_ < 0) changed.Raise();
}

std::string ComboBox::text() const {
  return index_ < 0 ? std::string() : entries_[static_cast<std::size_t>(index_)].text;
}

void ComboBox::Clear() {
  Put(-1);
}

void ComboBox::Choose(int index) {
  if (index < 0 || index >= static_cast<int>(entries_.size())) return;
  Put(index);
  chosen.Raise();
}

bool ComboBox::OpenAndChoose(const std::string& text) {
  Open();
  const int index = IndexOf(text);
  Choose(index);
  return index >= 0;
}

int ComboBox::IndexOf(const std::string& text) const {
  const auto found = std::ranges::find(entries_, text, &Entry::text);
  return found == entries_.end() ? -1 : static_cast<int>(found - entries_.begin());
}

void ComboBox::Put(int index) {
  if (index == index_) return;
  index_ = index;
  changed.Raise();
}

}  // namespace zendrix::widgets
