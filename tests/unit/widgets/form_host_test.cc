#include "widgets/form_host.h"

#include <gtest/gtest.h>

#include <stdexcept>

#include "widgets/memory/scripted_form_host.h"

namespace zendrix::widgets {
namespace {

using ::testing::ElementsAre;

class TestForm : public Form {
 public:
  TestForm(FormList& forms, const std::string& name, std::vector<std::string>& steps)
      : Form(forms, name), steps_(steps) {}
  ~TestForm() override { Unload(); }

  bool unloads_when_loaded = false;
  bool fails_to_load = false;
  bool hides_when_activated = false;

 private:
  void OnLoad() override {
    steps_.push_back("load " + name() + (visible ? " shown" : " hidden"));
    if (unloads_when_loaded) Unload();
    if (fails_to_load) throw std::runtime_error("no room");
  }
  void OnActivate() override {
    steps_.push_back("activate " + name() + (visible ? " shown" : " hidden"));
    if (hides_when_activated) visible = false;
  }
  void OnUnload() override { steps_.push_back("unload " + name()); }

  std::vector<std::string>& steps_;
};

class FormHostTest : public ::testing::Test {
 protected:
  FormHostTest() {
    host_.on_show = [this](Form& form) { steps_.push_back("window of " + form.name()); };
  }

  std::vector<std::string> steps_;
  FormList forms_;
  ScriptedFormHost host_;
};

TEST_F(FormHostTest, WindowIsThereBeforeTheFormLoadsAndIsShownBehindIt) {
  TestForm form(forms_, "frmOne", steps_);
  host_.Show(form);
  EXPECT_THAT(steps_, ElementsAre("window of frmOne", "load frmOne hidden", "activate frmOne shown"));
  EXPECT_TRUE(form.visible);
}

TEST_F(FormHostTest, FormThatIsShownAgainLoadsOnce) {
  TestForm form(forms_, "frmOne", steps_);
  host_.Show(form);
  form.visible = false;
  steps_.clear();
  host_.Show(form);
  EXPECT_THAT(steps_, ElementsAre("window of frmOne", "activate frmOne shown"));
}

TEST_F(FormHostTest, WindowThatTakesNoFocusIsNotActivated) {
  TestForm form(forms_, "frmOne", steps_);
  ShowOptions pop_up;
  pop_up.on_top = true;
  pop_up.take_focus = false;
  host_.Show(form, pop_up);
  EXPECT_THAT(steps_, ElementsAre("window of frmOne", "load frmOne hidden"));
  EXPECT_TRUE(form.visible);
  EXPECT_TRUE(form.on_top);
}

TEST_F(FormHostTest, WindowStaysOnTopOnlyWhenItIsAskedTo) {
  TestForm form(forms_, "frmOne", steps_);
  host_.Show(form);
  EXPECT_FALSE(form.on_top);
}

TEST_F(FormHostTest, FormThatHasUnloadedIsNotShown) {
  TestForm form(forms_, "frmOne", steps_);
  form.Unload();
  steps_.clear();
  host_.Show(form);
  host_.ShowModal(form);
  EXPECT_THAT(steps_, ElementsAre());
  EXPECT_FALSE(form.visible);
}

TEST_F(FormHostTest, FormThatUnloadsWhileItLoadsIsNeverShown) {
  TestForm form(forms_, "frmOne", steps_);
  form.unloads_when_loaded = true;
  host_.ShowModal(form);
  EXPECT_THAT(steps_, ElementsAre("window of frmOne", "load frmOne hidden", "unload frmOne"));
  EXPECT_FALSE(form.visible);
}

// The window of a message that could not open waited for the event loop and outlived its form.
TEST_F(FormHostTest, ModalFormThatFailsToOpenLosesItsWindowBeforeTheCallerGoesOn) {
  TestForm other(forms_, "frmOther", steps_), form(forms_, "frmOne", steps_);
  form.fails_to_load = true;
  EXPECT_THROW(host_.ShowModal(form), std::runtime_error);
  EXPECT_THAT(host_.taken_down, ElementsAre("frmOne"));
  EXPECT_TRUE(form.loaded());
  EXPECT_TRUE(other.enabled);
}

TEST_F(FormHostTest, ModalFormThatUnloadsInAnyWayLosesItsWindow) {
  TestForm while_loading(forms_, "frmLoading", steps_), while_open(forms_, "frmOpen", steps_);
  while_loading.unloads_when_loaded = true;
  host_.ShowModal(while_loading);
  host_.WhileOpen("frmOpen", [](Form& form) { form.Unload(); });
  host_.ShowModal(while_open);
  EXPECT_THAT(host_.taken_down, ElementsAre("frmLoading", "frmOpen"));
}

TEST_F(FormHostTest, ModalFormThatOnlyHidesKeepsItsWindow) {
  TestForm at_once(forms_, "frmAtOnce", steps_), while_open(forms_, "frmOpen", steps_);
  at_once.hides_when_activated = true;
  host_.ShowModal(at_once);
  host_.WhileOpen("frmOpen", [](Form& form) { form.visible = false; });
  host_.ShowModal(while_open);
  EXPECT_THAT(host_.taken_down, ElementsAre());
}

TEST_F(FormHostTest, ModalFormDisablesAllOthersUntilItHasGone) {
  TestForm one(forms_, "frmOne", steps_), two(forms_, "frmTwo", steps_), modal(forms_, "frmModal", steps_);
  two.enabled = false;  // for a reason of its own
  host_.WhileOpen("frmModal", [&](Form& form) {
    EXPECT_FALSE(one.enabled);
    EXPECT_TRUE(form.enabled);
    form.Unload();
    EXPECT_FALSE(one.enabled) << "the window is still being taken down";
  });
  host_.ShowModal(modal, &one);
  EXPECT_TRUE(one.enabled);
  EXPECT_FALSE(two.enabled);
  EXPECT_EQ(host_.shown.back(), (ScriptedFormHost::Shown{"frmModal", "frmOne", false, true, true}));
}

TEST_F(FormHostTest, ModalFormsNestAndEndInTheirOrder) {
  TestForm main(forms_, "frmMain", steps_), outer(forms_, "frmOuter", steps_),
      inner(forms_, "frmInner", steps_);
  host_.WhileOpen("frmOuter", [&](Form&) {
    host_.WhileOpen("frmInner", [&](Form&) {
      EXPECT_FALSE(main.enabled);
      EXPECT_FALSE(outer.enabled);
    });
    host_.ShowModal(inner);
    EXPECT_TRUE(outer.enabled);
    EXPECT_FALSE(main.enabled);
  });
  host_.ShowModal(outer);
  EXPECT_TRUE(main.enabled);
}

TEST_F(FormHostTest, ModalFormThatTheScriptLeavesOpenIsClosed) {
  TestForm modal(forms_, "frmModal", steps_);
  host_.WhileOpen("frmModal", [](Form&) {});
  host_.ShowModal(modal);
  EXPECT_FALSE(modal.loaded());
}

TEST_F(FormHostTest, ModalFormWithoutAScriptFailsTheTest) {
  TestForm modal(forms_, "frmModal", steps_);
  EXPECT_THROW(host_.ShowModal(modal), std::logic_error);
  EXPECT_TRUE(modal.enabled);
}

TEST_F(FormHostTest, ScriptsOfOneNameWaitInOrder) {
  std::vector<int> ran;
  for (const int i : {1, 2}) host_.WhileOpen("frmModal", [&ran, i](Form&) { ran.push_back(i); });
  for (int i = 0; i < 2; ++i) {
    TestForm modal(forms_, "frmModal", steps_);
    host_.ShowModal(modal);
  }
  EXPECT_THAT(ran, ElementsAre(1, 2));
}

TEST_F(FormHostTest, HiddenModalFormIsClosedAtOnce) {
  HiddenForms hidden;
  TestForm modal(forms_, "frmModal", steps_);
  hidden.ShowModal(modal);
  EXPECT_THAT(steps_, ElementsAre("load frmModal hidden", "activate frmModal shown", "unload frmModal"));
}

TEST(ModalScopeTest, FormThatGoesUnderABoxIsNotTouchedBehindIt) {
  FormList forms;
  auto gone = std::make_unique<Form>(forms, "frmGone");
  Form unloaded(forms, "frmUnloaded");
  Form stays(forms, "frmStays");
  {
    const ModalScope box(forms);
    EXPECT_FALSE(gone->enabled);
    gone.reset();
    unloaded.Unload();
  }
  EXPECT_FALSE(unloaded.enabled);
  EXPECT_TRUE(stays.enabled);
}

TEST(ModalScopeTest, FormThatOpensUnderABoxStaysEnabled) {
  FormList forms;
  const ModalScope box(forms);
  const Form pop_up(forms, "frmPopUpMsg");
  EXPECT_TRUE(pop_up.enabled);
}

TEST(ModalScopeTest, ListenerMayCloseAnotherFormWhileTheBoxOpens) {
  FormList forms;
  Form one(forms, "frmOne"), two(forms, "frmTwo");
  const auto link = one.enabled.changed.Connect([&] {
    if (!one.enabled) two.Unload();
  });
  {
    const ModalScope box(forms);
    EXPECT_FALSE(one.enabled);
  }
  EXPECT_TRUE(one.enabled);
  EXPECT_TRUE(two.enabled) << "it had gone before its turn came";
}

}  // namespace
}  // namespace zendrix::widgets
