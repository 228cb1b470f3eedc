// The Options dialog of the Administrator console: what is set there is saved, followed by the grid, and
// there again after the next start.
#include <gmock/gmock.h>

#include <csignal>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

class AdminOptionsTest : public ::testing::Test {
 protected:
  AdminOptionsTest() {
    // Behind the event that keeps the settings' hash up to date.
    std::string lines = console_.folder().Read("KorvessaMonitoring.kvl");
    for (const char* monitor : {"System", "Tcp Port", "Memory"})
      lines += "1795225500,HOST," + std::string(monitor) + ",A,text\r\n";
    console_.folder().Write("KorvessaMonitoring.kvl", lines);
    OpenDialog();
  }
  void OpenDialog() {
    console_.Start({"--edition=Administrator", "-ns"});
    console_.Await("table cell", "System");
    console_.Press("push button", "Options");
    console_.Await("list", "Select the Monitors to display");
  }
  void StartAgain() {
    console_.process().Send(SIGTERM);
    ASSERT_TRUE(Eventually([&] { return !console_.process().Running(); }));
    OpenDialog();
  }
  bool Checked(const std::string& role, const std::string& name) {
    return console_.Await(role, name).Is(ATSPI_STATE_CHECKED);
  }
  void NextPage(const std::string& role, const std::string& name) {
    console_.screen().Key("ctrl+Tab");
    console_.Await(role, name);
  }
  void Choose(const std::string& option) {
    console_.Press("radio button", option);
    ASSERT_TRUE(Eventually([&] { return Checked("radio button", option); })) << option;
  }
  void Put(const std::string& field, const std::string& text) {
    console_.MoveFocusTo("text", field);
    console_.screen().Key("ctrl+a");
    console_.screen().Type(text);
    EXPECT_TRUE(Shows(field, text)) << field;
  }
  bool Shows(const std::string& field, const std::string& text) {
    return Eventually([&] { return console_.Await("text", field).text() == text; });
  }

  ConsoleProgram console_;
};

TEST_F(AdminOptionsTest, EveryOptionIsSetByKeyboardAndThereAgainAfterAStart) {
  console_.MoveFocusTo("list", "Select the Monitors to display");
  console_.screen().Key("End");
  console_.screen().Key("space");
  ASSERT_TRUE(Eventually([&] { return !Checked("list item", "Memory"); }));
  NextPage("list", "Select the columns to show");
  console_.MoveFocusTo("list", "Select the columns to show");
  console_.screen().Key("Down");
  console_.screen().Key("space");
  ASSERT_TRUE(Eventually([&] { return !Checked("list item", "Hostname"); }));
  NextPage("radio button", "Weeks");
  Choose("Weeks");
  Choose("Total of events across time");
  Put("Number of slots", "12");
  NextPage("text", "SMTP Server");
  const std::pair<const char*, const char*> fields[] = {
      {"Send Alerts To", "me@example.org"}, {"SMTP Server", "mail.example.org"}, {"Port Number", "2525"}};
  for (const auto& [field, text] : fields) Put(field, text);
  console_.screen().Key("Return");
  console_.AwaitGone("text", "SMTP Server");
  console_.AwaitGone("table cell", "Memory");
  console_.AwaitGone("table cell", "HOST");
  EXPECT_EQ(console_.Saved("TSlots"), "4");
  EXPECT_EQ(console_.Saved("Nslots"), "12");
  EXPECT_EQ(console_.Saved("TCHart"), "T");
  StartAgain();
  EXPECT_FALSE(Checked("list item", "Memory"));
  EXPECT_TRUE(Checked("list item", "System"));
  NextPage("list item", "Hostname");
  EXPECT_FALSE(Checked("list item", "Hostname"));
  NextPage("radio button", "Weeks");
  EXPECT_TRUE(Checked("radio button", "Weeks"));
  EXPECT_TRUE(Checked("radio button", "Total of events across time"));
  EXPECT_TRUE(Shows("Number of slots", "12"));
  NextPage("text", "SMTP Server");
  for (const auto& [field, text] : fields) EXPECT_TRUE(Shows(field, text)) << field;
}

TEST_F(AdminOptionsTest, ColourIsChosenInTheColourDialog) {
  NextPage("push button", "Change Selected Color");
  console_.Press("push button", "Change Selected Color");
  console_.Await("dialog", "Selected Color");
  console_.MoveFocusTo("text", "HTML:");
  console_.screen().Key("ctrl+a");
  console_.screen().Type("#00aa00");
  console_.screen().Key("Return");
  console_.AwaitGone("dialog", "Selected Color");
  ASSERT_TRUE(Eventually(
      [&] { return console_.Await("push button", "Change Selected Color").description() == "#00AA00"; }));
  console_.Press("push button", "OK");
  EXPECT_TRUE(Eventually([&] { return console_.Saved("SSColor") == "43520"; }));
}

}  // namespace
}  // namespace zendrix::desktop
