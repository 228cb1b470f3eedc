// A new version, from the file in the program folder to the greeting of its first run.
#include "core/message_window.h"
#include "flow_fixture.h"
#include "support/pe_file.h"

namespace zendrix::flow {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class UpdateFlow : public FlowTest {
 protected:
  UpdateFlow() { Write(Alert(0, "/opt/tool")); }

  void HaveUpdate(const std::string& bytes) { world_.platform.files.Put(Path("Zendrix Update.exe"), bytes); }
  bool UpdateIsThere() { return world_.platform.files.Has(Path("Zendrix Update.exe")); }
};

TEST_F(UpdateFlow, FirstRunNamesTheVersionOfTheInstallerAndTakesItAway) {
  HaveUpdate(zendrix::testing::PeFile{{3, 4, 0, 5}}.Bytes());
  std::string greeting;
  world_.host.WhileOpen("frmMsg", [&](widgets::Form& form) {
    greeting = dynamic_cast<core::frmMsg&>(form).lblMsg.caption.Get();
    EXPECT_FALSE(UpdateIsThere());
  });
  Start("-ns -nv");
  EXPECT_EQ(greeting, "Congratulations! Korvessa Zendrix has been successfully updated to version 3.4.0.5");
}

TEST_F(UpdateFlow, FirstRunOfAnInstallerWithoutAVersionNamesNone) {
  HaveUpdate("#!/bin/sh\n");
  std::string greeting;
  world_.host.WhileOpen("frmMsg", [&](widgets::Form& form) {
    greeting = dynamic_cast<core::frmMsg&>(form).lblMsg.caption.Get();
  });
  Start("-ns -nv");
  EXPECT_EQ(greeting, "Congratulations! Korvessa Zendrix has been successfully updated.");
  EXPECT_FALSE(UpdateIsThere());
}

}  // namespace
}  // namespace zendrix::flow
