#include "widgets/tree.h"

#include <algorithm>
#include <memory>
#include <new>
#include <utility>

namespace zendrix::widgets {

void Tree::Fill(std::string root, std::vector<Branch> branches) {
  has_root_ = true;
  root_expanded_ = true;
  root_ = std::move(root);
  // What is replaced may be read until the views have been told.
  std::swap(branches_, branches);
  filled.Raise();
}

void Tree::Clear() {
  if (!has_root_) return;
  has_root_ = root_expanded_ = false;
  root_.clear();
  const std::vector<Branch> gone = std::exchange(branches_, {});
  filled.Raise();
}

const Tree::Branch* Tree::Find(std::string_view key) const {
  const auto found = std::ranges::find(branches_, key, &Branch::key);
  return found == branches_.end() ? nullptr : &*found;
}

void Tree::Expand(std::size_t branch, bool expanded) {
  if (branch < branches_.size()) branches_[branch].expanded = expanded;
}

void Tree::KeepTexts() {
  try {
    for (Branch& branch : branches_) {
      if (branch.items.count == 0) continue;
      auto kept = std::make_shared<std::vector<std::string>>();
      kept->reserve(branch.items.count);
      for (std::size_t i = 0; i < branch.items.count; ++i) kept->push_back(branch.items.text(i));
      branch.items.text = [kept](std::size_t i) { return (*kept)[i]; };
    }
  } catch (const std::bad_alloc&) {
    Clear();
  }
}

std::string Tree::Print() const {
  if (!has_root_) return {};
  const auto sign = [](bool can_open, bool open) { return !can_open ? "  " : open ? "- " : "+ "; };
  std::string page = sign(!branches_.empty(), root_expanded_) + root_ + "\n";
  if (!root_expanded_) return page;
  for (const Branch& branch : branches_) {
    page.append("  ").append(sign(branch.items.count > 0, branch.expanded)).append(branch.text);
    if (branch.picture > 0) page += "[" + std::to_string(branch.picture) + "]";
    page += "\n";
    for (std::size_t i = 0; branch.expanded && i < branch.items.count; ++i)
      page += "      " + branch.items.text(i) + "\n";
  }
  return page;
}

}  // namespace zendrix::widgets
