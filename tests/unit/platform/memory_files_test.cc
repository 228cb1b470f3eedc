#include "platform/memory/memory_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zendrix::platform {
namespace {

using ::testing::ElementsAre;
using ::testing::UnorderedElementsAre;

std::string ReadSome(ReadStream& stream, std::size_t size) {
  std::string bytes(size, '\0');
  const auto got = stream.Read(bytes.data(), size);
  EXPECT_TRUE(got.ok());
  bytes.resize(got ? got.value() : 0);
  return bytes;
}

TEST(MemoryFilesTest, WhatIsPutCanBeReadAndListed) {
  MemoryFiles files;
  files.Put("/p/a.kvl", "one");
  files.Put("/p/sub/b.kvl", "");
  EXPECT_TRUE(files.Exists("/p/a.kvl"));
  EXPECT_TRUE(files.Exists("/p//./a.kvl"));
  EXPECT_FALSE(files.Exists("/p/A.kvl"));
  EXPECT_FALSE(files.Exists("/p/sub"));
  EXPECT_TRUE(files.FolderExists("/p/sub/"));
  EXPECT_TRUE(files.FolderExists("/"));
  EXPECT_FALSE(files.FolderExists("/p/a.kvl"));
  EXPECT_EQ(files.Size("/p/a.kvl").value(), 3);
  EXPECT_EQ(files.ReadAll("/p/a.kvl").value(), "one");
  EXPECT_THAT(files.List("/p").value(), UnorderedElementsAre("a.kvl", "sub"));
  EXPECT_THAT(files.List("/").value(), ElementsAre("p"));
  EXPECT_THAT(files.Paths(), ElementsAre("/p/a.kvl", "/p/sub/b.kvl"));
}

TEST(MemoryFilesTest, RefusalsSayWhatKindTheyAre) {
  MemoryFiles files;
  files.Put("/p/a", "x");
  EXPECT_EQ(files.Open("/p/none").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.Open("/p").error().kind, ErrorKind::kNotRegular);
  EXPECT_EQ(files.Size("/p").error().kind, ErrorKind::kNotRegular);
  EXPECT_EQ(files.WriteAll("/p", "").error().kind, ErrorKind::kNotRegular);
  EXPECT_EQ(files.WriteAll("/p/a/b", "").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.Remove("/p/none").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.Remove("/p").error().kind, ErrorKind::kNotRegular);
  EXPECT_EQ(files.Rename("/p/none", "/p/b").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.Rename("/p/a", "/p").error().kind, ErrorKind::kNotRegular);
  EXPECT_EQ(files.List("/q").error().kind, ErrorKind::kNotFound);
  EXPECT_EQ(files.List("/p/a").error().kind, ErrorKind::kNotRegular);
}

TEST(MemoryFilesTest, MissingFolderIsRefusedOnlyWhenTold) {
  MemoryFiles files;
  EXPECT_TRUE(files.WriteAll("/new/a", "x").ok());
  EXPECT_TRUE(files.FolderExists("/new"));
  files.strict_folders = true;
  EXPECT_EQ(files.WriteAll("/other/a", "x").error().kind, ErrorKind::kNotFound);
  // A folder stays when its last file goes.
  files.Put("/other/b", "");
  files.Vanish("/other/b");
  EXPECT_TRUE(files.WriteAll("/other/a", "x").ok());
}

TEST(MemoryFilesTest, OpenStreamSeesGrowthAndShrinking) {
  MemoryFiles files;
  files.Put("/a", "abc");
  const auto stream = std::move(files.Open("/a").value());
  EXPECT_EQ(ReadSome(*stream, 10), "abc");
  EXPECT_EQ(ReadSome(*stream, 10), "");
  files.PutMore("/a", "def");
  EXPECT_EQ(ReadSome(*stream, 2), "de");
  files.Put("/a", "x");
  EXPECT_EQ(ReadSome(*stream, 10), "");
  ASSERT_TRUE(stream->Seek(0).ok());
  EXPECT_EQ(ReadSome(*stream, 10), "x");
  EXPECT_FALSE(stream->Seek(-1).ok());
}

TEST(MemoryFilesTest, OpenStreamKeepsTheFileThatIsReplacedOrRemoved) {
  MemoryFiles files;
  files.Put("/a", "old");
  files.Put("/b", "gone");
  const auto replaced = std::move(files.Open("/a").value());
  const auto removed = std::move(files.Open("/b").value());
  ASSERT_TRUE(files.WriteAll("/a", "new").ok());
  ASSERT_TRUE(files.Remove("/b").ok());
  EXPECT_EQ(ReadSome(*replaced, 10), "old");
  EXPECT_EQ(ReadSome(*removed, 10), "gone");
  EXPECT_EQ(files.Get("/a"), "new");
}

TEST(MemoryFilesTest, RenameReplacesItsTarget) {
  MemoryFiles files;
  files.Put("/p/a", "1");
  files.Put("/p/b", "2");
  ASSERT_TRUE(files.Rename("/p/a", "/p/b").ok());
  EXPECT_THAT(files.Paths(), ElementsAre("/p/b"));
  EXPECT_EQ(files.Get("/p/b"), "1");
  ASSERT_TRUE(files.Rename("/p/b", "/p/b").ok());
  EXPECT_EQ(files.Get("/p/b"), "1");
}

TEST(MemoryFilesTest, FaultsHitTheirOperationAndPathAndCount) {
  MemoryFiles files;
  files.Put("/a", "x");
  files.FailNext(FileOp::kAppend, "/a", ErrorKind::kPermissionDenied, 2);
  EXPECT_TRUE(files.WriteAll("/a", "y").ok());
  EXPECT_TRUE(files.Append("/b", "y").ok());
  EXPECT_EQ(files.Append("/a", "z").error().kind, ErrorKind::kPermissionDenied);
  EXPECT_EQ(files.Append("/a", "z").error().kind, ErrorKind::kPermissionDenied);
  EXPECT_TRUE(files.Append("/a", "z").ok());
  EXPECT_EQ(files.Get("/a"), "yz");
  files.FailNext(FileOp::kOpen, "*", ErrorKind::kNoSpace, MemoryFiles::kAlways);
  for (int i = 0; i < 5; ++i) EXPECT_EQ(files.Open("/b").error().kind, ErrorKind::kNoSpace);
  files.ClearFaults();
  EXPECT_TRUE(files.Open("/b").ok());
}

TEST(MemoryFilesTest, FaultsKnowAFileByEachOfItsPaths) {
  MemoryFiles files;
  files.Put("/a", "abc");
  files.FailNext(FileOp::kAppend, "//a", ErrorKind::kNoSpace);
  EXPECT_EQ(files.Append("/a", "z").error().kind, ErrorKind::kNoSpace);
  files.FailReadAfter("//a", 2, ErrorKind::kPermissionDenied);
  EXPECT_EQ(files.ReadAll("/a").error().kind, ErrorKind::kPermissionDenied);
  files.FailReadAfter("*", 0, ErrorKind::kPermissionDenied);
  EXPECT_EQ(files.ReadAll("/a").error().kind, ErrorKind::kPermissionDenied);
  EXPECT_EQ(files.ReadAll("/a").value(), "abc");
}

TEST(MemoryFilesTest, ReadIsRefusedBehindTheGivenByte) {
  MemoryFiles files;
  files.Put("/a", "abcdef");
  files.FailReadAfter("/a", 4, ErrorKind::kPermissionDenied);
  const auto stream = std::move(files.Open("/a").value());
  EXPECT_EQ(ReadSome(*stream, 4), "abcd");
  char c;
  EXPECT_EQ(stream->Read(&c, 1).error().kind, ErrorKind::kPermissionDenied);
  EXPECT_EQ(ReadSome(*stream, 4), "ef");
}

TEST(MemoryFilesTest, HookChangesTheFileBetweenTwoReads) {
  MemoryFiles files;
  files.Put("/a", "one");
  int reads = 0;
  files.before = [&](FileOp op, const std::string& path) {
    if (op == FileOp::kRead && path == "/a" && ++reads == 2) files.PutMore("/a", "two");
    if (op == FileOp::kRead && reads == 4) files.Vanish("/a");
  };
  const auto stream = std::move(files.Open("/a").value());
  EXPECT_EQ(ReadSome(*stream, 10), "one");
  EXPECT_EQ(ReadSome(*stream, 10), "two");
  EXPECT_EQ(ReadSome(*stream, 10), "");
  EXPECT_EQ(ReadSome(*stream, 10), "");
  EXPECT_FALSE(files.Has("/a"));
}

TEST(JoinPathTest, PutsExactlyOneSeparator) {
  EXPECT_EQ(JoinPath("/p", "a"), "/p/a");
  EXPECT_EQ(JoinPath("/p/", "a"), "/p/a");
  EXPECT_EQ(JoinPath("/", "a"), "/a");
}

}  // namespace
}  // namespace zendrix::platform
