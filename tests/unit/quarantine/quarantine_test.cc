// Put away and put back, and everything that is refused.
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/sysmacros.h>
#include <sys/un.h>

#include "unit/quarantine/quarantine_fixture.h"

namespace zendrix::family {
namespace {

TEST_P(BothWays, PutBackGivesOwnerModeTimesAndContentsBack) {
  const std::string path = Make("tool", kContents, 0751);
  if (geteuid() == 0) {
    ASSERT_EQ(chown(path.c_str(), test::kNobody, 7), 0);
    ClickAs(test::kNobody);
  }
  const Look before = LookAt(path);
  const Outcome away = PutAway(path);
  ASSERT_TRUE(away.done) << away.text;
  EXPECT_EQ(LookAt(TheEntry()).owner, geteuid()) << "an entry is the store's own";
  EXPECT_EQ(away.text,
            "\"tool\" was moved to quarantine and can no longer be started. Allow brings it back.");
  EXPECT_FALSE(LookAt(path).there);
  EXPECT_EQ(NamesOf(files_), std::vector<std::string>());
  const Outcome back = PutBack(path);
  ASSERT_TRUE(back.done) << back.text;
  EXPECT_EQ(back.text, "\"tool\" was put back in its place.");
  EXPECT_EQ(LookAt(path), before);
  EXPECT_EQ(Stored(), std::vector<std::string>());
}

TEST_P(BothWays, SetUserIdAndSetGroupIdBitsComeBack) {
  const std::string path = Make("tool", kContents, 06755);
  const Look before = LookAt(path);
  ASSERT_EQ(before.mode & 07777U, 06755U);
  ASSERT_TRUE(PutAway(path).done);
  ASSERT_TRUE(PutBack(path).done);
  EXPECT_EQ(LookAt(path), before);
}

TEST_P(BothWays, AnEmptyFileAndALargeOneComeBack) {
  for (const std::size_t size : {0U, 1U, 65536U, 3000001U}) {
    const std::string path = Make("tool", std::string(size, 'q'));
    const Look before = LookAt(path);
    ASSERT_TRUE(PutAway(path).done);
    ASSERT_TRUE(PutBack(path).done);
    EXPECT_EQ(LookAt(path), before);
  }
}

TEST_P(BothWays, AFileInQuarantineHasARandomNameAndNoPermissions) {
  ASSERT_TRUE(PutAway(Make("tool")).done);
  const std::string entry = TheEntry();
  EXPECT_EQ(Stored()[1], Stored()[0] + ".manifest");
  EXPECT_EQ(Stored()[0].size(), 32U);
  EXPECT_EQ(LookAt(entry).mode, static_cast<mode_t>(S_IFREG));
  EXPECT_EQ(LookAt(store_).mode & 07777U, 0700U);
  EXPECT_EQ(LookAt(entry + ".manifest").mode & 07777U, 0600U);
}

TEST_P(BothWays, PutBackRefusesToOverwrite) {
  const std::string path = Make("tool");
  ASSERT_TRUE(PutAway(path).done);
  Make("tool", "somebody's new file", 0644);
  const Look newer = LookAt(path);
  ExpectRefused(PutBack(path), "There is another file named \"tool\"");
  EXPECT_EQ(LookAt(path), newer);
  EXPECT_EQ(LookAt(TheEntry()).mode, static_cast<mode_t>(S_IFREG));
  unlink(path.c_str());
  EXPECT_TRUE(PutBack(path).done);
}

TEST_P(BothWays, TheSameNamePutAwayTwiceComesBackNewestFirst) {
  const std::string path = Make("tool", "first");
  ASSERT_TRUE(PutAway(path).done);
  Make("tool", "second");
  ASSERT_TRUE(PutAway(path).done);
  ASSERT_TRUE(PutBack(path).done);
  EXPECT_EQ(LookAt(path).contents, "second");
  unlink(path.c_str());
  ASSERT_TRUE(PutBack(path).done);
  EXPECT_EQ(LookAt(path).contents, "first");
}

TEST_P(BothWays, EveryFormOfDescriptionNamesTheFile) {
  const std::string path = Make("tool");
  for (const std::string& description :
       {path, path + ":4711", "443:" + path, "10.0.0.1:443:" + path, "2001-db8--1:443:" + path})
    ExpectGoesAndComesBack(path, Named(description));
}

TEST_P(BothWays, NamesOfAnyBytesComeBack) {
  for (const std::string& name :
       {std::string("new\nline"), std::string("quo\"te's"), std::string("tab\tulator"),
        std::string("per%cent%41"), std::string("\xff\xfe\x80 not utf-8"), std::string("bl ank "),
        std::string("-rf"), std::string("a:b:c"), std::string("a=b"), std::string("\x7f\x01"),
        std::string(255, 'n'), std::string(".hidden"), std::string("*")}) {
    const std::string path = Make(name);
    Event event = Named(path);
    event.monitor = "Windows Folder";
    const std::string told = ExpectGoesAndComesBack(path, event);
    EXPECT_EQ(told.find_first_of("\n\t\x01\x7f"), std::string::npos) << told;
    unlink(path.c_str());
  }
}

INSTANTIATE_TEST_SUITE_P(Quarantine, BothWays, testing::Bool(), WayName);

TEST_F(QuarantineTest, AWindows1252DescriptionNamesAUtf8File) {
  const std::string path = Make("caf\xc3\xa9 \xe2\x82\xac");
  const Outcome away = PutAway(Path("caf\xe9 \x80"));
  ASSERT_TRUE(away.done) << away.text;
  EXPECT_TRUE(away.text.starts_with("\"caf\xe9 \x80\" was moved")) << away.text;
  EXPECT_TRUE(PutBack(Path("caf\xe9 \x80")).done);
  EXPECT_TRUE(LookAt(path).there);
}

TEST_F(QuarantineTest, ANameCannotPutWordsIntoTheMessage) {
  const Outcome away = PutAway(Make("a\" is harmless. \"b"));
  EXPECT_TRUE(away.text.starts_with("\"a' is harmless. 'b\" was moved")) << away.text;
}

TEST_F(QuarantineTest, DescriptionsThatNameNoFileAreRefused) {
  for (const std::string& description :
       {std::string(""), std::string("CPU 97.25"), std::string("relative/path"), std::string("/"),
        std::string("//"), Path("missing"), Path("missing") + ":12", Make("tool") + "/", Path("tool/inside"),
        Path("../files/tool"), Path("./tool"), std::string("=") + "tool", std::string("443:"),
        std::string("443"), std::string(":"), std::string("/") + std::string(100000, 'x'),
        Path(std::string(256, 'n')), std::string("/a\0b", 4)}) {
    ExpectRefused(PutAway(description), "names no file on this computer");
    EXPECT_FALSE(PutBack(description).done);
  }
  EXPECT_TRUE(LookAt(Path("tool")).there);
  EXPECT_FALSE(LookAt(store_).there) << "a refusal made the folder";
}

TEST_F(QuarantineTest, ADescriptionThatMayMeanTwoFilesIsRefused) {
  const Look tool = LookAt(Make("tool")), decoy = LookAt(Make("tool:4711", "decoy"));
  ExpectRefused(PutAway(Path("tool:4711")), "This event may mean \"tool\" or \"tool:4711\".");
  EXPECT_EQ(LookAt(Path("tool")), tool);
  EXPECT_EQ(LookAt(Path("tool:4711")), decoy);
}

TEST_F(QuarantineTest, SlashesTooManyMakeNoOtherPath) {
  Make("tool");
  EXPECT_TRUE(PutAway("//" + files_ + "///tool").done);
  EXPECT_TRUE(PutBack(Path("tool")).done);
}

TEST_F(QuarantineTest, SymbolicLinksAreRefusedAtTheEndAndOnTheWay) {
  const std::string path = Make("tool");
  const Look before = LookAt(path);
  std::filesystem::create_symlink(path, Path("link"));
  std::filesystem::create_symlink(files_, home_.path() + "/way");
  std::filesystem::create_symlink("missing", Path("dangling"));
  ExpectRefused(PutAway(Path("link")), "\"link\" is only a symbolic link");
  ExpectRefused(PutAway(Path("dangling")), "\"dangling\" is only a symbolic link");
  ExpectRefused(PutAway(home_.path() + "/way/tool"), "A symbolic link leads to \"");
  EXPECT_EQ(LookAt(path), before);
}

TEST_F(QuarantineTest, HardLinksAreRefused) {
  const std::string path = Make("tool");
  std::filesystem::create_hard_link(path, Path("twin"));
  ExpectRefused(PutAway(path), "\"tool\" stands in more than one place on the disk.");
  EXPECT_TRUE(LookAt(path).there);
}

TEST_F(QuarantineTest, FoldersAreRefused) {
  std::filesystem::create_directory(Path("folder"));
  ExpectRefused(PutAway(Path("folder")), "\"folder\" is a folder.");
  ExpectRefused(PutAway(files_), "is a folder.");
}

TEST_F(QuarantineTest, PipesSocketsAndDevicesAreRefusedWithoutWaiting) {
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0644), 0);
  const int socket_file = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_un address = {};
  address.sun_family = AF_UNIX;
  Path("socket").copy(address.sun_path, sizeof address.sun_path - 1);
  ASSERT_EQ(bind(socket_file, reinterpret_cast<const sockaddr*>(&address), sizeof address), 0);
  for (const std::string& path : {Path("pipe"), Path("socket"), std::string("/dev/null")}) {
    ExpectRefused(PutAway(path), "is no ordinary file.");
    EXPECT_TRUE(LookAt(path).there);
  }
  close(socket_file);
}

TEST_F(QuarantineTest, AFileThatClaimsToBeHugeIsRefusedAtOnce) {
  const std::string path = Make("tool");
  ASSERT_EQ(truncate(path.c_str(), (off_t{4} << 30) + 1), 0);
  ExpectRefused(PutAway(path), "larger than 4 GB");
}

TEST_F(QuarantineTest, ATamperedFileIsNotPutBack) {
  const std::string path = Make("tool");
  ASSERT_TRUE(PutAway(path).done);
  const std::string entry = TheEntry();
  chmod(entry.c_str(), 0600);
  std::fstream(entry, std::ios::in | std::ios::out).write("#!/bin/SH", 9);
  ExpectRefused(PutBack(path), "\"tool\" is damaged, so it stays in quarantine.");
  EXPECT_FALSE(LookAt(path).there);
  EXPECT_EQ(LookAt(entry).mode, static_cast<mode_t>(S_IFREG)) << "permissions that were given stay";
}

TEST_F(QuarantineTest, ALongerShorterOrExchangedFileIsNotPutBack) {
  const std::string path = Make("tool");
  ASSERT_TRUE(PutAway(path).done);
  const std::string entry = TheEntry();
  const std::string precious = Make("precious");
  const Look before = LookAt(precious);
  for (const int damage : {0, 1, 2, 3, 4}) {
    unlink(entry.c_str());
    if (damage == 0) std::ofstream(entry) << kContents << "more";
    if (damage == 1) std::ofstream(entry) << "less";
    if (damage == 2) std::filesystem::create_symlink(precious, entry);
    if (damage == 3) mkfifo(entry.c_str(), 0600);
    if (damage == 4) std::filesystem::create_directory(entry);
    ExpectRefused(PutBack(path), "\"tool\" is damaged");
    EXPECT_FALSE(LookAt(path).there);
    EXPECT_EQ(LookAt(precious), before) << damage;
  }
}

TEST_F(QuarantineTest, AnEntryWithASecondNameIsNotPutBack) {
  const std::string path = Make("tool");
  ASSERT_TRUE(PutAway(path).done);
  std::filesystem::create_hard_link(TheEntry(), home_.path() + "/twin");
  ExpectRefused(PutBack(path), "\"tool\" is damaged");
}

TEST_F(QuarantineTest, ATamperedOrDamagedManifestIsPassedOver) {
  const std::string path = Make("tool");
  ASSERT_TRUE(PutAway(path).done);
  const std::string entry = TheEntry(), manifest = entry + ".manifest";
  const std::string good = LookAt(manifest).contents;
  std::string elsewhere = good;
  elsewhere.replace(elsewhere.find("/tool\t"), 6, "/else\t");
  std::string setuid = good;
  setuid.replace(setuid.find("\t755\t"), 5, "\t4755\t");
  for (const std::string& bytes : {elsewhere, setuid, good.substr(0, good.size() - 1), good + good,
                                   std::string(), std::string("\n"), std::string(100000, 'x')}) {
    std::ofstream(manifest, std::ios::trunc) << bytes;
    ExpectRefused(PutBack(path), "Nothing that this event names is in quarantine.");
    ExpectRefused(PutBack(Path("else")), "Nothing that this event names is in quarantine.");
    EXPECT_EQ(NamesOf(files_), std::vector<std::string>());
    EXPECT_EQ(LookAt(manifest).contents, bytes) << "what cannot be read is kept for a human";
  }
  std::ofstream(manifest, std::ios::trunc) << good;
  EXPECT_TRUE(PutBack(path).done);
}

TEST_F(QuarantineTest, OtherFilesInTheStoreStayAsTheyAre) {
  ASSERT_TRUE(PutAway(Make("first")).done);
  for (const char* name : {"readme.part", "notes.manifest", "x", "0123.in"})
    std::ofstream(store_ + "/" + name) << name;
  ASSERT_TRUE(PutAway(Make("second")).done);
  for (const std::string name : {"readme.part", "notes.manifest", "x", "0123.in"})
    EXPECT_EQ(LookAt(store_ + "/" + name).contents, name);
}

// A name is the store's own by its 32 digits and its ending, both.
TEST_F(QuarantineTest, FilesThatAreOnlyNamedLikeAnEntrysStayAsTheyAre) {
  ASSERT_TRUE(PutAway(Make("first")).done);
  const std::string letters(32, 'z'), digits(32, '7');
  for (const std::string& name :
       {letters, letters + ".manifest", digits.substr(1), digits.substr(1) + ".in", digits + ".txt"})
    std::ofstream(store_ + "/" + name) << name;
  ASSERT_TRUE(PutAway(Make("second")).done);
  for (const std::string& name :
       {letters, letters + ".manifest", digits.substr(1), digits.substr(1) + ".in", digits + ".txt"})
    EXPECT_EQ(LookAt(store_ + "/" + name).contents, name);
}

TEST_F(QuarantineTest, WhateverIsLeftOfAnEntryAloneIsSweptAway) {
  ASSERT_TRUE(PutAway(Make("first")).done);
  const auto before = Stored();
  for (const char* ending : {".manifest", ".in", ".out", ".part"}) {
    std::ofstream(store_ + "/" + std::string(32, '7') + ending) << "left over";
    ExpectRefused(PutAway(Path("missing")), "names no file on this computer");
    EXPECT_EQ(Stored(), before) << ending;
  }
}

TEST_F(QuarantineTest, ALinkInTheStoreIsNeverFollowedBySweeping) {
  ASSERT_TRUE(PutAway(Make("tool")).done);
  const std::string entry = TheEntry();
  const std::string precious = Make("precious");
  const Look before = LookAt(precious);
  for (const char* note : {"", ".in", ".out"}) {
    unlink(entry.c_str());
    std::filesystem::create_symlink(precious, entry);
    if (*note != '\0') std::ofstream(entry + note) << "";
    PutAway(Path("missing"));
    EXPECT_EQ(LookAt(precious), before) << note;
  }
}

TEST_F(QuarantineTest, AStoreThatIsALinkIsNotUsed) {
  std::filesystem::create_directory(home_.path() + "/elsewhere");
  std::filesystem::create_symlink(home_.path() + "/elsewhere", store_);
  const std::string path = Make("tool");
  ExpectRefused(PutAway(path), "The Quarantine folder of Zendrix cannot be used.");
  ExpectRefused(PutBack(path), "The Quarantine folder of Zendrix cannot be used.");
  EXPECT_TRUE(LookAt(path).there);
  EXPECT_EQ(NamesOf(home_.path() + "/elsewhere"), std::vector<std::string>());
}

TEST_F(QuarantineTest, AStoreOpenToOthersIsClosed) {
  std::filesystem::create_directory(store_);
  chmod(store_.c_str(), 0777);
  ASSERT_TRUE(PutAway(Make("tool")).done);
  EXPECT_EQ(LookAt(store_).mode & 07777U, 0700U);
}

TEST_F(QuarantineTest, TwoProcessesAtOnceAreKeptApart) {
  const std::string path = Make("tool");
  std::filesystem::create_directory(store_);
  const Descriptor home(open(program_.c_str(), O_PATH | O_DIRECTORY));
  {
    const Descriptor busy = OpenStore(home, false);
    ExpectRefused(PutAway(path), "Zendrix is at work on another file.");
    ExpectRefused(PutBack(path), "Zendrix is at work on another file.");
  }
  EXPECT_TRUE(PutAway(path).done);
}

TEST_F(QuarantineTest, PutBackNeedsTheFolderAndRefusesALinkInItsStead) {
  std::filesystem::create_directory(Path("way"));
  const std::string path = Make("way/tool");
  ASSERT_TRUE(PutAway(path).done);
  std::filesystem::rename(Path("way"), Path("moved"));
  ExpectRefused(PutBack(path), "The folder of \"way/tool\" is gone");
  std::filesystem::create_symlink(Path("moved"), Path("way"));
  ExpectRefused(PutBack(path), "A symbolic link leads to \"way/tool\".");
  EXPECT_EQ(NamesOf(Path("moved")), std::vector<std::string>());
  std::filesystem::remove(Path("way"));
  std::filesystem::rename(Path("moved"), Path("way"));
  EXPECT_TRUE(PutBack(path).done);
}

TEST_F(QuarantineTest, AMissingProgramFolderIsToldPlainly) {
  quarantine_.Configure(home_.path() + "/missing", false);
  ExpectRefused(PutAway(Make("tool")), "The folder of Zendrix cannot be found.");
  quarantine_.Configure("", false);
  ExpectRefused(PutBack(Path("tool")), "The folder of Zendrix cannot be found.");
}

TEST_F(QuarantineTest, NoDescriptorIsLeftOpen) {
  const auto open_files = [] { return NamesOf("/proc/self/fd").size(); };
  const std::string path = Make("tool");
  const auto before = open_files();
  ASSERT_TRUE(PutAway(path).done);
  PutAway(path);
  Make("tool", "other");
  PutBack(path);
  unlink(path.c_str());
  ASSERT_TRUE(PutBack(path).done);
  PutAway(files_);
  PutAway("/dev/null");
  std::filesystem::create_hard_link(path, Path("twin"));
  PutAway(path);
  EXPECT_EQ(open_files(), before);
}

TEST_F(QuarantineTest, EveryOperationOutOfDescriptorsIsRefusedAndChangesNothing) {
  const std::string path = Make("tool");
  const Look before = LookAt(path);
  const std::string said = test::InChild([&]() -> std::string {
    for (rlim_t room = 3; room < 40; ++room) {
      const rlimit limit = {room, 64};
      setrlimit(RLIMIT_NOFILE, &limit);
      const Outcome away = PutAway(path);
      const rlimit ample = {64, 64};
      setrlimit(RLIMIT_NOFILE, &ample);
      if (away.done) return room < 8 ? "done with hardly a descriptor" : "";
      if (away.text.empty() || !(LookAt(path) == before)) return "changed with " + std::to_string(room);
    }
    return "never done";
  });
  EXPECT_EQ(said, "");
  ASSERT_TRUE(PutBack(path).done);
  EXPECT_EQ(LookAt(path), before);
}

}  // namespace
}  // namespace zendrix::family
