// The File menu of the Administrator console: another file is opened, rows are saved and opened again, the
// Agent's file is deleted and begun anew.
#include <gmock/gmock.h>

#include <filesystem>

#include "desktop/console_program.h"
#include "desktop/eventually.h"

namespace zendrix::desktop {
namespace {

class AdminFilesTest : public ::testing::Test {
 protected:
  AdminFilesTest() {
    Put("KorvessaMonitoring.kvl", console_.folder().Read("KorvessaMonitoring.kvl") + Line(1, "of the agent"));
    Put("other.kvl", Line(2, "elsewhere one") + Line(3, "elsewhere two"));
    console_.Start({"--edition=Administrator", "-ns"});
    console_.Await("table cell", "of the agent");
  }
  ~AdminFilesTest() override {
    // The Agent that a Delete has started.
    ChildProcess stop = TheStage().desktop->Start(
        {TheStage().installation + "/zendrix-agent", "--stop", "--folder", console_.folder().path()}, "stop");
    Eventually([&] { return !stop.Running(); });
  }
  static std::string Line(int second, const std::string& text) {
    return std::to_string(1'795'225'500 + second) + ",HOST,System,A," + text + "\r\n";
  }
  void Put(const std::string& name, const std::string& bytes) { console_.folder().Write(name, bytes); }
  std::string Path(const std::string& name) { return console_.folder().Path(name); }
  // In the file dialog of this title.
  void Choose(const std::string& title, const std::string& path) {
    console_.Await("dialog", title);
    ASSERT_TRUE(Eventually([&] {
      const auto window = console_.screen().WithTitle(title);
      return window && console_.screen().Active() == *window;
    }));
    console_.screen().Type(path);
    console_.screen().Key("Return");
    console_.AwaitGone("dialog", title);
  }

  ConsoleProgram console_;
};

TEST_F(AdminFilesTest, FileIsOpenedSavedAndOpenedAgainWithEqualRows) {
  console_.Press("push button", "Open File");
  Choose("Open", Path("other.kvl"));
  console_.Await("table cell", "elsewhere two");
  console_.AwaitGone("table cell", "of the agent");
  console_.screen().Key("ctrl+s");
  Choose("Save As", Path("saved.kvl"));
  ASSERT_TRUE(Eventually([&] { return std::filesystem::exists(Path("saved.kvl")); }));
  EXPECT_EQ(console_.folder().Read("saved.kvl"),
            "1795225502,HOST,     System,A,elsewhere one\r\n1795225503,HOST,     System,A,elsewhere two\r\n");
  console_.screen().Key("ctrl+o");
  Choose("Open", Path("KorvessaMonitoring.kvl"));
  console_.Await("table cell", "of the agent");
  console_.screen().Key("ctrl+o");
  Choose("Open", Path("saved.kvl"));
  console_.Await("table cell", "elsewhere two");
  console_.Await("table cell", "elsewhere one");
  console_.AwaitText("2 records");
}

TEST_F(AdminFilesTest, AgentsFileIsDeletedWhileTheAgentRestsAndTheNewOneIsShown) {
  const auto asked = [&] { return console_.HasText("This will delete your .kvl Monitoring File."); };
  ASSERT_TRUE(Eventually([&] {
    console_.screen().Key("alt+f");
    if (ComesSoon([&] { return console_.screen().HasMenu(); })) console_.screen().Key("d");
    return ComesSoon(asked);
  })) << console_.Tree().Tree();
  console_.AwaitText("This will delete your .kvl Monitoring File.");
  console_.Press("push button", "Yes");
  // The Agent's own lines stand in the new file.
  EXPECT_TRUE(Eventually([&] {
    if (!std::filesystem::exists(Path("KorvessaMonitoring.kvl"))) return false;
    const std::string begun = console_.folder().Read("KorvessaMonitoring.kvl");
    return !begun.empty() && begun.find("of the agent") == std::string::npos;
  }));
  console_.AwaitGone("table cell", "of the agent");
  EXPECT_TRUE(console_.process().Running());
}

}  // namespace
}  // namespace zendrix::desktop
