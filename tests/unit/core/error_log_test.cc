#include "core/error_log.h"

#include "core/guards.h"
#include "support/console_world.h"

namespace zendrix::core {
namespace {

using platform::BoxIcon;
using platform::ErrorKind;
using platform::FileOp;
using ::testing::ElementsAre;

constexpr char kLog[] = "/opt/zendrix/KorvessaAdministratorEventLog.kvl";
const RunTimeError kMismatch{13, "Type mismatch"};
constexpr char kMismatchLine[] =
    "An error has occurred in procedure 'Initial : Main'. Error 13: Type mismatch";

class ErrorLogTest : public ::testing::Test {
 protected:
  ErrorLogTest() { world_.platform.clock.SetUtc(1163754300); }
  std::string Written() { return world_.platform.files.Get(kLog); }

  testing::ConsoleWorld world_;
};

// A form that keeps a diary and can be told how to behave when it is unloaded.
class DiaryForm : public widgets::Form {
 public:
  DiaryForm(testing::ConsoleWorld& world, std::string name, std::vector<std::string>& diary)
      : Form(world.state.forms, std::move(name)), diary_(diary) {}

  std::function<void()> on_query;
  std::function<void()> on_unload;
  bool refuses = false;

 protected:
  bool QueryUnload(widgets::UnloadCause cause) override {
    EXPECT_EQ(cause, widgets::UnloadCause::kCode);
    if (on_query) on_query();
    if (refuses) diary_.push_back(name() + " refuses");
    return !refuses;
  }
  void OnUnload() override {
    diary_.push_back(name());
    if (on_unload) on_unload();
  }

 private:
  std::vector<std::string>& diary_;
};

TEST_F(ErrorLogTest, LineHasDateComputerZeroAndMessage) {
  world_.quiet.Expect("'Initial': Start UI.");
  world_.log.WriteLog("Initial", "Start UI.");
  EXPECT_EQ(Written(), "11/17/2006 09:05:00 AM,Testhost,0,'Initial': Start UI.\r\n");
}

TEST_F(ErrorLogTest, LinesAreAppended) {
  world_.platform.files.Put(kLog, "what was there\r\n");
  world_.quiet.Expect("'a': 1");
  world_.quiet.Expect("'b': 2");
  world_.log.WriteLog("a", "1");
  world_.log.WriteLog("b", "2");
  EXPECT_EQ(Written(),
            "what was there\r\n11/17/2006 09:05:00 AM,Testhost,0,'a': 1\r\n"
            "11/17/2006 09:05:00 AM,Testhost,0,'b': 2\r\n");
}

TEST_F(ErrorLogTest, ComputerNameInCapitalsKeepsThemOnlyAtTheStartOfWords) {
  world_.platform.host.computer_name = "FRONT-DESK PC";
  world_.quiet.Expect("'a': 1");
  world_.log.WriteLog("a", "1");
  EXPECT_EQ(Written(), "11/17/2006 09:05:00 AM,Front-desk Pc,0,'a': 1\r\n");
}

TEST_F(ErrorLogTest, LineBreakInAMessageMakesTwoLines) {
  world_.quiet.Expect("'a': one\r\ntwo");
  world_.log.WriteLog("a", "one\r\ntwo");
  EXPECT_EQ(Written(), "11/17/2006 09:05:00 AM,Testhost,0,'a': one\r\ntwo\r\n");
}

TEST_F(ErrorLogTest, CommasInAMessageStay) {
  world_.quiet.Expect("'a': one,two");
  world_.log.WriteLog("a", "one,two");
  EXPECT_EQ(Written(), "11/17/2006 09:05:00 AM,Testhost,0,'a': one,two\r\n");
}

TEST_F(ErrorLogTest, ReadOnlyLogFileIsSilent) {
  world_.platform.files.Put(kLog, "before\r\n");
  world_.platform.files.FailNext(FileOp::kAppend, kLog, ErrorKind::kPermissionDenied);
  world_.quiet.Expect("'a': 1");
  world_.log.WriteLog("a", "1");
  EXPECT_EQ(Written(), "before\r\n");
  EXPECT_TRUE(world_.platform.message_boxes.shown.empty());
  EXPECT_FALSE(world_.platform.process.ended);
}

// The guards write their line when memory has run out: the line itself must not end the process then.
TEST_F(ErrorLogTest, MemoryThatRunsOutWhileALineIsWrittenIsSilent) {
  world_.platform.files.before = [](FileOp, const std::string&) { throw std::bad_alloc(); };
  world_.quiet.Expect("'proc': message");
  world_.log.WriteLog("proc", "message");
  world_.quiet.Expect("'proc': 13: Type mismatch");
  EXPECT_FALSE(OrLog(world_.log, "proc", [] { Raise(kTypeMismatch); }));
}

TEST_F(ErrorLogTest, FatalErrorIsLoggedToldAndEndsTheProcess) {
  world_.quiet.Expect(kMismatchLine);
  EXPECT_EQ(world_.EndOf([&] { world_.log.WriteError("Initial : Main", kMismatch); }), 1);
  EXPECT_EQ(Written(), std::string("11/17/2006 09:05:00 AM,Testhost,0,") + kMismatchLine + "\r\n");
  ASSERT_EQ(world_.platform.message_boxes.shown.size(), 1U);
  const auto& box = world_.platform.message_boxes.shown[0];
  EXPECT_EQ(box.title, "Korvessa Zendrix Home Edition");
  EXPECT_EQ(box.text, "Unexpected Error. Zendrix is exiting.");
  EXPECT_EQ(box.icon, BoxIcon::kStop);
}

TEST_F(ErrorLogTest, FatalErrorIsReportedBeforeItsBox) {
  std::string reported;
  world_.log.on_fatal = [&](const std::string& proc, const RunTimeError& error) {
    EXPECT_TRUE(world_.platform.message_boxes.shown.empty());
    reported = proc + "/" + std::to_string(error.number);
  };
  world_.quiet.Expect(kMismatchLine);
  world_.EndOf([&] { world_.log.WriteError("Initial : Main", kMismatch); });
  EXPECT_EQ(reported, "Initial : Main/13");
}

TEST_F(ErrorLogTest, FatalErrorWithAReadOnlyLogShowsBothErrorsAndEnds) {
  world_.platform.files.FailNext(FileOp::kAppend, kLog, ErrorKind::kPermissionDenied);
  world_.quiet.Expect(kMismatchLine);
  EXPECT_EQ(world_.EndOf([&] { world_.log.WriteError("Initial : Main", kMismatch); }), 1);
  ASSERT_EQ(world_.platform.message_boxes.shown.size(), 1U);
  const auto& box = world_.platform.message_boxes.shown[0];
  EXPECT_EQ(box.title, "ErrorLog.WriteError");
  EXPECT_EQ(box.text.substr(0, 37), "Fatal error writing Error Log.\r\n70: P");
  EXPECT_THAT(box.text,
              ::testing::EndsWith("\r\nThe application will stop.\r\nInitial error was 13: Type mismatch"));
  EXPECT_EQ(Written(), "");
}

TEST_F(ErrorLogTest, CloseAllUnloadsEveryFormFromTheFirstOn) {
  std::vector<std::string> diary;
  DiaryForm one(world_, "one", diary), two(world_, "two", diary), three(world_, "three", diary);
  EXPECT_EQ(world_.EndOf([&] { world_.log.CloseAllAndEnd(); }), 0);
  EXPECT_THAT(diary, ElementsAre("one", "two", "three"));
  EXPECT_TRUE(world_.state.forms.open().empty());
}

TEST_F(ErrorLogTest, CloseAllAsksAsOftenAsThereWereFormsAndEndsAllTheSame) {
  std::vector<std::string> diary;
  DiaryForm one(world_, "one", diary), two(world_, "two", diary);
  one.refuses = true;
  EXPECT_EQ(world_.EndOf([&] { world_.log.CloseAllAndEnd(); }), 0);
  EXPECT_THAT(diary, ElementsAre("one refuses", "one refuses"));
}

TEST_F(ErrorLogTest, FormThatOpensAnotherWhileItUnloadsDoesNotProlongTheEnd) {
  std::vector<std::string> diary;
  DiaryForm one(world_, "one", diary);
  std::unique_ptr<DiaryForm> late;
  one.on_unload = [&] { late = std::make_unique<DiaryForm>(world_, "late", diary); };
  EXPECT_EQ(world_.EndOf([&] { world_.log.CloseAllAndEnd(); }), 0);
  EXPECT_THAT(diary, ElementsAre("one"));
}

TEST_F(ErrorLogTest, MainWindowThatClosesEverythingFromItsOwnUnloadIsPassedOver) {
  std::vector<std::string> diary;
  DiaryForm main(world_, "main", diary), other(world_, "other", diary);
  main.on_unload = [&] { world_.log.CloseAllAndEnd(); };
  EXPECT_EQ(world_.EndOf([&] { main.Unload(); }), 0);
  EXPECT_THAT(diary, ElementsAre("main", "other"));
}

// The unload of a main window closes everything by itself, and the process ended with its status, 0.
TEST_F(ErrorLogTest, FatalErrorEndsWithOneAlsoWhenAMainWindowIsOpen) {
  std::vector<std::string> diary;
  DiaryForm main(world_, "main", diary), other(world_, "other", diary);
  main.unloaded.ConnectForever([&] { world_.log.CloseAllAndEnd(); });
  world_.quiet.Expect(kMismatchLine);
  EXPECT_EQ(world_.EndOf([&] { world_.log.WriteError("Initial : Main", kMismatch); }), 1);
  EXPECT_THAT(diary, ElementsAre("main", "other"));
}

// The loop goes on behind the box: a terminal's end signal, say, closes the main window meanwhile.
TEST_F(ErrorLogTest, MainWindowThatIsClosedUnderTheBoxOfAFatalErrorEndsWithOne) {
  std::vector<std::string> diary;
  DiaryForm main(world_, "main", diary);
  main.unloaded.ConnectForever([&] { world_.log.CloseAllAndEnd(); });
  world_.platform.message_boxes.while_open = [&](const platform::BoxRequest&) { main.Unload(); };
  world_.quiet.Expect(kMismatchLine);
  EXPECT_EQ(world_.EndOf([&] { world_.log.WriteError("Initial : Main", kMismatch); }), 1);
  EXPECT_THAT(diary, ElementsAre("main"));
}

TEST_F(ErrorLogTest, StatusAskedForDoesNotHideAFatalError) {
  std::vector<std::string> diary;
  DiaryForm main(world_, "main", diary);
  main.unloaded.ConnectForever([&] { world_.log.CloseAllAndEnd(3); });
  world_.quiet.Expect(kMismatchLine);
  EXPECT_EQ(world_.EndOf([&] { world_.log.WriteError("Initial : Main", kMismatch); }), 1);
}

TEST_F(ErrorLogTest, ErrorInsideAnUnloadTakesTheFatalPathASecondTime) {
  std::vector<std::string> diary;
  DiaryForm one(world_, "one", diary), two(world_, "two", diary);
  one.on_unload = [&] { OrFatal(world_.log, "one:Form_Unload", [] { Raise(kOverflow); }); };
  world_.quiet.Expect(kMismatchLine);
  world_.quiet.Expect("An error has occurred in procedure 'one:Form_Unload'. Error 6: Overflow");
  EXPECT_EQ(world_.EndOf([&] { world_.log.WriteError("Initial : Main", kMismatch); }), 1);
  EXPECT_THAT(diary, ElementsAre("one", "two"));
  EXPECT_EQ(world_.platform.message_boxes.shown.size(), 2U);
}

TEST_F(ErrorLogTest, UnguardedErrorInAnUnloadEndsTheProcessAllTheSame) {
  std::vector<std::string> diary;
  DiaryForm one(world_, "one", diary), two(world_, "two", diary);
  one.on_unload = [] { Raise(kOverflow); };
  two.on_unload = [] { Raise(kSubscriptOutOfRange); };
  world_.quiet.Expect("An error has occurred in procedure 'ErrorLog:CloseAllAndEnd'. Error 6: Overflow");
  world_.quiet.Expect(
      "An error has occurred in procedure 'ErrorLog:CloseAllAndEnd'. Error 9: Subscript out of range");
  EXPECT_EQ(world_.EndOf([&] { world_.log.CloseAllAndEnd(); }), 1);
  EXPECT_THAT(diary, ElementsAre("one", "two"));
}

TEST_F(ErrorLogTest, FormThatFailsWheneverItIsAskedDoesNotKeepTheProcessAlive) {
  std::vector<std::string> diary;
  DiaryForm one(world_, "one", diary), two(world_, "two", diary);
  one.on_query = [&] { OrFatal(world_.log, "one:Form_QueryUnload", [] { Raise(kOverflow); }); };
  world_.quiet.Expect("An error has occurred in procedure 'one:Form_QueryUnload'. Error 6: Overflow");
  EXPECT_EQ(world_.EndOf([&] { world_.log.CloseAllAndEnd(); }), 1);
  EXPECT_THAT(diary, ElementsAre("two"));
}

TEST_F(ErrorLogTest, OrLogWritesNumberAndDescriptionAndGoesOn) {
  world_.quiet.Expect("'frmNewUI:Form_Load': 6: Overflow");
  EXPECT_FALSE(OrLog(world_.log, "frmNewUI:Form_Load", [] { Raise(kOverflow); }));
  EXPECT_TRUE(OrLog(world_.log, "frmNewUI:Form_Load", [] {}));
}

TEST_F(ErrorLogTest, OrFatalGivesTheValueOfItsBody) {
  EXPECT_EQ(OrFatal(world_.log, "proc", [] { return 42; }), 42);
}

TEST_F(ErrorLogTest, OrFatalTakesExhaustedMemoryAsError7) {
  world_.quiet.Expect("An error has occurred in procedure 'proc'. Error 7: Out of memory");
  EXPECT_EQ(world_.EndOf([&] { OrFatal(world_.log, "proc", [] { throw std::bad_alloc(); }); }), 1);
}

TEST_F(ErrorLogTest, GuardsLetTheEndOfTheProcessPass) {
  EXPECT_EQ(world_.EndOf([&] { OrLog(world_.log, "p", [&] { world_.log.CloseAllAndEnd(3); }); }), 3);
  EXPECT_EQ(world_.EndOf([&] { OrIgnore([&] { world_.log.CloseAllAndEnd(4); }); }), 4);
}

}  // namespace
}  // namespace zendrix::core
