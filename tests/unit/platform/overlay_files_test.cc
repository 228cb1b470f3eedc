#include "platform/memory/overlay_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <random>

#include "platform/linux/linux_files.h"
#include "platform/memory/memory_files.h"
#include "support/temporary_folder.h"

namespace zendrix::platform {
namespace {

using ::testing::UnorderedElementsAre;

TEST(OverlayFilesTest, ChangesAreSeenAboveAndNotBelow) {
  MemoryFiles below;
  below.Put("/p/a", "a");
  below.Put("/p/b", "b");
  below.Put("/p/c", "c");
  OverlayFiles files(below);
  EXPECT_FALSE(files.Changed());
  ASSERT_TRUE(files.WriteAll("/p/a", "new").ok());
  ASSERT_TRUE(files.Append("/p/b", "more").ok());
  ASSERT_TRUE(files.Remove("/p/c").ok());
  ASSERT_TRUE(files.Append("/p/d", "d").ok());
  EXPECT_TRUE(files.Changed());
  EXPECT_EQ(files.ReadAll("/p/a").value(), "new");
  EXPECT_EQ(files.ReadAll("/p/b").value(), "bmore");
  EXPECT_FALSE(files.Exists("/p/c"));
  EXPECT_EQ(files.Open("/p/c").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.Size("/p/d").value(), 1);
  EXPECT_THAT(files.List("/p").value(), UnorderedElementsAre("a", "b", "d"));
  EXPECT_EQ(below.Get("/p/a"), "a");
  EXPECT_EQ(below.Get("/p/b"), "b");
  EXPECT_EQ(below.Paths().size(), 3U);
}

TEST(OverlayFilesTest, UnchangedFileIsReadAsItIsBelowAtTheTime) {
  MemoryFiles below;
  below.Put("/p/a", "one");
  OverlayFiles files(below);
  EXPECT_EQ(files.ReadAll("/p/a").value(), "one");
  below.PutMore("/p/a", "two");
  EXPECT_EQ(files.ReadAll("/p/a").value(), "onetwo");
  below.Vanish("/p/a");
  EXPECT_FALSE(files.Exists("/p/a"));
}

TEST(OverlayFilesTest, RenameMovesAFileThatIsStillBelow) {
  MemoryFiles below;
  below.Put("/p/a", "one");
  OverlayFiles files(below);
  ASSERT_TRUE(files.Rename("/p/a", "/p/b").ok());
  EXPECT_FALSE(files.Exists("/p/a"));
  EXPECT_EQ(files.ReadAll("/p/b").value(), "one");
  EXPECT_FALSE(below.Has("/p/b"));
  EXPECT_TRUE(below.Has("/p/a"));
}

TEST(OverlayFilesTest, OpenStreamKeepsTheFileThatIsReplaced) {
  MemoryFiles below;
  below.Put("/p/a", "one");
  OverlayFiles files(below);
  ASSERT_TRUE(files.WriteAll("/p/a", "two").ok());
  const auto stream = std::move(files.Open("/p/a").value());
  ASSERT_TRUE(files.WriteAll("/p/a", "three").ok());
  char bytes[16];
  ASSERT_EQ(stream->Read(bytes, sizeof bytes).value(), 3U);
  EXPECT_EQ(std::string(bytes, 3), "two");
}

TEST(OverlayFilesTest, RefusalsBelowAreRefusalsAbove) {
  MemoryFiles below;
  below.Put("/p/a", "one");
  OverlayFiles files(below);
  below.FailNext(FileOp::kOpen, "/p/a", ErrorKind::kPermissionDenied, MemoryFiles::kAlways);
  EXPECT_EQ(files.Open("/p/a").error().kind, ErrorKind::kPermissionDenied);
  EXPECT_EQ(files.Append("/p/a", "x").error().kind, ErrorKind::kPermissionDenied);
  EXPECT_EQ(files.Rename("/p/a", "/p/b").error().kind, ErrorKind::kPermissionDenied);
  EXPECT_EQ(files.WriteAll("/none/a", "x").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.WriteAll("/p", "x").error().kind, ErrorKind::kNotRegular);
  EXPECT_FALSE(files.Changed());
}

// Everything one can see of a folder tree, as text.
std::string Describe(Files& files, const std::string& root, const std::string& name = "") {
  const std::string path = root + name;
  std::string text = "[" + name + "]\n";
  auto names = files.List(path);
  if (!names) return text + "unreadable\n";
  std::sort(names.value().begin(), names.value().end());
  for (const std::string& entry : names.value()) {
    const std::string inside = name + "/" + entry;
    if (files.FolderExists(root + inside)) {
      text += Describe(files, root, inside);
    } else {
      text += inside + " " + std::to_string(files.Size(root + inside).value()) + " " +
              files.ReadAll(root + inside).value() +
              (files.Exists(root + inside) ? "\n" : " (does not exist)\n");
    }
  }
  return text;
}

template <class T>
int KindOf(const Result<T>& result) {
  return result ? -1 : static_cast<int>(result.error().kind);
}

// One random operation on both sides; they must take it alike.
void Act(std::mt19937& random, Files& overlay, const std::string& base, Files& disk,
         const std::string& copy) {
  static constexpr std::array<const char*, 10> kNames = {"/a",   "/b",     "/c",     "/d",   "/sub/a",
                                                         "/sub", "/sub/b", "/new/a", "/new", "/a/x"};
  const auto name = [&] { return std::string(kNames[random() % kNames.size()]); };
  const std::string one = name();
  const std::string two = name();
  const std::string bytes(random() % 20, static_cast<char>('a' + random() % 26));
  switch (random() % 4) {
    case 0:
      ASSERT_EQ(KindOf(overlay.WriteAll(base + one, bytes)), KindOf(disk.WriteAll(copy + one, bytes))) << one;
      break;
    case 1:
      ASSERT_EQ(KindOf(overlay.Append(base + one, bytes)), KindOf(disk.Append(copy + one, bytes))) << one;
      break;
    case 2:
      ASSERT_EQ(KindOf(overlay.Remove(base + one)), KindOf(disk.Remove(copy + one))) << one;
      break;
    default:
      ASSERT_EQ(KindOf(overlay.Rename(base + one, base + two)), KindOf(disk.Rename(copy + one, copy + two)))
          << one << " " << two;
  }
}

TEST(OverlayFilesTest, RandomOperationsLookAsOnACopyAndLeaveTheFolderAlone) {
  for (unsigned seed = 1; seed <= 10; ++seed) {
    const test::TemporaryFolder folder;
    for (const std::string root : {"base", "copy"}) {
      std::filesystem::create_directories(folder.Path(root + "/sub"));
      folder.Write(root + "/a", "first");
      folder.Write(root + "/b", "");
      folder.Write(root + "/sub/a", "inner");
    }
    LinuxFiles disk;
    OverlayFiles overlay(disk);
    const std::string before = Describe(disk, folder.Path("base"));
    std::mt19937 random(seed);
    for (int step = 0; step < 50; ++step) {
      Act(random, overlay, folder.Path("base"), disk, folder.Path("copy"));
      ASSERT_EQ(Describe(overlay, folder.Path("base")), Describe(disk, folder.Path("copy")))
          << "seed " << seed << " step " << step;
    }
    ASSERT_EQ(Describe(disk, folder.Path("base")), before);
  }
}

TEST(OverlayFilesTest, TwinInMemoryBehavesLikeTheDisk) {
  for (unsigned seed = 1; seed <= 10; ++seed) {
    const test::TemporaryFolder folder;
    std::filesystem::create_directories(folder.Path("sub"));
    folder.Write("a", "first");
    LinuxFiles disk;
    MemoryFiles twin;
    twin.strict_folders = true;
    twin.Put("/p/a", "first");
    twin.Put("/p/sub/x", "");
    twin.Vanish("/p/sub/x");
    std::mt19937 random(seed);
    for (int step = 0; step < 50; ++step) {
      Act(random, twin, "/p", disk, folder.path());
      ASSERT_EQ(Describe(twin, "/p"), Describe(disk, folder.path())) << "seed " << seed << " step " << step;
    }
  }
}

}  // namespace
}  // namespace zendrix::platform
