// What may not be taken: the system's own files, other people's; what a user without rights can do; full and
// read-only disks; and the mode that only pretends.
#include "unit/quarantine/quarantine_fixture.h"

namespace zendrix::family {
namespace {

TEST_F(QuarantineTest, OtherPeoplesFilesAreNotTaken) {
  GiveToNobody();
  // In a folder that everybody may write to, without the bit that would keep it in place.
  chmod(files_.c_str(), 0777);
  const std::string path = Make("tool", kContents, 0666);
  const Look before = LookAt(path);
  const std::string said = test::AsNobody([&]() -> std::string {
    std::string all;
    if (geteuid() != LookAt(path).owner) all = PutAway(path).text + "\n";
    return all + PutAway("/usr/share/common-licenses/GPL-3").text;
  });
  EXPECT_NE(said.find("GPL-3\" belongs to somebody else."), std::string::npos) << said;
  if (geteuid() == 0) {
    EXPECT_NE(said.find("\"tool\" belongs to somebody else."), std::string::npos) << said;
  }
  EXPECT_EQ(LookAt(path), before);
}

TEST_F(QuarantineTest, AUserPutsHisOwnFilesAwayAndBack) {
  GiveToNobody();
  const std::string said = test::AsNobody([&]() -> std::string {
    const std::string path = Make("tool", kContents, 0500);
    const Look before = LookAt(path);
    const Outcome away = PutAway(path);
    if (!away.done || LookAt(path).there || LookAt(TheEntry()).mode != S_IFREG) return "away: " + away.text;
    const Outcome back = PutBack(path);
    return back.done && LookAt(path) == before ? "" : "back: " + back.text;
  });
  EXPECT_EQ(said, "");
}

TEST_F(QuarantineTest, AnUnreadableFileIsRefused) {
  GiveToNobody();
  const std::string said = test::AsNobody([&] { return PutAway(Make("tool", kContents, 0111)).text; });
  EXPECT_EQ(said, "You may not read \"tool\". Nothing was changed.");
  EXPECT_TRUE(LookAt(Path("tool")).there);
}

TEST_F(QuarantineTest, AFolderThatMayNotBeChangedKeepsItsFile) {
  GiveToNobody();
  const std::string said = test::AsNobody([&]() -> std::string {
    const std::string path = Make("tool");
    chmod(files_.c_str(), 0555);
    std::string all = PutAway(path).text;
    chmod(files_.c_str(), 0755);
    if (!PutAway(path).done) return "not put away";
    chmod(files_.c_str(), 0555);
    all += "|" + PutBack(path).text;
    const bool kept = Stored().size() == 2;
    chmod(files_.c_str(), 0755);
    return kept && PutBack(path).done ? all : "lost";
  });
  EXPECT_EQ(said,
            "You may not change the folder of \"tool\". Nothing was changed.|"
            "You may not change the folder of \"tool\", so it stays in quarantine.");
}

TEST_F(QuarantineTest, AProgramFolderThatMayNotBeChangedKeepsTheFileInItsPlace) {
  GiveToNobody();
  const std::string said = test::AsNobody([&] {
    chmod(program_.c_str(), 0555);
    return PutAway(Make("tool")).text;
  });
  EXPECT_EQ(said, "You may not change the folder of Zendrix, where the quarantine is. Nothing was changed.");
  EXPECT_TRUE(LookAt(Path("tool")).there);
  chmod(program_.c_str(), 0755);
}

TEST_F(QuarantineTest, AStoreOfSomebodyElseIsNotUsed) {
  if (geteuid() == 0) {
    std::filesystem::create_directory(store_);
    ASSERT_EQ(chown(store_.c_str(), test::kNobody, test::kNobody), 0);
    ExpectRefused(PutAway(Make("tool")), "The Quarantine folder of Zendrix cannot be used.");
  } else {
    // A user cannot make a folder of somebody else, but he can be given one that is a file.
    std::ofstream(store_) << "x";
    ExpectRefused(PutAway(Make("tool")), "The Quarantine folder of Zendrix cannot be used.");
  }
  EXPECT_TRUE(LookAt(Path("tool")).there);
}

class FullDisk : public QuarantineTest {
 protected:
  FullDisk() : QuarantineTest(true), contents_(100000, 'f') {}
  const std::string contents_;
};

constexpr char kNoRoom[] = "There is not enough room on the disk. Nothing was changed.";

TEST_F(FullDisk, AFullStoreLeavesTheFileInItsPlace) {
  const std::string path = Make("tool", contents_);
  const Look before = LookAt(path);
  for (const std::size_t room : {std::size_t{0}, std::size_t{32768}}) {
    const std::string said = test::InChild([&]() -> std::string {
      const test::SmallDisk disk(program_);
      disk.Fill(room);
      const Outcome away = PutAway(path);
      if (away.done || away.text != kNoRoom) return "full: " + away.text;
      if (!(LookAt(path) == before)) return "the file changed";
      if (!Stored().empty()) return "left behind: " + testing::PrintToString(Stored());
      disk.Free();
      const Outcome now = PutAway(path);
      if (!now.done) return "free again: " + now.text;
      const Outcome back = PutBack(path);
      return back.done && LookAt(path) == before ? "" : "back: " + back.text;
    });
    EXPECT_EQ(said, "") << "room for " << room;
  }
}

TEST_F(FullDisk, AFullFolderLeavesTheFileInQuarantine) {
  const std::string said = test::InChild([&]() -> std::string {
    const test::SmallDisk disk(files_);
    const std::string path = Make("tool", contents_);
    const Look before = LookAt(path);
    const Outcome away = PutAway(path);
    if (!away.done) return "away: " + away.text;
    disk.Fill(32768);
    const Outcome full = PutBack(path);
    if (full.done || full.text != kNoRoom) return "full: " + full.text;
    if (Stored().size() != 2) return "left behind: " + testing::PrintToString(Stored());
    if (LookAt(path).there || NamesOf(files_).size() > 1) return "half a file is visible";
    disk.Free();
    const Outcome back = PutBack(path);
    return back.done && LookAt(path) == before ? "" : "back: " + back.text;
  });
  EXPECT_EQ(said, "");
}

class Pretending : public BothWays {
 protected:
  void Pretend(bool pretend) { quarantine_.Configure(program_, pretend); }

  // Everything there is, with all its properties and the time when anything about it changed last. That the
  // list of processes was read says nothing: the real one keeps no time of it.
  std::string Everything() const {
    std::string text;
    for (const auto& root : {home_.path(), there_.path()})
      for (const auto& entry : std::filesystem::recursive_directory_iterator(root)) {
        struct stat status = {};
        lstat(entry.path().c_str(), &status);
        const bool keeps_access = S_ISREG(status.st_mode) && !entry.path().string().starts_with(proc_ + "/");
        text += entry.path().string() + " " + std::to_string(status.st_mode) + " " +
                std::to_string(status.st_ctim.tv_sec) + "." + std::to_string(status.st_ctim.tv_nsec) + " " +
                (keeps_access ? std::to_string(status.st_atim.tv_nsec) : "") + "\n";
      }
    return text;
  }
};

TEST_P(Pretending, BlockSaysWhatItWouldSayAndChangesNothing) {
  const std::string path = Make("tool");
  const std::string before = Everything();
  Pretend(true);
  const Outcome pretended = PutAway(path);
  EXPECT_EQ(Everything(), before);
  EXPECT_FALSE(LookAt(store_).there);
  Pretend(false);
  const Outcome real = PutAway(path);
  EXPECT_TRUE(pretended.done);
  EXPECT_EQ(pretended.text, real.text);
}

TEST_P(Pretending, AllowSaysWhatItWouldSayAndChangesNothing) {
  const std::string path = Make("tool");
  Pretend(true);
  ExpectRefused(PutBack(path), "Nothing that this event names is in quarantine.");
  EXPECT_FALSE(LookAt(store_).there);
  Pretend(false);
  ASSERT_TRUE(PutAway(path).done);
  const std::string before = Everything();
  Pretend(true);
  const Outcome pretended = PutBack(path);
  EXPECT_EQ(Everything(), before);
  Pretend(false);
  const Outcome real = PutBack(path);
  EXPECT_TRUE(pretended.done) << pretended.text;
  EXPECT_EQ(pretended.text, real.text);
}

TEST_P(Pretending, RefusalsAreTheSameAndNothingIsSwept) {
  const std::string path = Make("tool");
  ASSERT_TRUE(PutAway(path).done);
  Make("tool", "another");
  std::ofstream(TheEntry() + ".part") << "left over";
  chmod(store_.c_str(), 0750);
  const std::string before = Everything();
  Pretend(true);
  ExpectRefused(PutBack(path), "There is another file named \"tool\"");
  ExpectRefused(PutAway(files_), "is a folder");
  EXPECT_TRUE(PutAway(path).done);
  EXPECT_EQ(Everything(), before);
}

TEST_P(Pretending, TheFullCheckIsMadeByWhoMayReadTheFile) {
  if (geteuid() != 0) {
    // A user cannot look into a file without permissions and leave it so; its length is checked all the same.
    ASSERT_TRUE(PutAway(Make("tool")).done);
    chmod(TheEntry().c_str(), 0600);
    std::ofstream(TheEntry(), std::ios::app) << "more";
  } else {
    ASSERT_TRUE(PutAway(Make("tool")).done);
    std::fstream(TheEntry(), std::ios::in | std::ios::out).write("#!/bin/SH", 9);
  }
  Pretend(true);
  ExpectRefused(PutBack(Path("tool")), "\"tool\" is damaged");
}

INSTANTIATE_TEST_SUITE_P(Quarantine, Pretending, testing::Bool(), WayName);

}  // namespace
}  // namespace zendrix::family
