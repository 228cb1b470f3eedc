#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>

#include "widgets/form.h"

namespace zendrix::widgets {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class FormListTest : public ::testing::Test {
 protected:
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const Form* form : forms_.open()) names.push_back(form->name());
    return names;
  }
  FormList forms_;
};

TEST_F(FormListTest, FormsStandInTheOrderOfTheirOpening) {
  Form a(forms_, "a"), b(forms_, "b"), c(forms_, "c");
  EXPECT_THAT(Names(), ElementsAre("a", "b", "c"));
  b.Unload();
  EXPECT_THAT(Names(), ElementsAre("a", "c"));
}

TEST_F(FormListTest, FormIsFoundByExactlyItsName) {
  Form main(forms_, "frmMain");
  EXPECT_EQ(forms_.Find("frmMain"), &main);
  for (const char* other : {"frmmain", "frmMai", "frmMain2", ""}) {
    EXPECT_EQ(forms_.Find(other), nullptr) << other;
    EXPECT_FALSE(forms_.IsFormLoaded(other)) << other;
  }
}

TEST_F(FormListTest, NameIsFreeAgainBehindAnUnload) {
  Form first(forms_, "frmMsg"), second(forms_, "frmMsg");
  EXPECT_EQ(forms_.Find("frmMsg"), &first);
  first.Unload();
  EXPECT_EQ(forms_.Find("frmMsg"), &second);
  second.Unload();
  EXPECT_FALSE(forms_.IsFormLoaded("frmMsg"));
}

// The way in which the process closes everything at its end.
TEST_F(FormListTest, UnloadingTheFirstAsOftenAsThereAreFormsEmptiesIt) {
  Form a(forms_, "a"), b(forms_, "b"), c(forms_, "c");
  for (std::size_t left = forms_.open().size(); left > 0; --left) forms_.open().front()->Unload();
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(FormListTest, FormMayOpenAnotherWhileItIsUnloaded) {
  Form first(forms_, "first"), other(forms_, "other");
  std::unique_ptr<Form> next;
  const auto open = first.unloaded.Connect([&] { next = std::make_unique<Form>(forms_, "next"); });
  first.Unload();
  EXPECT_THAT(Names(), ElementsAre("other", "next"));
}

TEST_F(FormListTest, FormMayUnloadAnotherWhileItIsUnloaded) {
  Form owner(forms_, "owner"), child(forms_, "child"), other(forms_, "other");
  const auto close = owner.visible.changed.Connect([&] { child.Unload(); });
  owner.visible = true;  // the child goes with the first change already
  EXPECT_THAT(Names(), ElementsAre("owner", "other"));
  owner.Unload();
  EXPECT_THAT(Names(), ElementsAre("other"));
}

}  // namespace
}  // namespace zendrix::widgets
