// A tree of three levels: one root, the branches under it, and the items under each branch. Items are plain
// texts that are read when they are shown, so that a branch may have a hundred thousand of them. What the
// tree shows is replaced as a whole and told once; after that branches only open and close, and the tree
// knows which of them are open.
#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "widgets/control.h"

namespace zendrix::widgets {

class Tree : public Control {
 public:
  struct Items {
    std::size_t count = 0;
    // The item at a place from 0 at the top; called as long as the tree shows it, or until KeepTexts.
    std::function<std::string(std::size_t)> text;
  };
  struct Branch {
    std::string key;
    std::string text;
    int picture = 0;  // numbered from 1; 0 is none
    bool expanded = false;
    Items items;
  };

  explicit Tree(std::string name) : Control(std::move(name)) {}

  // Shows a root, which is open, and its branches; the last one is the current one.
  void Fill(std::string root, std::vector<Branch> branches = {});
  // Not even a root is left.
  void Clear();
  bool empty() const { return !has_root_; }
  const std::string& root() const { return root_; }
  const std::vector<Branch>& branches() const { return branches_; }
  // The branch of this key, null when there is none.
  const Branch* Find(std::string_view key) const;
  // The user's act. A branch that is not there is passed over.
  void Expand(std::size_t branch, bool expanded);
  void ExpandRoot(bool expanded) { root_expanded_ = expanded; }
  bool root_expanded() const { return root_expanded_; }
  // What item texts are read from goes away: they are read once more and kept. Where memory does not suffice
  // the tree is cleared.
  void KeepTexts();

  // One line for each node that is in sight, indented by its level; "+" and "-" stand in front of what can be
  // opened and what is open, a picture behind its text.
  std::string Print() const;

  Signal<> filled;  // or cleared

 private:
  bool has_root_ = false;
  bool root_expanded_ = false;
  std::string root_;
  std::vector<Branch> branches_;
};

}  // namespace zendrix::widgets
