#include "platform/memory/faulty_files.h"

#include <gtest/gtest.h>

#include "platform/memory/memory_files.h"
#include "platform/process.h"

namespace zendrix::platform {
namespace {

TEST(FaultyFilesTest, RefusesTheChosenOperationAndGoesOn) {
  MemoryFiles below;
  FaultyFiles files(below);
  files.FailAt(2, ErrorKind::kNoSpace);
  EXPECT_TRUE(files.WriteAll("/a", "1").ok());
  EXPECT_TRUE(files.ReadAll("/a").ok());
  EXPECT_EQ(files.WriteAll("/a", "2").error().kind, ErrorKind::kNoSpace);
  EXPECT_TRUE(files.WriteAll("/a", "3").ok());
  EXPECT_EQ(files.Operations(), 3);
  EXPECT_EQ(below.Get("/a"), "3");
}

TEST(FaultyFilesTest, KillEndsTheProcessAndLeavesTheFilesAsTheyWere) {
  MemoryFiles below;
  FaultyFiles files(below);
  files.KillAt(2);
  EXPECT_TRUE(files.WriteAll("/a", "1").ok());
  EXPECT_THROW(static_cast<void>(files.Rename("/a", "/b")), ProcessEnded);
  EXPECT_TRUE(files.Killed());
  EXPECT_EQ(files.Remove("/a").error().kind, ErrorKind::kUnavailable);
  EXPECT_EQ(below.Get("/a"), "1");
}

TEST(FaultyFilesTest, AppendThatIsKilledCanBeTorn) {
  MemoryFiles below;
  FaultyFiles files(below);
  files.KillAt(1, 3);
  EXPECT_THROW(static_cast<void>(files.Append("/log", "line\r\n")), ProcessEnded);
  EXPECT_EQ(below.Get("/log"), "lin");
}

TEST(FaultyFilesTest, ReadsCountOnlyWhenTold) {
  MemoryFiles below;
  below.Put("/a", "1");
  FaultyFiles files(below);
  EXPECT_TRUE(files.Size("/a").ok());
  EXPECT_EQ(files.Operations(), 0);
  files.CountReadsToo();
  files.FailAt(1, ErrorKind::kPermissionDenied);
  EXPECT_EQ(files.Open("/a").error().kind, ErrorKind::kPermissionDenied);
}

TEST(FaultyFilesTest, EverythingElsePassesThrough) {
  MemoryFiles below;
  FaultyFiles files(below);
  const std::string path = "/p/new";
  ASSERT_TRUE(files.Append(path, "x").ok());
  ASSERT_TRUE(files.Rename(path, "/p/a").ok());
  EXPECT_TRUE(files.Exists("/p/a"));
  EXPECT_TRUE(files.FolderExists("/p"));
  EXPECT_EQ(files.List("/p").value(), std::vector<std::string>{"a"});
  ASSERT_TRUE(files.Remove("/p/a").ok());
  EXPECT_FALSE(below.Has("/p/a"));
}

}  // namespace
}  // namespace zendrix::platform
