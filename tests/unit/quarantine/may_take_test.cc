// What may be put in quarantine: one test, or more, for each clause of the rule.
#include <pwd.h>
#include <sys/xattr.h>

#include "family/intermediate/may_take.h"
#include "unit/quarantine/quarantine_fixture.h"

namespace zendrix::family {
namespace {

constexpr char kProcesses[] = "Running Processes";
constexpr char kPorts[] = "Listening Ports";
constexpr char kConnections[] = "TCP Connections";
constexpr char kAutorun[] = "Autorun Registry";
constexpr char kFolderMonitor[] = "Windows Folder";
constexpr char kEmptySum[] = "d41d8cd98f00b204e9800998ecf8427e";

class MayTakeTest : public QuarantineTest {
 protected:
  static Event Of(const std::string& monitor, const std::string& description) {
    return {monitor, description, time(nullptr) + kAnHour, "", true};
  }
  static void Write(const std::string& path, const std::string& text, mode_t mode = 0644) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    std::ofstream(path, std::ios::binary | std::ios::trunc) << text;
    chmod(path.c_str(), mode);
  }

  // A process of the test's own computer that runs this file, in the mount namespace of the console.
  void Run(const std::string& process, const std::string& executable, std::int64_t began = kBoot + 100,
           char state = 'S') {
    const std::string folder = proc_ + "/" + process;
    std::filesystem::create_directories(folder + "/ns");
    std::filesystem::create_directories(folder + "/fd");
    const long ticks = (began - kBoot) * sysconf(_SC_CLK_TCK);
    Write(
        folder + "/stat", process + " (a) name) " + state + " 1" +
                              [] {
                                std::string zeros;
                                for (int i = 0; i < 17; ++i) zeros += " 0";
                                return zeros;
                              }() +
                              " " + std::to_string(ticks) + " 0 0\n");
    std::filesystem::remove(folder + "/ns/mnt");
    std::filesystem::create_hard_link(proc_ + "/self/ns/mnt", folder + "/ns/mnt");
    std::filesystem::remove(folder + "/exe");
    std::filesystem::create_symlink(executable, folder + "/exe");
  }
  // As the computer's own start moves when its clock is set.
  void SetClock(std::int64_t forward) {
    Write(proc_ + "/stat", "btime " + std::to_string(kBoot + forward) + "\n");
  }
  void Listen(const std::string& process, const std::string& socket) {
    std::filesystem::create_symlink("socket:[" + socket + "]", proc_ + "/" + process + "/fd/7");
  }
  void Table(const std::string& lines, const char* name = "tcp") {
    Write(proc_ + "/net/" + name, "  sl  local_address rem_address   st ...\n" + lines);
  }
  static std::string Socket(const std::string& local, const std::string& remote, const std::string& state,
                            const std::string& number) {
    return "   0: " + local + " " + remote + " " + state +
           " 00000000:00000000 00:00000000 00000000  1000        0 " + number + " 1 0 100 0 0 10 0\n";
  }

  void ExpectTaken(const Event& event, const std::string& path) {
    const Outcome outcome = PutAway(event);
    EXPECT_TRUE(outcome.done) << event.description << ": " << outcome.text;
    EXPECT_FALSE(LookAt(path).there);
    EXPECT_TRUE(PutBack(event).done);
  }
  void ExpectKept(const Event& event, const std::string& path, const std::string& part) {
    const Look before = LookAt(path);
    ASSERT_TRUE(before.there) << path;
    ExpectRefused(PutAway(event), part);
    EXPECT_EQ(LookAt(path), before);
  }
};

// Kind of file.

TEST_F(MayTakeTest, AFileThatCannotBeRunIsNotTaken) {
  const std::string path = Make("letter.txt", "text", 0644);
  ExpectKept(Of(kFolderMonitor, path), path, "\"letter.txt\" is no program: it cannot be run.");
  for (const mode_t mode : {0744, 0654, 0645}) {
    chmod(path.c_str(), mode);
    ExpectTaken(Of(kFolderMonitor, path), path);
  }
}

TEST_F(MayTakeTest, AnEntryOfAnAutostartFolderNeedNotBeAProgram) {
  const std::string path = autostart_ + "/below/x.desktop";
  Write(path, "[Desktop Entry]\nExec=/bin/true\n");
  ExpectTaken(Of(kFolderMonitor, path), path);
  ExpectTaken(Of(kAutorun, path + "=/bin/true"), path);
}

// A click on an alert about an autostart entry took the system's archiver away: the command was taken for
// what the alert means.
TEST_F(MayTakeTest, OfAnAutostartEventTheEntryIsTakenNeverTheCommand) {
  const std::string command = Make("archiver"), path = autostart_ + "/x.desktop";
  Write(path, "[Desktop Entry]\n");
  const Look before = LookAt(command);
  const Outcome outcome = PutAway(Of(kAutorun, path + "=" + command));
  EXPECT_TRUE(outcome.done) << outcome.text;
  EXPECT_FALSE(LookAt(path).there);
  EXPECT_EQ(LookAt(command), before);
}

TEST_F(MayTakeTest, AnAutostartEventAboutAFileElsewhereIsRefused) {
  const std::string path = Make("tool");
  ExpectKept(Of(kAutorun, path + "=/bin/true"), path, "\"tool\" is no entry of an autostart folder.");
}

TEST_F(MayTakeTest, AnAutostartFolderIsKnownByWhatItIs) {
  // The same folder under another name, as a second mount of it would be.
  outside_.autostart_places = {home_.path() + "/link"};
  std::filesystem::create_symlink(autostart_, home_.path() + "/link");
  const std::string path = autostart_ + "/x.desktop";
  Write(path, "");
  ExpectTaken(Of(kAutorun, path + "=x"), path);
}

// Whose it is.

TEST_F(MayTakeTest, OnlyAFileOfTheOneWhoClicksIsTaken) {
  const std::string path = Make("tool");
  ClickAs(geteuid() + 1);
  ExpectKept(Of(kFolderMonitor, path), path, "\"tool\" belongs to somebody else.");
  ClickAs(geteuid());
  ExpectTaken(Of(kFolderMonitor, path), path);
}

TEST_F(MayTakeTest, TheSuperuserTakesNobodyElsesFileEither) {
  if (geteuid() == 0) {
    const std::string path = Make("tool");
    ASSERT_EQ(chown(path.c_str(), test::kNobody, test::kNobody), 0);
    ExpectKept(Of(kFolderMonitor, path), path, "\"tool\" belongs to somebody else.");
  } else {
    const std::string path = Make("tool");
    ClickAs(0);
    ExpectKept(Of(kFolderMonitor, path), path, "\"tool\" belongs to somebody else.");
  }
}

// Installed packages.

TEST_F(MayTakeTest, AFileOfAPackageIsNotTakenAsLongAsItIsAsThePackageHasIt) {
  const std::string path = Make("tool", "");
  const std::string inside = path.substr(1);
  Write(records_ + "/info/other.list", "/.\n/usr\n/usr/bin/another\n");
  Write(records_ + "/info/tool.list", "/.\n" + files_ + "\n" + path + "\n");
  ExpectKept(Of(kFolderMonitor, path), path,
             "\"tool\" belongs to an installed package and stays where it is.");
  Write(records_ + "/info/tool.md5sums", std::string(kEmptySum) + "  " + inside + "\n");
  ExpectKept(Of(kFolderMonitor, path), path, "\"tool\" belongs to an installed package");
  std::filesystem::remove(records_ + "/info/tool.list");
  ExpectKept(Of(kFolderMonitor, path), path, "\"tool\" belongs to an installed package");
}

TEST_F(MayTakeTest, AFileOfAPackageWhoseContentsAreNotThePackagesIsTaken) {
  const std::string path = Make("tool", "altered");
  Write(records_ + "/info/tool.md5sums", std::string(kEmptySum) + "  " + path.substr(1) + "\n");
  ExpectTaken(Of(kFolderMonitor, path), path);
  // Two packages that both have it: one that fits is enough.
  Write(records_ + "/info/b.md5sums", "fe62e4251f00a40e8fee6c0a87e3a2b0  " + path.substr(1) + "\n");
  ExpectTaken(Of(kFolderMonitor, path), path);
  Make("tool", "");
  ExpectKept(Of(kFolderMonitor, path), path, "belongs to an installed package");
}

TEST_F(MayTakeTest, RecordsFromBeforeBinAndUsrBinWereOneCount) {
  outside_.package_root = files_;
  for (const std::string folder : {"bin", "sbin", "lib64"}) {
    const std::string path = Path("usr/" + folder + "/tool"), old = Path(folder + "/tool");
    Write(path, "", 0755);
    Write(old, "", 0755);
    Write(records_ + "/info/tool.md5sums", std::string(kEmptySum) + "  " + folder + "/tool\n");
    ExpectKept(Of(kFolderMonitor, path), path, "belongs to an installed package");
    Write(records_ + "/info/tool.md5sums", std::string(kEmptySum) + "  usr/" + folder + "/tool\n");
    ExpectKept(Of(kFolderMonitor, old), old, "belongs to an installed package");
    Write(records_ + "/info/tool.md5sums", std::string(kEmptySum) + "  opt/" + folder + "/tool\n");
    ExpectTaken(Of(kFolderMonitor, path), path);
  }
}

TEST_F(MayTakeTest, TheShortestPathOfAPackageRecordCountsToo) {
  outside_.package_root = files_;
  const std::string path = Make("x", "");
  Write(records_ + "/info/tool.md5sums", std::string(kEmptySum) + "  x\n");
  ExpectKept(Of(kFolderMonitor, path), path, "belongs to an installed package");
  // Lines that are cut short name nothing.
  Write(records_ + "/info/tool.md5sums", std::string(kEmptySum) + "  \n" + kEmptySum + "\nx\n");
  ExpectTaken(Of(kFolderMonitor, path), path);
}

TEST_F(MayTakeTest, APackagesFileCountsWhereverItIsMounted) {
  // Another way to the very same file; a link stands for the second mount.
  const std::string path = Make("tool", "");
  std::filesystem::create_symlink(files_, home_.path() + "/mounted");
  Write(records_ + "/info/tool.list", home_.path() + "/mounted/tool\n");
  ExpectKept(Of(kFolderMonitor, path), path, "belongs to an installed package");
  Write(records_ + "/info/tool.list", home_.path() + "/mounted/another-tool\n");
  ExpectTaken(Of(kFolderMonitor, path), path);
}

TEST_F(MayTakeTest, AFileThatWasPutAsideForAnotherPackageIsStillAPackages) {
  const std::string path = Make("tool.real", "");
  Write(records_ + "/info/tool.md5sums", std::string(kEmptySum) + "  " + Path("tool").substr(1) + "\n");
  Write(records_ + "/diversions", "/a\n/b\nother\n" + Path("tool") + "\n" + path + "\nother\n");
  Write(records_ + "/info/tool.list", Path("tool") + "\n");
  // Its name on the disk is another than in the record.
  EXPECT_FALSE(PutAway(Of(kFolderMonitor, path)).done);
}

TEST_F(MayTakeTest, OtherPackageManagersAreAskedWhereTheyAre) {
  const std::string path = Make("tool", "");
  const std::string tool = home_.path() + "/manager";
  const auto says = [&](const std::string& script) { Write(tool, "#!/bin/sh\n" + script + "\n", 0755); };
  for (std::string Outside::*manager : {&Outside::rpm, &Outside::pacman}) {
    outside_.*manager = tool;
    says("test \"$#\" = 3 && test \"$2\" = -- && test \"$3\" = '" + path + "' && test \"$LC_ALL\" = C");
    if (manager == &Outside::rpm) says("exit 0");
    ExpectKept(Of(kFolderMonitor, path), path, "belongs to an installed package");
    says("exit 1");
    ExpectTaken(Of(kFolderMonitor, path), path);
    says("kill -9 $$");
    ExpectKept(Of(kFolderMonitor, path), path,
               "The package manager did not say whether \"tool\" is its own.");
    outside_.*manager = home_.path() + "/missing";
    ExpectTaken(Of(kFolderMonitor, path), path);
    outside_.*manager = "";
  }
}

TEST_F(MayTakeTest, APackageManagerThatSaysTheContentsDifferLetsTheFileGo) {
  const std::string path = Make("tool", "");
  outside_.rpm = home_.path() + "/rpm";
  Write(outside_.rpm, "#!/bin/sh\ntest $1 = -qf || echo 'S.5....T.    " + path + "'\n", 0755);
  ExpectTaken(Of(kFolderMonitor, path), path);
  Write(outside_.rpm, "#!/bin/sh\ntest $1 = -qf || echo '.M.......    " + path + "'\n", 0755);
  ExpectKept(Of(kFolderMonitor, path), path, "belongs to an installed package");
  Write(outside_.rpm, "#!/bin/sh\ntest $1 = -qf || echo '..5......    " + path + "x'\n", 0755);
  ExpectKept(Of(kFolderMonitor, path), path, "belongs to an installed package");
}

TEST_F(MayTakeTest, APackageManagerThatHangsIsEndedAndTheFileStays) {
  const std::string path = Make("tool", "");
  outside_.pacman = home_.path() + "/pacman";
  outside_.tool_time = std::chrono::milliseconds(50);
  Write(outside_.pacman, "#!/bin/sh\nexec sleep 600\n", 0755);
  ExpectKept(Of(kFolderMonitor, path), path, "The package manager did not say");
}

// Zendrix itself.

TEST_F(MayTakeTest, TheProgramFolderStaysHoweverItIsReached) {
  const std::string path = program_ + "/Images/picture.png";
  Write(path, "x", 0755);
  ExpectKept(Of(kFolderMonitor, path), path, "belongs to Zendrix itself and stays where it is.");
  ExpectKept(Of(kFolderMonitor, "/" + program_ + "//Images/picture.png"), path, "belongs to Zendrix itself");
  std::filesystem::create_symlink(program_, home_.path() + "/link");
  quarantine_.Configure(home_.path() + "/link", false);
  ExpectKept(Of(kFolderMonitor, path), path, "belongs to Zendrix itself");
}

TEST_F(MayTakeTest, AFileOfTheProgramFolderIsKnownByItsNumberToo) {
  // The folder of the event is another one; what it holds is also in the program folder, as with a mount of a
  // part of it.
  const std::string path = Make("picture.png");
  std::filesystem::create_directory(program_ + "/Images");
  std::filesystem::create_hard_link(path, program_ + "/Images/other.png");
  ExpectKept(Of(kFolderMonitor, path), path, "belongs to Zendrix itself");
}

TEST_F(MayTakeTest, TheProgramFolderIsSearchedSixteenFoldersDeepAndNoDeeper) {
  const std::string path = Make("picture.png");
  std::string folder = program_;
  for (int depth = 0; depth < 16; ++depth) folder += "/d";
  std::filesystem::create_directories(folder + "/d");
  std::filesystem::create_hard_link(path, folder + "/other.png");
  ExpectKept(Of(kFolderMonitor, path), path, "belongs to Zendrix itself");
  std::filesystem::rename(folder + "/other.png", folder + "/d/other.png");
  ExpectKept(Of(kFolderMonitor, path), path, "stands in more than one place on the disk");
}

// A program folder of that many files is a mistake in the settings; it must not make everything Zendrix's
// own.
TEST_F(MayTakeTest, AFolderOfTooManyFilesIsNotTakenForOneThatHoldsTheFile) {
  const std::string path = Make("tool");
  std::filesystem::create_directory(program_ + "/many");
  for (int i = 0; i <= 20'000; ++i) std::ofstream(program_ + "/many/" + std::to_string(i)).flush();
  ExpectTaken(Of(kFolderMonitor, path), path);
}

TEST_F(MayTakeTest, WhatIsInQuarantineStays) {
  ASSERT_TRUE(PutAway(Make("tool")).done);
  const std::string manifest = TheEntry() + ".manifest";
  ExpectKept(Of(kFolderMonitor, manifest), manifest, "belongs to Zendrix itself");
}

TEST_F(MayTakeTest, WhatThisProcessRunsOnStays) {
  const std::string own = std::filesystem::canonical("/proc/self/exe");
  quarantine_.Configure(program_, true);  // whatever comes of it, this program stays
  ExpectRefused(PutAway(Of(kFolderMonitor, own)), "belongs to Zendrix itself");
  std::ifstream maps("/proc/self/maps");
  int libraries = 0;
  for (std::string line; std::getline(maps, line);) {
    const auto slash = line.find('/');
    if (slash == std::string::npos || line.find(".so") == std::string::npos) continue;
    ExpectRefused(PutAway(Of(kFolderMonitor, std::filesystem::canonical(line.substr(slash)))),
                  "belongs to Zendrix itself");
    ++libraries;
  }
  EXPECT_GT(libraries, 2);
}

TEST_F(MayTakeTest, WhatTheProcessesItStartedRunAndMapStays) {
  const std::string path = Make("browser"), library = Make("library");
  const auto child_of = [&](const std::string& process, pid_t parent) {
    Write(proc_ + "/" + process + "/stat", process + " (b) S " + std::to_string(parent) + " 0\n");
  };
  Run("50", path);
  ExpectTaken(Of(kFolderMonitor, path), path);
  child_of("50", 49);
  child_of("49", getpid());
  ExpectKept(Of(kFolderMonitor, path), path, "belongs to Zendrix itself");
  Write(proc_ + "/49/maps",
        "7f-80 r--p 00000000 00:00 0 \n7f-80 r--p 00000000 00:01 99999 " + library + "\n");
  ExpectKept(Of(kFolderMonitor, library), library, "belongs to Zendrix itself");
  // A circle, as a list may hold that is read while processes come and go.
  child_of("49", 50);
  ExpectTaken(Of(kFolderMonitor, path), path);
}

TEST_F(MayTakeTest, AgentAndItsHelpersStayWhereTheyAreInstalled) {
  outside_.own_folders = {home_.path() + "/missing", files_};
  for (const char* name : {"zendrix-agent", "Zendrix-act", "libKorvessaX.so", "QtWebEngineProcess"}) {
    const std::string path = Make(name);
    ExpectKept(Of(kFolderMonitor, path), path, "belongs to Zendrix itself");
  }
  const std::string other = Make("my-zendrix");
  ExpectTaken(Of(kFolderMonitor, other), other);
  outside_.own_folders = {};
  ExpectTaken(Of(kFolderMonitor, Path("zendrix-agent")), Path("zendrix-agent"));
}

TEST_F(MayTakeTest, WhatOurServiceStartsStays) {
  const std::string path = Make("watcher");
  outside_.unit_folders = {home_.path() + "/units"};
  Write(home_.path() + "/units/other.service", "ExecStart=" + path + "\n");
  ExpectTaken(Of(kFolderMonitor, path), path);
  Write(home_.path() + "/units/zendrix.service", "[Service]\nExecStart=-" + path + " --folder /var\n");
  ExpectKept(Of(kFolderMonitor, path), path, "belongs to Zendrix itself");
  Write(home_.path() + "/units/zendrix.service", "[Service]\nExecStart=\nExecStart=nothing\n#" + path + "\n");
  ExpectTaken(Of(kFolderMonitor, path), path);
}

// Programs that run.

TEST_F(MayTakeTest, ALivingProcessMustRunThatVeryFile) {
  const std::string path = Make("tool"), other = Make("other");
  Run("4711", path);
  ExpectTaken(Of(kProcesses, path + ":4711"), path);
  Run("4711", other);
  ExpectKept(Of(kProcesses, path + ":4711"), path, "The program of this event is not the file \"tool\".");
}

TEST_F(MayTakeTest, ALivingProcessProvesAFileThatWasChangedSince) {
  const std::string path = Make("tool");
  Run("4711", path, 1100);
  Event event = Of(kProcesses, path + ":4711");
  event.moment = kBoot + 200;  // long before the file was made
  ExpectTaken(event, path);
  event.moment.reset();
  ExpectTaken(event, path);
}

// A process in a mount namespace of its own that called itself the remote-login server made the real one
// disappear.
TEST_F(MayTakeTest, AProcessInAMountNamespaceOfItsOwnNamesNoFileHere) {
  const std::string path = Make("sshd");
  Run("4711", path);
  std::filesystem::remove(proc_ + "/4711/ns/mnt");
  Write(proc_ + "/4711/ns/mnt", "another");
  ExpectKept(Of(kProcesses, path + ":4711"), path,
             "The program of this event runs in a container of its own and is not \"sshd\".");
}

// The helper of an installed system has a sandbox, and with it a mount namespace of its own: every program of
// the computer was taken for one of a container.
TEST_F(MayTakeTest, InAServicesSandboxAProcessOfTheComputerNamesItsFile) {
  const std::string path = Make("tool"), other = Make("other");
  for (const std::string process : {"1", "4711", "4712"}) {
    if (process != "1") Run(process, process == "4711" ? path : other);
    std::filesystem::create_directories(proc_ + "/" + process + "/ns");
    std::filesystem::remove(proc_ + "/" + process + "/ns/mnt");
  }
  Write(proc_ + "/1/ns/mnt", "the computer's");
  std::filesystem::create_hard_link(proc_ + "/1/ns/mnt", proc_ + "/4711/ns/mnt");
  Write(proc_ + "/4712/ns/mnt", "another");
  ExpectKept(Of(kProcesses, other + ":4712"), other, "runs in a container of its own");
  ExpectTaken(Of(kProcesses, path + ":4711"), path);
}

TEST_F(MayTakeTest, AProcessThatMayNotBeLookedAtProvesNothing) {
  const std::string path = Make("tool");
  Run("4711", path);
  std::filesystem::remove(proc_ + "/4711/ns/mnt");
  ExpectKept(Of(kProcesses, path + ":4711"), path,
             "It cannot be told whether the program of this event is \"tool\".");
  Run("4711", path);
  std::filesystem::remove(proc_ + "/4711/exe");
  ExpectKept(Of(kProcesses, path + ":4711"), path, "It cannot be told");
}

TEST_F(MayTakeTest, AProcessThatBeganBehindTheEventIsAnotherOne) {
  const std::string path = Make("tool"), other = Make("other");
  Event event = Of(kProcesses, path + ":4711");
  Run("4711", other, *event.moment + 2);
  ExpectKept(event, path, "is not the file \"tool\"");
  Run("4711", other, *event.moment + 3);
  ExpectTaken(event, path);
}

TEST_F(MayTakeTest, AProcessThatHasEndedAndIsStillListedIsGone) {
  const std::string path = Make("tool"), other = Make("other");
  for (const char state : {'Z', 'X'}) {
    Run("4711", other, kBoot + 100, state);
    ExpectTaken(Of(kProcesses, path + ":4711"), path);
  }
}

// Its own folder of /proc, and the whole of /proc, can be closed to others: then a program that runs in a
// container and only goes by the file's name seemed to have ended.
TEST_F(MayTakeTest, AProcessThatIsOutOfSightHasNotEnded) {
  const std::string path = Make("tool");
  const auto expect_unknown = [&](const std::string& process) {
    ExpectKept(Of(kProcesses, path + ":" + process), path,
               "It cannot be told whether the program of this event is \"tool\".");
  };
  std::filesystem::create_directory(proc_ + "/4711");
  expect_unknown("4711");
  std::filesystem::remove(proc_ + "/1/stat");
  std::filesystem::remove(proc_ + "/1");
  expect_unknown("1");
  expect_unknown(std::to_string(getpid()));
  // More than the highest number that a system has, more than a number, and none.
  for (const char* process : {"4194305", "99999999999", "0"})
    ExpectTaken(Of(kProcesses, path + ":" + process), path);
}

// A process whose first thread ends is listed as if it had ended itself.
TEST_F(MayTakeTest, AProcessLivesAsLongAsOneOfItsThreads) {
  const std::string path = Make("tool"), other = Make("other");
  Run("4711", other, kBoot + 100, 'Z');
  std::filesystem::create_directories(proc_ + "/4711/task/4711");
  std::filesystem::create_directories(proc_ + "/4711/task/4712");
  std::filesystem::copy_file(proc_ + "/4711/stat", proc_ + "/4711/task/4711/stat");
  std::filesystem::copy_file(proc_ + "/4711/stat", proc_ + "/4711/task/4712/stat");
  ExpectTaken(Of(kProcesses, path + ":4711"), path);
  Run("4713", other);
  std::filesystem::copy_file(proc_ + "/4713/stat", proc_ + "/4711/task/4712/stat",
                             std::filesystem::copy_options::overwrite_existing);
  ExpectKept(Of(kProcesses, path + ":4711"), path, "is not the file \"tool\"");
}

// Behind a clock that is set forward everything that still runs seems to have begun after the event, so that
// another program's process no longer spoke against taking the file.
TEST_F(MayTakeTest, AClockThatIsSetForwardMakesNoProcessANewOne) {
  const std::string path = Make("tool"), other = Make("other");
  Event event = Of(kProcesses, path + ":4711");
  Run("4711", other, *event.moment - 10);
  SetClock(kAnHour);
  ExpectKept(event, path, "is not the file \"tool\"");
  Run("4711", other, *event.moment + 2);
  ExpectKept(event, path, "is not the file \"tool\"");
  Run("4711", other, *event.moment + 3);
  ExpectTaken(event, path);
}

// Behind a clock that is set back a change of the file seems to be earlier than the event that it follows.
TEST_F(MayTakeTest, AClockThatIsSetBackLeavesNoFileUnchanged) {
  const std::string path = Make("tool");
  struct stat status = {};
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  SetClock(-kAnHour);
  Event event = Of(kProcesses, path + ":4711");
  event.moment = status.st_ctim.tv_sec - 1;
  ExpectKept(event, path, "\"tool\" was changed after this event.");
  for (const std::int64_t behind : {std::int64_t{0}, kAnHour - 1}) {
    event.moment = status.st_ctim.tv_sec + behind;
    ExpectKept(event, path,
               "The clock was set back, so it cannot be told whether \"tool\" was changed after this event.");
  }
  event.moment = status.st_ctim.tv_sec + kAnHour;
  ExpectTaken(event, path);
}

TEST_F(MayTakeTest, WhenTheProgramHasEndedTheFileMustBeAsItWasAtTheEvent) {
  const std::string path = Make("tool");
  struct stat status = {};
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  Event event = Of(kProcesses, path + ":4711");
  event.moment = status.st_ctim.tv_sec;
  ExpectTaken(event, path);
  ASSERT_EQ(stat(path.c_str(), &status), 0);
  event.moment = status.st_ctim.tv_sec - 1;
  ExpectKept(event, path, "\"tool\" was changed after this event.");
  // A later change of the contents, whatever the other time says.
  event = Of(kProcesses, path + ":4711");
  const timespec later[2] = {{0, UTIME_OMIT}, {*event.moment + 1, 0}};
  utimensat(AT_FDCWD, path.c_str(), later, 0);
  ExpectKept(event, path, "\"tool\" was changed after this event.");
}

TEST_F(MayTakeTest, WhenTheProgramHasEndedAndTheMomentIsNotKnownTheFileStays) {
  const std::string path = Make("tool");
  for (const std::string& description : {path + ":4711", path}) {
    Event event = Of(kProcesses, description);
    event.moment.reset();
    ExpectKept(event, path, "The program of this event has ended, and when the event was is not known");
  }
  Event event = Of(kFolderMonitor, path);
  event.moment.reset();
  ExpectTaken(event, path);
}

// Against an event that claimed to be of the year 5138 every file was unchanged, also one that had been put
// in the program's place a moment ago.
TEST_F(MayTakeTest, AnEventOfAMomentThatIsStillToComeHasNoKnownMoment) {
  const std::string path = Make("tool");
  for (const std::int64_t moment : {now_ + 3, now_ + kAnHour, std::int64_t{99999999999}, INT64_MAX}) {
    Event event = Of(kProcesses, path + ":4711");
    event.moment = moment;
    ExpectKept(event, path, "The program of this event has ended, and when the event was is not known");
    event = Of(kPorts, "8080:" + path);
    event.moment = moment;
    ExpectKept(event, path, "when the event was is not known");
  }
  // Clocks are told in whole seconds, and not by the same call.
  Event event = Of(kProcesses, path + ":4711");
  event.moment = now_ + 2;
  ExpectTaken(event, path);
  // A process that lives needs no moment.
  Run("4711", path);
  event.moment = now_ + kAnHour;
  ExpectTaken(event, path);
}

TEST_F(MayTakeTest, AProcessListThatMakesNoSenseMeansNoProcess) {
  const std::string path = Make("tool");
  for (const char* text : {"", "4711", "4711 (x)", "4711 (x) S", "4711 (x) S 1 2 3",
                           "4711 (x) S 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 x"}) {
    Run("4711", Make("other"));
    Write(proc_ + "/4711/stat", text);
    ExpectTaken(Of(kProcesses, path + ":4711"), path);
  }
}

// Programs that listen and connect.

TEST_F(MayTakeTest, AProgramThatListensMustBeThatVeryFile) {
  const std::string path = Make("server"), other = Make("other");
  Table(Socket("00000000:1F90", "00000000:0000", "0A", "777") +
        Socket("00000000:1F91", "00000000:0000", "0A", "778"));
  Run("60", other);
  Listen("60", "777");
  Run("61", path);
  Listen("61", "778");
  ExpectTaken(Of(kPorts, "8081:" + path), path);
  ExpectKept(Of(kPorts, "8080:" + path), path, "The program of this event is not the file \"server\".");
  // Both hold the same port: it is one of them.
  std::filesystem::create_symlink("socket:[777]", proc_ + "/61/fd/8");
  ExpectTaken(Of(kPorts, "8080:" + path), path);
}

// Whoever runs in a container under the name of a program that holds a connection to the same address, or the
// same port, made that one disappear.
TEST_F(MayTakeTest, AHolderThatOnlyGoesByTheNameIsNotOverlooked) {
  const std::string path = Make("server"), other = Make("other"), gone = Make("server (deleted)");
  Table(Socket("00000000:1F90", "00000000:0000", "0A", "777") +
        Socket("0100007F:1F90", "00000000:0000", "0A", "778"));
  const auto move_away = [&](const std::string& process) {
    std::filesystem::remove(proc_ + "/" + process + "/ns/mnt");
    Write(proc_ + "/" + process + "/ns/mnt", "another");
  };
  for (const char* process : {"60", "61"}) {
    const std::string its_socket = process == std::string("60") ? "777" : "778";
    Run(process, path);
    Listen(process, its_socket);
  }
  ExpectTaken(Of(kPorts, "8080:" + path), path);
  for (const char* process : {"60", "61"}) {
    move_away(process);
    ExpectKept(Of(kPorts, "8080:" + path), path, "runs in a container of its own and is not \"server\".");
    Run(process, gone);
    ExpectKept(Of(kPorts, "8080:" + path), path, "The program of this event is not the file \"server\".");
    // One of another name is not the program that the event names.
    Run(process, other);
    ExpectTaken(Of(kPorts, "8080:" + path), path);
    move_away(process);
    ExpectTaken(Of(kPorts, "8080:" + path), path);
    Run(process, path);
  }
}

TEST_F(MayTakeTest, ASecondSocketWhoseHolderIsOutOfSightProvesNothing) {
  const std::string path = Make("server");
  Table(Socket("00000000:1F90", "00000000:0000", "0A", "777") +
        Socket("0100007F:1F90", "00000000:0000", "0A", "778"));
  Run("60", path);
  Listen("60", "777");
  ExpectKept(Of(kPorts, "8080:" + path), path, "It cannot be told whether the program of this event is");
  std::filesystem::create_symlink("socket:[778]", proc_ + "/60/fd/8");
  ExpectTaken(Of(kPorts, "8080:" + path), path);
}

TEST_F(MayTakeTest, APortThatSomebodyHoldsWhoMayNotBeLookedAtProvesNothing) {
  const std::string path = Make("server");
  Table(Socket("00000000000000000000000000000000:1F90", "00000000000000000000000000000000:0000", "0A", "777"),
        "tcp6");
  ExpectKept(Of(kPorts, "8080:" + path), path, "It cannot be told whether the program of this event is");
}

// A service in a network of its own finds nothing in its own tables.
TEST_F(MayTakeTest, PortsAreThoseOfTheFirstProcessesNetwork) {
  const std::string path = Make("server");
  std::filesystem::create_directory(proc_ + "/1/net");
  Write(proc_ + "/1/net/tcp", "  sl\n" + Socket("00000000:1F90", "00000000:0000", "0A", "777") +
                                  Socket("0100007F:A000", "0700000A:01BB", "01", "778"));
  Write(proc_ + "/1/net/tcp6", "  sl\n");
  Run("60", Make("other"));
  Listen("60", "777");
  std::filesystem::create_symlink("socket:[778]", proc_ + "/60/fd/8");
  ExpectKept(Of(kPorts, "8080:" + path), path, "is not the file \"server\"");
  ExpectKept(Of(kConnections, "10.0.0.7:443:" + path), path, "is not the file \"server\"");
  ExpectTaken(Of(kPorts, "8081:" + path), path);
  // Its own, where the first one's are out of sight.
  std::filesystem::remove_all(proc_ + "/1/net");
  ExpectTaken(Of(kPorts, "8080:" + path), path);
}

TEST_F(MayTakeTest, APortInATableThatCannotBeReadIsNotHeldByNobody) {
  const std::string path = Make("server");
  for (const char* description : {"8080:", "10.0.0.7:443:"}) {
    const Event event = Of(*description == '8' ? kPorts : kConnections, description + path);
    // No IPv6 on this computer.
    std::filesystem::remove(proc_ + "/net/tcp6");
    ExpectTaken(event, path);
    std::filesystem::create_directory(proc_ + "/net/tcp6");
    ExpectKept(event, path, "It cannot be told whether the program of this event is");
    std::filesystem::remove(proc_ + "/net/tcp6");
    std::filesystem::rename(proc_ + "/net/tcp", proc_ + "/net/elsewhere");
    ExpectKept(event, path, "It cannot be told whether the program of this event is");
    std::filesystem::rename(proc_ + "/net/elsewhere", proc_ + "/net/tcp");
  }
}

TEST_F(MayTakeTest, WhenNobodyListensAnyMoreTheFileMustBeUnchanged) {
  const std::string path = Make("server");
  // A connection from that port, and a socket that is nobody's any more, are no listeners.
  Table(Socket("00000000:1F90", "0100007F:0050", "01", "777") +
        Socket("00000000:1F90", "00000000:0000", "0A", "0") + "nonsense\n");
  Event event = Of(kPorts, "8080:" + path);
  ExpectTaken(event, path);
  event.moment = kBoot;
  ExpectKept(event, path, "\"server\" was changed after this event.");
  event.description = "word:" + path;
  event.moment = time(nullptr) + kAnHour;
  ExpectTaken(event, path);
}

// The number of the port is what the listeners are looked up by: without one, any of them would be meant.
TEST_F(MayTakeTest, APortThatIsNoNumberIsHeldByNobody) {
  const std::string path = Make("server");
  Table(Socket("00000000:1F90", "00000000:0000", "0A", "777"));
  Run("60", Make("other"));
  Listen("60", "777");
  ExpectKept(Of(kPorts, "8080:" + path), path, "is not the file \"server\"");
  for (const char* port : {"word", "8080x", ""}) ExpectTaken(Of(kPorts, port + (":" + path)), path);
}

TEST_F(MayTakeTest, AConnectionIsLookedUpByAddressAndPort) {
  const std::string path = Make("client"), other = Make("other");
  Run("60", other);
  Listen("60", "777");
  const auto expect_another = [&](const std::string& subject) {
    ExpectKept(Of(kConnections, subject + ":" + path), path, "is not the file \"client\"");
  };
  const auto expect_none = [&](const std::string& subject) {
    ExpectTaken(Of(kConnections, subject + ":" + path), path);
  };
  Table(Socket("0100007F:A000", "0700000A:01BB", "01", "777"));
  expect_another("10.0.0.7:443");
  expect_another("10.0.0.7:40960");
  expect_none("10.0.0.8:443");
  expect_none("10.0.0.7:444");
  Table(Socket("0100007F:A000", "0700000A:01BB", "0A", "777"));
  expect_none("10.0.0.7:443");
  Table("");
  Table(Socket("00000000000000000000000001000000:A000", "B80D0120000000000000000001000000:01BB", "01", "777"),
        "tcp6");
  expect_another("2001-db8--1:443");
  expect_none("2001-db8--2:443");
  Table(Socket("00000000000000000000000001000000:A000", "0000000000000000FFFF00000700000A:01BB", "01", "777"),
        "tcp6");
  expect_another("10.0.0.7:443");
  Table(Socket("00:A000", "00:01BB", "01", "777"), "tcp6");
  expect_none("10.0.0.7:443");
}

TEST_F(MayTakeTest, AnAddressThatOnlyResemblesAMappedOneIsReadAsItIs) {
  const std::string path = Make("client");
  Run("60", Make("other"));
  Listen("60", "777");
  const std::vector<std::pair<std::string, std::string>> addresses = {
      {"00000000000000000000000001000000", "--1"},
      {"0000000000000000000000000700000A", "--10.0.0.7"},
      {"0000000001000000FFFF00000700000A", "--1-0-ffff-a00-7"},
      {"B80D012000000000FFFF00000700000A", "2001-db8--ffff-a00-7"}};
  for (const auto& [told, written] : addresses) {
    Table(Socket("00000000000000000000000001000000:A000", told + ":01BB", "01", "777"), "tcp6");
    ExpectKept(Of(kConnections, written + ":443:" + path), path, "is not the file \"client\"");
    ExpectTaken(Of(kConnections, "10.0.0.7:443:" + path), path);
  }
}

// What the page shows.

TEST_F(MayTakeTest, AnEventThatThePageDoesNotShowIsNotActedOn) {
  const std::string path = Make("tool");
  Event event = Of(kFolderMonitor, path);
  event.shown = false;
  ExpectKept(event, path, "The page of this alert does not show this event.");
}

TEST_F(MayTakeTest, AnEventThatThePageShowsUnderAnotherNameIsNotActedOn) {
  const std::string path = Make("precious\\harmless.exe");
  ExpectKept(Of(kProcesses, path + ":4711"), path,
             "The page of this alert shows another name for this event.");
  ExpectKept(Of(kPorts, "80:" + path), path, "The page of this alert shows another name for this event.");
}

TEST_F(MayTakeTest, AProgramWithANumberThatIsAlsoAFileIsRefused) {
  const std::string path = Make("tool"), decoy = Make("tool:4711");
  Run("4711", path);
  ExpectKept(Of(kProcesses, path + ":4711"), path, "This event may mean \"tool\" or \"tool:4711\".");
  ExpectTaken(Of(kFolderMonitor, decoy), decoy);
}

// As root.

TEST_F(MayTakeTest, AsRootTheSystemsFoldersStay) {
  const std::string path = system_ + "/bin/tool";
  Write(path, "", 0755);
  ClickAs(0);
  ExpectKept(Of(kFolderMonitor, path), path,
             "lies in a folder of the system, which Zendrix leaves alone when it runs as root.");
  outside_.system_exceptions = {system_ + "/bin"};
  if (geteuid() == 0) {
    ExpectTaken(Of(kFolderMonitor, path), path);
  } else {
    ExpectKept(Of(kFolderMonitor, path), path, "belongs to somebody else");
  }
  // For anybody else these are folders like others.
  outside_.system_exceptions = {};
  as_somebody_ = false;
  if (geteuid() != 0) {
    ExpectTaken(Of(kFolderMonitor, path), path);
  }
}

TEST_F(MayTakeTest, AsRootAnAutostartEntryGoesThatNoPackageHas) {
  const std::string path = system_ + "/xdg/x.desktop";
  Write(path, "altered");
  outside_.autostart_places = {system_ + "/xdg"};
  ClickAs(0);
  if (geteuid() == 0) {
    ExpectTaken(Of(kAutorun, path + "=x"), path);
  } else {
    ExpectKept(Of(kAutorun, path + "=x"), path, "belongs to somebody else");
  }
  Write(records_ + "/info/a.md5sums", std::string(kEmptySum) + "  " + path.substr(1) + "\n");
  EXPECT_FALSE(PutAway(Of(kAutorun, path + "=x")).done) << "a package's, though its contents differ";
  EXPECT_TRUE(LookAt(path).there);
}

TEST_F(MayTakeTest, TheRealComputersRulesAreThose) {
  const Outside real = ThisComputer();
  EXPECT_EQ(real.user, geteuid());
  for (const char* folder : {"/usr", "/boot", "/bin", "/sbin", "/lib", "/var/lib", "/etc"})
    EXPECT_EQ(std::count(real.system_places.begin(), real.system_places.end(), folder), 1) << folder;
  EXPECT_EQ(real.system_exceptions, std::vector<std::string>{"/usr/local"});
  EXPECT_EQ(std::count(real.autostart_places.begin(), real.autostart_places.end(), "/etc/xdg/autostart"), 1);
  EXPECT_EQ(real.most_time, std::chrono::seconds(2));
  EXPECT_EQ(real.most_copied, 268435456U);
  EXPECT_EQ(real.proc, "/proc");
  EXPECT_EQ(real.package_records, "/var/lib/dpkg");
  EXPECT_EQ(std::count(real.memory_file_systems.begin(), real.memory_file_systems.end(), 0x01021994U), 1);
  EXPECT_EQ(std::count(real.memory_file_systems.begin(), real.memory_file_systems.end(), 0x858458f6U), 1);
}

// What a program was started with is no proof of whose it is: the home is that of the account.
TEST(OutsideTest, AutostartPlacesAreBelowTheHomeOfTheAccount) {
  const std::string said = test::InChild([]() -> std::string {
    setenv("HOME", "/elsewhere", 1);
    unsetenv("XDG_CONFIG_HOME");
    std::string homes;
    for (const auto& place : ThisComputer().autostart_places)
      if (place.find("/.config/") != std::string::npos) homes += place + "\n";
    return homes;
  });
  const passwd* const account = getpwuid(geteuid());
  const std::string home = account ? account->pw_dir : "";
  EXPECT_EQ(said, home.size() > 1 ? home + "/.config/autostart\n" + home + "/.config/systemd/user\n" : "");
}

TEST(OutsideTest, AUserWithoutAnAccountHasNoAutostartPlacesOfHisOwn) {
  if (geteuid() != 0) GTEST_SKIP() << "only the superuser can become a user without an account";
  uid_t user = 59'000;  // where only some thousands are to be had, this is one of them
  while (getpwuid(user)) --user;
  const std::string said = test::InChild([&]() -> std::string {
    if (setgid(user) != 0 || setuid(user) != 0) return "could not give up its rights";
    unsetenv("XDG_CONFIG_HOME");
    const auto places = ThisComputer().autostart_places;
    return std::to_string(std::count_if(places.begin(), places.end(), [](const std::string& place) {
      return place.find("/.config/") != std::string::npos;
    }));
  });
  EXPECT_EQ(said, "0");
}

// 1,960 of the 2,705 files of the host's essential packages would have gone when the console runs as root.
TEST_F(MayTakeTest, OfTheRealComputersProgramsNoneWouldGo) {
  outside_ = ThisComputer();
  quarantine_.Configure(program_, true);
  int asked = 0;
  for (const char* folder : {"/usr/bin", "/usr/sbin", "/etc", "/boot"}) {
    for (const auto& name : NamesOf(folder)) {
      const std::string path = std::string(folder) + "/" + name;
      if (LookAt(path).mode == 0 || !std::filesystem::is_regular_file(path)) continue;
      EXPECT_FALSE(PutAway(Of(kFolderMonitor, path)).done) << path;
      if (++asked % 40 == 0) break;
    }
  }
  EXPECT_GT(asked, 40);
}

}  // namespace
}  // namespace zendrix::family
