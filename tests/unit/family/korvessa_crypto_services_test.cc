#include "family/korvessa_crypto_services.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <string>

#include "support/temporary_folder.h"

namespace zendrix::family {
namespace {

constexpr char kHashOfAbc[] = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

// The callers' own way: 256 blanks, then the text up to the first NUL.
std::string Hash(const std::string& path) {
  std::string buffer(256, ' ');
  HashFile(path.c_str(), buffer.data(), 256);
  return buffer.substr(0, buffer.find('\0'));
}

TEST(HashFileTest, IsSha256InLowerCase) {
  const test::TemporaryFolder folder;
  folder.Write("a", "abc");
  folder.Write("empty", "");
  EXPECT_EQ(Hash(folder.Path("a")), kHashOfAbc);
  EXPECT_EQ(Hash(folder.Path("empty")), "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
}

TEST(HashFileTest, BigFileAndItsBytesInMemoryHashAlike) {
  const test::TemporaryFolder folder;
  std::string bytes;
  for (int i = 0; i < 300000; ++i) bytes += static_cast<char>(i * 7 + i / 256);
  folder.Write("big", bytes);
  std::array<char, 65> text{};
  HashBytes(bytes.data(), bytes.size(), text.data(), 65);
  EXPECT_EQ(Hash(folder.Path("big")), text.data());
}

TEST(HashFileTest, MissingFileLeavesTheBufferAsItWas) {
  const test::TemporaryFolder folder;
  EXPECT_EQ(Hash(folder.Path("none")), std::string(256, ' '));
}

TEST(HashFileTest, FoldersAndPipesAreNoFilesAndDoNotHang) {
  const test::TemporaryFolder folder;
  ASSERT_EQ(mkfifo(folder.Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(Hash(folder.Path("pipe")), std::string(256, ' '));
  EXPECT_EQ(Hash(folder.path()), std::string(256, ' '));
}

TEST(HashFileTest, NoPathAndNoBufferAreTakenWithoutACrash) {
  const test::TemporaryFolder folder;
  folder.Write("a", "abc");
  HashFile(folder.Path("a").c_str(), nullptr, 65);
  std::string buffer(65, '#');
  HashFile(nullptr, buffer.data(), 65);
  EXPECT_EQ(buffer, std::string(65, '#'));
}

// An earlier interruption must not be taken for one of the read at the end of the file.
TEST(HashFileTest, InterruptionOfAnEarlierCallDoesNotHang) {
  const test::TemporaryFolder folder;
  folder.Write("a", "abc");
  const std::string path = folder.Path("a");
  std::string buffer(65, ' ');
  errno = EINTR;
  HashFile(path.c_str(), buffer.data(), 65);
  EXPECT_STREQ(buffer.c_str(), kHashOfAbc);
}

// A caller without standard input gets its first free number for the file.
TEST(HashFileTest, FileThatGetsTheNumberOfStandardInputIsReadAndClosed) {
  const test::TemporaryFolder folder;
  folder.Write("a", "abc");
  const int before = fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 3);
  close(STDIN_FILENO);
  const std::string hash = Hash(folder.Path("a"));
  const bool closed = fcntl(STDIN_FILENO, F_GETFD) == -1;
  if (before >= 0) {
    dup2(before, STDIN_FILENO);
    close(before);
  }
  EXPECT_EQ(hash, kHashOfAbc);
  EXPECT_TRUE(closed);
}

TEST(HashFileTest, BufferThatIsTooSmallIsNotTouched) {
  const test::TemporaryFolder folder;
  folder.Write("a", "abc");
  std::string buffer(64, '#');
  HashFile(folder.Path("a").c_str(), buffer.data(), 64);
  HashBytes("abc", 3, buffer.data(), 64);
  EXPECT_EQ(buffer, std::string(64, '#'));
}

TEST(HashFileTest, BufferThatJustFitsIsFilled) {
  std::array<char, 66> buffer{};
  buffer.fill('#');
  HashBytes("abc", 3, buffer.data(), 65);
  EXPECT_STREQ(buffer.data(), kHashOfAbc);
  EXPECT_EQ(buffer[65], '#');
}

}  // namespace
}  // namespace zendrix::family
