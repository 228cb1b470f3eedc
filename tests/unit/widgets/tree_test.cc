#include "widgets/tree.h"

#include <gtest/gtest.h>

namespace zendrix::widgets {
namespace {

Tree::Items Texts(std::vector<std::string> texts) {
  const std::size_t count = texts.size();
  return {count, [texts = std::move(texts)](std::size_t i) { return texts[i]; }};
}

class TreeTest : public ::testing::Test {
 protected:
  TreeTest() {
    tree_.filled.ConnectForever([this] { ++told_; });
  }
  void Fill() {
    tree_.Fill("System State", {{"System", "System", 2, true, Texts({"b", "a"})},
                                {"Tcp Port", "Tcp Port", 11, false, Texts({"80"})},
                                {"Empty", "Empty", 0, false, {}}});
  }

  Tree tree_{"tvVCR"};
  int told_ = 0;
};

TEST_F(TreeTest, NodesInSightArePrinted) {
  Fill();
  EXPECT_EQ(tree_.Print(),
            "- System State\n"
            "  - System[2]\n"
            "      b\n"
            "      a\n"
            "  + Tcp Port[11]\n"
            "    Empty\n");
  EXPECT_EQ(told_, 1);
}

TEST_F(TreeTest, RootMayStandAlone) {
  tree_.Fill("System State");
  EXPECT_EQ(tree_.Print(), "  System State\n");
  EXPECT_FALSE(tree_.empty());
}

TEST_F(TreeTest, ClearLeavesNotEvenARootAndIsToldOnce) {
  Fill();
  tree_.Clear();
  EXPECT_TRUE(tree_.empty());
  EXPECT_EQ(tree_.Print(), "");
  EXPECT_EQ(tree_.Find("System"), nullptr);
  tree_.Clear();
  EXPECT_EQ(told_, 2);
}

TEST_F(TreeTest, BranchesAndTheRootOpenAndClose) {
  Fill();
  tree_.Expand(0, false);
  tree_.Expand(1, true);
  tree_.Expand(7, true);
  EXPECT_EQ(tree_.Print(),
            "- System State\n"
            "  + System[2]\n"
            "  - Tcp Port[11]\n"
            "      80\n"
            "    Empty\n");
  EXPECT_FALSE(tree_.Find("System")->expanded);
  tree_.ExpandRoot(false);
  EXPECT_EQ(tree_.Print(), "+ System State\n");
  Fill();
  EXPECT_TRUE(tree_.root_expanded()) << "whatever is new is in sight";
}

TEST_F(TreeTest, BranchIsFoundByItsKey) {
  Fill();
  ASSERT_NE(tree_.Find("Tcp Port"), nullptr);
  EXPECT_EQ(tree_.Find("Tcp Port")->picture, 11);
  EXPECT_EQ(tree_.Find("tcp port"), nullptr);
}

TEST_F(TreeTest, TextsAreReadWhenTheyAreAskedFor) {
  int reads = 0;
  const auto read = [&reads](std::size_t i) {
    ++reads;
    return std::to_string(i);
  };
  tree_.Fill("root", {{"k", "k", 0, false, {100'000, read}}});
  EXPECT_EQ(reads, 0);
  EXPECT_EQ(tree_.branches()[0].items.text(99'999), "99999");
  EXPECT_EQ(reads, 1);
}

TEST_F(TreeTest, KeptTextsOutliveWhatTheyWereReadFrom) {
  auto source = std::make_unique<std::string>("gone");
  tree_.Fill("root", {{"k", "k", 0, true, {2, [text = source.get()](std::size_t) { return *text; }}}});
  tree_.KeepTexts();
  source.reset();
  EXPECT_EQ(tree_.Print(), "- root\n  - k\n      gone\n      gone\n");
  EXPECT_EQ(told_, 1) << "nothing looks different";
}

TEST_F(TreeTest, WhatCannotBeKeptIsCleared) {
  tree_.Fill("root", {{"k", "k", 0, true, {2, [](std::size_t) -> std::string { throw std::bad_alloc(); }}}});
  tree_.KeepTexts();
  EXPECT_TRUE(tree_.empty());
  EXPECT_EQ(told_, 2);
}

}  // namespace
}  // namespace zendrix::widgets
