#include "widgets/reopened_window.h"

#include <gtest/gtest.h>

#include "widgets/memory/scripted_form_host.h"

namespace zendrix::widgets {
namespace {

struct Window : Form {
  Window(FormList& forms, int& alive) : Form(forms, "frmLog"), alive_(alive) { ++alive_; }
  ~Window() override {
    Unload();
    --alive_;
  }
  int& alive_;
};

class ReopenedTest : public ::testing::Test {
 protected:
  Window& Open() { return windows_.Open(host_, forms_, alive_); }

  FormList forms_;
  ScriptedFormHost host_;
  int alive_ = 0;
  Reopened<Window> windows_;
};

TEST_F(ReopenedTest, OpenWindowIsTheOneThatIsThere) {
  EXPECT_EQ(windows_.get(), nullptr);
  Window& first = Open();
  EXPECT_EQ(&Open(), &first);
  EXPECT_EQ(alive_, 1);
}

TEST_F(ReopenedTest, ClosedWindowIsMadeAnew) {
  Open().Unload();
  EXPECT_TRUE(Open().loaded());
  EXPECT_EQ(alive_, 1);
}

// A handler of its own may still run.
TEST_F(ReopenedTest, FormerWindowStaysUntilItsWindowHasGone) {
  Open().Unload();
  host_.windows_linger = true;
  Open();
  EXPECT_EQ(alive_, 2);
  host_.windows_linger = false;
  Open();
  EXPECT_EQ(alive_, 1);
}

}  // namespace
}  // namespace zendrix::widgets
