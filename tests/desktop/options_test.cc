// The Options pane: what is set there is saved, and there again after the next start.
#include <gmock/gmock.h>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

class OptionsTest : public ::testing::Test {
 protected:
  OptionsTest() {
    console_.StartAndWait();
    console_.OpenPane("Options");
  }
  void StartAgain() {
    console_.Quit();
    console_.StartAndWait();
    console_.OpenPane("Options");
  }
  void OpenTab(const std::string& name) {
    console_.Press("page tab", name);
    console_.Await("frame", name);
  }
  bool Shows(const std::string& field, const std::string& text) {
    return Eventually([&] {
      const auto found = console_.Find("text", field);
      return found && found->text() == text;
    });
  }
  bool IsChecked(const std::string& box) { return console_.Await("check box", box).Is(ATSPI_STATE_CHECKED); }

  ConsoleProgram console_;
};

TEST_F(OptionsTest, MailSettingsAreSavedAndReadBack) {
  console_.Press("check box", "Enable e-mail Alerts");
  ASSERT_TRUE(Eventually([&] { return console_.Await("text", "SMTP Server").Is(ATSPI_STATE_ENABLED); }));
  const std::pair<const char*, const char*> fields[] = {
      {"Send Alerts To", "me@example.org"}, {"SMTP Server", "mail.example.org"}, {"Port Number", "2525"}};
  for (const auto& [field, text] : fields) {
    console_.MoveFocusTo("text", field);
    console_.screen().Key("ctrl+a");
    console_.screen().Type(text);
    EXPECT_TRUE(Shows(field, text)) << field;
  }
  console_.Press("push button", "Save");
  ASSERT_TRUE(Eventually([&] { return console_.Saved("enblAlr") == "1"; }));
  StartAgain();
  EXPECT_TRUE(IsChecked("Enable e-mail Alerts"));
  for (const auto& [field, text] : fields) EXPECT_TRUE(Shows(field, text)) << field;
}

TEST_F(OptionsTest, ArrowKeysGoFromTabToTab) {
  console_.MoveFocusTo("page tab list", "Email Alerts");
  console_.screen().Key("Right");
  console_.Await("slider", "Select types of events to show:");
  console_.screen().Key("Right");
  console_.Await("check box", "Install automatically");
}

TEST_F(OptionsTest, CheckedPropertyIsSavedAndReadBack) {
  OpenTab("Properties");
  const std::string box = "Install automatically";
  const bool before = IsChecked(box);
  console_.Press("check box", box);
  ASSERT_TRUE(Eventually([&] { return IsChecked(box) != before; }));
  console_.Press("push button", "Save");
  StartAgain();
  OpenTab("Properties");
  EXPECT_NE(IsChecked(box), before);
}

}  // namespace
}  // namespace zendrix::desktop
