// The way back: what is in quarantine is listed and can be restored, and nothing is put where it could not
// come back from, or come back less than it was.
#include <linux/magic.h>
#include <sys/mount.h>
#include <sys/vfs.h>
#include <sys/xattr.h>

#include "family/intermediate/attributes.h"
#include "family/intermediate/run_tool.h"
#include "family/intermediate/sha256.h"
#include "unit/quarantine/quarantine_fixture.h"

namespace zendrix::family {
namespace {

class WayBackTest : public BothWays {
 protected:
  std::vector<Entry> List() {
    quarantine_.SetOutside(outside_);
    return quarantine_.List();
  }
  Outcome Restore(const std::string& name) {
    return Tell([&] { return quarantine_.PutBackEntry(name); });
  }
  Outcome PutAwayFor(const std::string& alert, const std::string& path) {
    Event event = Named(path);
    event.alert = alert;
    return PutAway(event);
  }
  Outcome PutBackFor(const std::string& alert, const std::string& path) {
    Event event = Named(path);
    event.alert = alert;
    return PutBack(event);
  }
};

TEST_P(WayBackTest, TheListTellsEachEntryNewestFirst) {
  EXPECT_TRUE(List().empty());
  EXPECT_FALSE(LookAt(store_).there);
  const std::string first = Make("first", "one"), second = Make("second", "three");
  ASSERT_TRUE(PutAwayFor("1795225500", first).done);
  ASSERT_TRUE(PutAwayFor("1795225501", second).done);
  const auto entries = List();
  ASSERT_EQ(entries.size(), 2U);
  EXPECT_EQ(entries[0].manifest.path, second);
  EXPECT_EQ(entries[1].manifest.path, first);
  EXPECT_EQ(entries[1].manifest.size, 3U);
  EXPECT_EQ(entries[1].manifest.sha256, Sha256Of("one"));
  EXPECT_EQ(entries[1].manifest.owner, geteuid());
  EXPECT_EQ(entries[1].manifest.alert, "1795225500");
  EXPECT_GT(entries[1].manifest.event.value_or(0), kBoot);
}

TEST_P(WayBackTest, EachEntryIsRestoredByItsName) {
  const std::string first = Make("first"), second = Make("second");
  const Look before = LookAt(first);
  ASSERT_TRUE(PutAway(first).done);
  ASSERT_TRUE(PutAway(second).done);
  const auto entries = List();
  ASSERT_EQ(entries.size(), 2U);
  const Outcome outcome = Restore(entries[1].name);
  EXPECT_TRUE(outcome.done) << outcome.text;
  EXPECT_EQ(outcome.text, "\"first\" was put back in its place.");
  EXPECT_EQ(LookAt(first), before);
  EXPECT_FALSE(LookAt(second).there);
  EXPECT_EQ(List().size(), 1U);
}

TEST_P(WayBackTest, NothingElseIsRestoredByAName) {
  ASSERT_TRUE(PutAway(Make("tool")).done);
  const std::string name = List().at(0).name;
  for (const std::string& other :
       {std::string(), name.substr(1), name + ".manifest", std::string("../") + name, std::string(32, '0')})
    ExpectRefused(Restore(other), "There is no such entry in quarantine.");
  Make("tool", "newer");
  ExpectRefused(Restore(name), "There is another file named \"tool\"");
}

TEST_P(WayBackTest, AnEntryOfAnOlderMakeIsListedAndRestored) {
  const std::string path = Make("tool");
  ASSERT_TRUE(PutAway(path).done);
  const std::string manifest = TheEntry() + ".manifest";
  auto old = ManifestOf(LookAt(manifest).contents);
  ASSERT_TRUE(old);
  old->version = 1;
  std::ofstream(manifest, std::ios::trunc) << LineOf(*old);
  const auto entries = List();
  ASSERT_EQ(entries.size(), 1U);
  EXPECT_EQ(entries[0].manifest.alert, "");
  EXPECT_TRUE(Restore(entries[0].name).done);
  EXPECT_TRUE(LookAt(path).there);
}

TEST_P(WayBackTest, AllowBringsBackWhatItsOwnAlertPutAway) {
  const std::string path = Make("tool", "first");
  ASSERT_TRUE(PutAwayFor("1", path).done);
  Make("tool", "second");
  ASSERT_TRUE(PutAwayFor("2", path).done);
  ASSERT_TRUE(PutBackFor("1", path).done);
  EXPECT_EQ(LookAt(path).contents, "first");
  unlink(path.c_str());
  ASSERT_TRUE(PutBackFor("3", path).done) << "of another alert rather than none";
  EXPECT_EQ(LookAt(path).contents, "second");
}

TEST_P(WayBackTest, TextsOfAnAlertAreKeptAtALimitedLength) {
  ASSERT_TRUE(PutAwayFor(std::string(100000, 'x'), Make("tool")).done);
  EXPECT_EQ(List().at(0).manifest.alert, std::string(64, 'x'));
}

// Interrupted on its way in or out; what stands in its place since is somebody's file of the same length.
TEST_P(WayBackTest, AnotherFileOfTheSameLengthIsNotTakenForTheOneThatIsBack) {
  for (const char* note : {".in", ".out"}) {
    const std::string path = Make("tool", "first");
    ASSERT_TRUE(PutAway(path).done);
    std::ofstream(TheEntry() + note).flush();
    Make("tool", "other");
    ExpectRefused(PutBack(path), "There is another file named \"tool\"");
    EXPECT_EQ(Stored().size(), 2U) << note;
    unlink(path.c_str());
    ASSERT_TRUE(PutBack(path).done) << note;
    EXPECT_EQ(LookAt(path).contents, "first");
  }
}

TEST_P(WayBackTest, PretendingListsAndRestoresNothing) {
  const std::string path = Make("tool");
  ASSERT_TRUE(PutAway(path).done);
  quarantine_.Configure(program_, true);
  ASSERT_EQ(List().size(), 1U);
  EXPECT_TRUE(Restore(List().at(0).name).done);
  EXPECT_FALSE(LookAt(path).there);
}

// A store that is gone after a restart would be no way back.
TEST_P(WayBackTest, AStoreThatWouldNotOutliveARestartIsRefused) {
  const std::string path = Make("tool");
  const Look before = LookAt(path);
  struct statfs system = {};
  ASSERT_EQ(statfs(program_.c_str(), &system), 0);
  outside_.memory_file_systems = {1, static_cast<std::uint64_t>(system.f_type)};
  if (system.f_type == OVERLAYFS_SUPER_MAGIC) outside_.memory_file_systems.clear();
  const Outcome outcome = PutAway(path);
  if (system.f_type == OVERLAYFS_SUPER_MAGIC) {
    EXPECT_TRUE(outcome.done) << outcome.text;
    return;
  }
  EXPECT_FALSE(outcome.done);
  EXPECT_EQ(
      outcome.whole,
      "The folder of Zendrix would not outlive a restart, so there is no way back. Nothing was changed.");
  EXPECT_EQ(LookAt(path), before);
  EXPECT_FALSE(LookAt(store_).there);
  // What is there already can still be brought back.
  outside_.memory_file_systems.clear();
  ASSERT_TRUE(PutAway(path).done);
  outside_.memory_file_systems = {static_cast<std::uint64_t>(system.f_type)};
  EXPECT_TRUE(PutBack(path).done);
}

TEST_P(WayBackTest, AnEntryIsTheStoresOwnWithoutPermissions) {
  const std::string path = Make("tool", kContents, 04755);
  if (geteuid() == 0) {
    ASSERT_EQ(chown(path.c_str(), test::kNobody, test::kNobody), 0);
    ASSERT_EQ(chmod(path.c_str(), 04755), 0);
    ClickAs(test::kNobody);
  }
  const Look before = LookAt(path);
  // A process that still holds the file.
  const Descriptor held(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  ASSERT_TRUE(PutAway(path).done);
  const Look entry = LookAt(TheEntry());
  EXPECT_EQ(entry.owner, geteuid());
  EXPECT_EQ(entry.mode, static_cast<mode_t>(S_IFREG));
  if (geteuid() == 0) {
    const std::string said = test::AsNobody([&]() -> std::string {
      return fchmod(held.get(), 04755) == 0 && !GetParam() ? "its maker gave the permissions back" : "";
    });
    EXPECT_EQ(said, "");
  }
  ASSERT_TRUE(PutBack(path).done);
  EXPECT_EQ(LookAt(path), before);
}

bool GiveAttribute(const std::string& path, const std::string& name, const std::string& value) {
  return setxattr(path.c_str(), name.c_str(), value.data(), value.size(), 0) == 0;
}

std::string AttributeOf(const std::string& path, const std::string& name) {
  std::string value(256, '\0');
  const ssize_t size = getxattr(path.c_str(), name.c_str(), value.data(), value.size());
  return size < 0 ? "none" : value.substr(0, static_cast<std::size_t>(size));
}

// cap_net_bind_service=ep, as the system keeps it.
const std::string kCapability(
    "\x01\x00\x00\x02\x00\x04\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00\x00", 20);

TEST_P(WayBackTest, CapabilitiesAreKeptThroughAChangeOfOwner) {
  const std::string path = Make("tool");
  if (geteuid() == 0) {
    ASSERT_EQ(chown(path.c_str(), test::kNobody, test::kNobody), 0);
    ClickAs(test::kNobody);
  }
  const bool given = GiveAttribute(path, "security.capability", kCapability);
  if (geteuid() == 0) {
    ASSERT_TRUE(given) << strerror(errno);
  }
  const std::string before = AttributeOf(path, "security.capability");
  const Outcome away = PutAway(path);
  ASSERT_TRUE(away.done) << away.text;
  EXPECT_EQ(AttributeOf(TheEntry(), "security.capability"), before);
  ASSERT_TRUE(PutBack(path).done);
  EXPECT_EQ(AttributeOf(path, "security.capability"), before);
}

TEST_P(WayBackTest, ExtendedAttributesAreKeptOrTheMoveIsRefused) {
  const std::string path = Make("tool");
  const bool has = GiveAttribute(path, "user.note", "from the net");
  const std::string other = program_ + "/probe";
  std::ofstream(other) << "";
  const bool kept = !GetParam() || !has || GiveAttribute(other, "user.note", "x");
  const Look before = LookAt(path);
  const Outcome away = PutAway(path);
  EXPECT_EQ(away.done, kept) << away.text;
  if (!kept) {
    EXPECT_EQ(away.text,
              "The extended attributes of \"tool\" cannot be kept on the other disk. Nothing was changed.");
    EXPECT_EQ(LookAt(path), before);
    EXPECT_EQ(Stored(), std::vector<std::string>());
    return;
  }
  ASSERT_TRUE(PutBack(path).done);
  EXPECT_EQ(AttributeOf(path, "user.note"), has ? "from the net" : "none");
  EXPECT_EQ(LookAt(path), before);
}

TEST_F(QuarantineTest, AnAttributeThatTheFileHasAlreadyIsNotGivenAgain) {
  // Its label is nothing that a user may write, nor is any attribute of a file that he may only read.
  GiveToNobody();
  const std::string said = test::AsNobody([&]() -> std::string {
    const std::string path = Make("tool", kContents, 0600);
    const bool has = GiveAttribute(path, "user.note", "x");
    chmod(path.c_str(), 0400);
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
    if (!GiveAttributes(file, AttributesOf(file))) return "what it has was given again";
    return has && GiveAttributes(file, {{"user.note", "y"}}) ? "given without permission" : "";
  });
  EXPECT_EQ(said, "");
}

TEST_F(QuarantineTest, AnErrorOfBeforeIsNotTakenForOneOfTheAttributes) {
  const std::string path = Make("tool");
  const bool has = GiveAttribute(path, "user.note", "x");
  const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC));
  errno = ERANGE;
  std::string read = "refused";
  try {
    const Attributes attributes = AttributesOf(file);
    read = attributes.contains("user.note") ? attributes.at("user.note") : "none";
  } catch (const Refused&) {
  }
  EXPECT_EQ(read, has ? "x" : "none");
}

blkcnt_t BlocksOf(const std::string& path) {
  struct stat status = {};
  EXPECT_EQ(lstat(path.c_str(), &status), 0);
  return status.st_blocks;
}

TEST_P(WayBackTest, HolesStayHoles) {
  const std::string path = Make("tool", "head");
  constexpr off_t kSize = off_t{64} << 20;
  const int file = open(path.c_str(), O_WRONLY | O_CLOEXEC);
  ASSERT_EQ(pwrite(file, "middle", 6, kSize / 2), 6);
  ASSERT_EQ(ftruncate(file, kSize), 0);
  close(file);
  const blkcnt_t blocks = BlocksOf(path);
  ASSERT_LT(blocks, 4096) << "this file system keeps no holes";
  outside_.most_copied = std::uint64_t{1} << 20;  // holes cost nothing
  const Outcome away = PutAway(path);
  ASSERT_TRUE(away.done) << away.text;
  EXPECT_LT(BlocksOf(TheEntry()), 4096);
  ASSERT_TRUE(PutBack(path).done);
  EXPECT_LT(BlocksOf(path), 4096);
  const std::string contents = LookAt(path).contents;
  ASSERT_EQ(contents.size(), static_cast<std::size_t>(kSize));
  EXPECT_EQ(contents.substr(0, 5), std::string("head\0", 5));
  EXPECT_EQ(contents.substr(kSize / 2, 7), std::string("middle\0", 7));
}

TEST_P(WayBackTest, WhatIsTooLargeToCopyStays) {
  const std::string path = Make("tool", std::string(100001, 'x'));
  const Look before = LookAt(path);
  outside_.most_copied = 100000;
  const Outcome away = PutAway(path);
  EXPECT_EQ(away.done, !GetParam()) << away.text;
  if (GetParam()) {
    EXPECT_EQ(away.text,
              "This file is too large to be copied to the quarantine's disk. Nothing was changed.");
    EXPECT_EQ(LookAt(path), before);
    EXPECT_EQ(Stored(), std::vector<std::string>());
    outside_.most_copied = 100001;
    EXPECT_TRUE(PutAway(path).done);
  }
  outside_.most_copied = 0;
  EXPECT_TRUE(PutBack(path).done) << "the way back has no such limit";
  EXPECT_EQ(LookAt(path), before);
}

TEST_P(WayBackTest, WhatTakesTooLongStaysAndComesBackAllTheSame) {
  const std::string path = Make("tool");
  const Look before = LookAt(path);
  outside_.most_time = std::chrono::milliseconds(-1);
  // A small file goes all the same: on a busy machine even looking takes long.
  ASSERT_TRUE(PutAway(path).done);
  ASSERT_TRUE(PutBack(path).done);
  outside_.free_bytes = 10;
  ExpectRefused(PutAway(path), "This file takes too long to put away. Nothing was changed.");
  const std::string hole = Make("hole", "");
  ASSERT_EQ(truncate(hole.c_str(), 100000), 0);
  ExpectRefused(PutAway(hole), "This file takes too long to put away.");
  EXPECT_EQ(LookAt(path), before);
  EXPECT_EQ(Stored(), std::vector<std::string>());
  outside_.most_time = std::chrono::minutes(10);
  ASSERT_TRUE(PutAway(path).done);
  outside_.most_time = std::chrono::milliseconds(-1);
  EXPECT_TRUE(PutBack(path).done);
}

INSTANTIATE_TEST_SUITE_P(Quarantine, WayBackTest, testing::Bool(), WayName);

// A live system keeps its changes in memory under an ordinary-looking root.
TEST_F(QuarantineTest, AnOverlayWhoseChangesAreKeptInMemoryIsRefused) {
  const std::string path = Make("tool");
  const std::string said = test::InChild([&]() -> std::string {
    const test::SmallDisk memory(home_.path() + "/dpkg");  // any folder of the test's own
    struct statfs system = {};
    if (statfs((home_.path() + "/dpkg").c_str(), &system) != 0 || !memory.mounted()) return "no mounts here";
    for (const char* folder : {"/upper", "/work", "/lower"})
      std::filesystem::create_directory(home_.path() + "/dpkg" + folder);
    const std::string base = home_.path() + "/dpkg";
    const std::string options =
        "lowerdir=" + base + "/lower,upperdir=" + base + "/upper,workdir=" + base + "/work";
    if (mount("overlay", program_.c_str(), "overlay", 0, options.c_str()) != 0) return "no overlays here";
    outside_.memory_file_systems = {TMPFS_MAGIC};
    const std::string refused = PutAway(path).text;
    outside_.memory_file_systems = {RAMFS_MAGIC};
    const bool taken = PutAway(path).done && PutBack(path).done;
    umount2(program_.c_str(), MNT_DETACH);
    return refused + (taken ? "" : " and never taken");
  });
  const bool told = said.starts_with("The folder of Zendrix would not outlive a restart") &&
                    said.ends_with("Nothing was changed.");
  // Where nothing may be mounted the test says so by name.
  EXPECT_TRUE(told || said == "no mounts here" || said == "no overlays here") << said;
  RecordProperty("overlay", said);
}

TEST(RunToolTest, TellsStatusAndOutput) {
  const auto answer = RunTool({"/bin/sh", "-c", "printf 'a b'; exit 3"}, std::chrono::seconds(20));
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->status, 3);
  EXPECT_EQ(answer->text, "a b");
}

TEST(RunToolTest, NothingIsReadFromTheTerminalAndNothingOfTheEnvironmentIsHandedOn) {
  setenv("ZENDRIX_PROBE", "x", 1);
  const auto answer = RunTool({"/bin/sh", "-c", "cat; echo \"$ZENDRIX_PROBE,$LC_ALL,$PATH\"; echo x >&2"},
                              std::chrono::seconds(20));
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->text, ",C,/usr/bin:/bin\n");
}

TEST(RunToolTest, OutputHasALimitAndDoesNotStopTheTool) {
  const auto answer = RunTool({"/bin/sh", "-c", "head -c 3000000 /dev/zero"}, std::chrono::seconds(20));
  ASSERT_TRUE(answer);
  EXPECT_EQ(answer->status, 0);
  EXPECT_EQ(answer->text.size(), std::size_t{1} << 20);
}

TEST(RunToolTest, WhatCannotBeStartedWasKilledOrTakesTooLongSaysNothing) {
  EXPECT_FALSE(RunTool({"/nonexistent"}, std::chrono::seconds(20)));
  EXPECT_FALSE(RunTool({"/bin/sh", "-c", "kill -9 $$"}, std::chrono::seconds(20)));
  EXPECT_FALSE(RunTool({"/bin/sh", "-c", "exec sleep 600"}, std::chrono::milliseconds(20)));
  EXPECT_FALSE(RunTool({"/bin/sh", "-c", "exec sleep 600 >&-"}, std::chrono::milliseconds(20)))
      << "closed its output and lived on";
}

}  // namespace
}  // namespace zendrix::family
