#include "widgets/form.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace zendrix::widgets {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Writes down what happens to it, and does meanwhile what a test tells it to.
class ScriptedForm : public Form {
 public:
  ScriptedForm(FormList& forms, std::string name, std::vector<std::string>& told)
      : Form(forms, std::move(name)), told_(told) {}

  bool refuses = false;
  std::function<void()> on_query, on_unload;

 protected:
  bool QueryUnload(UnloadCause cause) override {
    told_.push_back(cause == UnloadCause::kCloseBox ? "query close box" : "query code");
    const bool granted = !refuses;
    if (const auto act = on_query) act();
    return granted;
  }
  void OnUnload() override {
    told_.push_back("unload");
    if (const auto act = on_unload) act();
  }

 private:
  std::vector<std::string>& told_;
};

class FormTest : public ::testing::Test {
 protected:
  FormTest() {
    hidden_ =
        form_->visible.changed.Connect([this] { told_.push_back(form_->visible ? "shown" : "hidden"); });
    gone_ = form_->unloaded.Connect(
        [this] { told_.push_back(forms_.IsFormLoaded("frmTest") ? "unloaded in the list" : "unloaded"); });
    form_->visible = true;
    told_.clear();
  }

  FormList forms_;
  std::vector<std::string> told_;
  std::unique_ptr<ScriptedForm> form_ = std::make_unique<ScriptedForm>(forms_, "frmTest", told_);
  Connection hidden_, gone_;
};

TEST_F(FormTest, IsLoadedFromItsComingIntoBeing) {
  EXPECT_TRUE(form_->loaded());
  EXPECT_TRUE(forms_.IsFormLoaded("frmTest"));
  EXPECT_EQ(form_->name(), "frmTest");
}

TEST_F(FormTest, BringUpShowsTheFormOutOfTheTaskBarBeforeItComesForward) {
  std::vector<std::pair<bool, WindowState>> seen;
  const auto front = form_->bring_forward.Connect([&] { seen.emplace_back(form_->visible, form_->state); });
  form_->visible = false;
  form_->state = WindowState::kMinimised;
  form_->BringUp();
  form_->state = WindowState::kMaximised;
  form_->BringUp();
  EXPECT_THAT(seen,
              ElementsAre(std::pair(true, WindowState::kNormal), std::pair(true, WindowState::kMaximised)));
}

TEST_F(FormTest, UnloadAsksThenUnloadsThenHidesAndTellsWhenItHasLeftTheList) {
  EXPECT_TRUE(form_->Unload());
  EXPECT_THAT(told_, ElementsAre("query code", "unload", "hidden", "unloaded"));
  EXPECT_FALSE(form_->loaded());
  EXPECT_THAT(forms_.open(), IsEmpty());
}

TEST_F(FormTest, CauseOfTheUnloadReachesTheQuestion) {
  form_->Unload(UnloadCause::kCloseBox);
  EXPECT_EQ(told_.front(), "query close box");
}

TEST_F(FormTest, RefusedUnloadChangesNothing) {
  form_->refuses = true;
  EXPECT_FALSE(form_->Unload());
  EXPECT_THAT(told_, ElementsAre("query code"));
  EXPECT_TRUE(form_->loaded());
  EXPECT_TRUE(form_->visible);
  EXPECT_TRUE(forms_.IsFormLoaded("frmTest"));
  form_->refuses = false;
  EXPECT_TRUE(form_->Unload());
}

TEST_F(FormTest, UnloadedFormIsNotUnloadedAgain) {
  form_->Unload();
  told_.clear();
  EXPECT_TRUE(form_->Unload());
  EXPECT_THAT(told_, IsEmpty());
}

TEST_F(FormTest, DestroyedFormIsNoLongerInTheList) {
  form_.reset();
  EXPECT_THAT(forms_.open(), IsEmpty());
  EXPECT_THAT(told_, IsEmpty());
}

// A form that asks the user whether to quit runs the message loop; a second command to quit came in between
// and the form was saved and taken down twice.
TEST_F(FormTest, UnloadUnderItsOwnQuestionHappensOnce) {
  form_->on_query = [this] {
    form_->on_query = nullptr;
    EXPECT_TRUE(form_->Unload());
  };
  EXPECT_TRUE(form_->Unload());
  EXPECT_THAT(told_, ElementsAre("query code", "query code", "unload", "hidden", "unloaded"));
}

TEST_F(FormTest, UnloadThatIsRefusedTooLateIsGranted) {
  form_->refuses = true;
  form_->on_query = [this] {
    form_->on_query = nullptr;
    form_->refuses = false;
    EXPECT_TRUE(form_->Unload());
  };
  EXPECT_TRUE(form_->Unload());
  EXPECT_FALSE(form_->loaded());
}

TEST_F(FormTest, UnloadUnderItsOwnUnloadHappensOnce) {
  form_->on_unload = [this] { EXPECT_TRUE(form_->Unload()); };
  EXPECT_TRUE(form_->Unload());
  EXPECT_THAT(told_, ElementsAre("query code", "unload", "hidden", "unloaded"));
}

TEST_F(FormTest, UnloadWhileItIsToldToBeHiddenHappensOnce) {
  const auto again = form_->visible.changed.Connect([this] { EXPECT_TRUE(form_->Unload()); });
  form_->visible = false;
  EXPECT_THAT(told_, ElementsAre("hidden", "query code", "unload", "unloaded"));
}

TEST_F(FormTest, UnloadWhileItSaysThatItIsUnloadedDoesNothing) {
  const auto again = form_->unloaded.Connect([this] { EXPECT_TRUE(form_->Unload()); });
  form_->Unload();
  EXPECT_THAT(told_, ElementsAre("query code", "unload", "hidden", "unloaded"));
}

TEST_F(FormTest, MayBeDestroyedWhileItSaysThatItIsUnloaded) {
  const auto end = form_->unloaded.Connect([this] { form_.reset(); });
  const auto later = form_->unloaded.Connect([this] { told_.push_back("told behind its end"); });
  EXPECT_TRUE(form_->Unload());
  EXPECT_THAT(told_, ElementsAre("query code", "unload", "hidden", "unloaded"));
}

// Unload went on with a form that was no more.
TEST_F(FormTest, MayBeDestroyedWhileUnloadHidesIt) {
  const auto end = form_->visible.changed.Connect([this] { form_.reset(); });
  EXPECT_TRUE(form_->Unload());
  EXPECT_THAT(told_, ElementsAre("query code", "unload", "hidden"));
  EXPECT_THAT(forms_.open(), IsEmpty());
}

TEST_F(FormTest, MayBeDestroyedUnderItsOwnQuestion) {
  ScriptedForm other(forms_, "frmOther", told_);
  form_->on_query = [this] { form_.reset(); };
  EXPECT_TRUE(form_->Unload());
  EXPECT_THAT(told_, ElementsAre("query code"));
  EXPECT_THAT(forms_.open(), ElementsAre(&other));
}

TEST_F(FormTest, MayBeDestroyedInItsUnload) {
  form_->on_unload = [this] { form_.reset(); };
  EXPECT_TRUE(form_->Unload());
  EXPECT_THAT(told_, ElementsAre("query code", "unload"));
}

TEST_F(FormTest, MayBeDestroyedWhileItsTitleIsTold) {
  const auto end = form_->title.changed.Connect([this] { form_.reset(); });
  const auto later = form_->title.changed.Connect([this] { told_.push_back(form_->title.Get()); });
  form_->title = std::string("new");
  EXPECT_THAT(told_, IsEmpty());
  EXPECT_THAT(forms_.open(), IsEmpty());
}

TEST_F(FormTest, MayBeUnloadedWhileItIsBroughtForward) {
  const auto end = form_->bring_forward.Connect([this] { form_->Unload(); });
  const auto later = form_->bring_forward.Connect([this] { told_.push_back("forward"); });
  form_->bring_forward.Raise();
  EXPECT_THAT(told_, ElementsAre("query code", "unload", "hidden", "unloaded", "forward"));
}

}  // namespace
}  // namespace zendrix::widgets
