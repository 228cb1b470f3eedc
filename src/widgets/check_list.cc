#include "widgets/check_list.h"

#include <algorithm>
#include <utility>

namespace zendrix::widgets {

void CheckList::Fill(std::vector<Entry> entries) {
  entries_ = std::move(entries);
  filled.Raise();
}

std::size_t CheckList::CheckedCount() const {
  return static_cast<std::size_t>(
      std::count_if(entries_.begin(), entries_.end(), [](const Entry& entry) { return entry.checked; }));
}

void CheckList::Click(std::size_t index) {
  if (index >= entries_.size()) return;
  entries_[index].checked = !entries_[index].checked;
  clicked.Raise(index);
}

std::string CheckList::Print() const {
  std::string page;
  for (const Entry& entry : entries_) page += (entry.checked ? "[x] " : "[ ] ") + entry.text + "\n";
  return page;
}

}  // namespace zendrix::widgets
