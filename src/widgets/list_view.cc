#include "widgets/list_view.h"

#include <algorithm>

namespace zendrix::widgets {

std::optional<ListView::Slot> ListView::InsertTop(std::string key, std::string text, int picture,
                                                  std::string tag) {
  const Slot slot = static_cast<Slot>(rows_.size());
  if (!keys_.emplace(key, slot).second) return std::nullopt;
  rows_.push_back({std::move(key), std::move(tag), std::move(text), picture, {}, false});
  if (batch_ == 0) {
    told_ = rows_.size();
    rows_added.Raise();
  }
  return slot;
}

void ListView::AddSubItem(Slot slot, std::string text, int picture) {
  rows_[slot].sub_items.push_back({std::move(text), picture});
  if (slot < told_) row_changed.Raise(slot);
}

void ListView::SetSubItem(Slot slot, std::size_t index, std::string text, int picture) {
  auto& items = rows_[slot].sub_items;
  if (items.size() <= index) items.resize(index + 1);
  items[index] = {std::move(text), picture};
  if (slot < told_) row_changed.Raise(slot);
}

void ListView::Ghost(Slot slot) {
  rows_[slot].ghosted = true;
  if (slot < told_) row_changed.Raise(slot);
}

void ListView::Clear() {
  if (rows_.empty()) return;
  rows_.clear();
  keys_.clear();
  told_ = 0;
  scrolled_ = 0;
  const bool had_selection = selected_.has_value();
  selected_.reset();
  cleared.Raise();
  if (had_selection) selection_changed.Raise();
}

void ListView::EndBatch() {
  if (--batch_ > 0 || told_ == rows_.size()) return;
  told_ = rows_.size();
  rows_added.Raise();
}

std::optional<ListView::Slot> ListView::Find(std::string_view key) const {
  const auto found = keys_.find(std::string(key));
  if (found == keys_.end()) return std::nullopt;
  return found->second;
}

void ListView::Select(std::optional<Slot> slot) {
  if (slot == selected_) return;
  selected_ = slot;
  selection_changed.Raise();
}

void ListView::Click(Slot slot) {
  if (slot >= rows_.size()) return;
  Select(slot);
  // A listener of the selection may have changed it or cleared the list.
  if (selected_ == slot) item_clicked.Raise(slot);
}

std::optional<ListView::Slot> ListView::first_visible() const {
  if (rows_.empty()) return std::nullopt;
  const std::size_t above = std::min(scrolled_, rows_.size() - 1);
  return static_cast<Slot>(rows_.size() - 1 - above);
}

std::string ListView::Print() const {
  const auto cell = [](const std::string& text, int picture) {
    return picture == 0 ? text : text + "[" + std::to_string(picture) + "]";
  };
  std::string page;
  for (std::size_t position = 0; position < size(); ++position) {
    const ListRow& row = at(position);
    if (row.ghosted) page += "~";
    page += cell(row.text, row.picture);
    for (const SubItem& item : row.sub_items) page += " | " + cell(item.text, item.picture);
    page += "\n";
  }
  return page;
}

}  // namespace zendrix::widgets
