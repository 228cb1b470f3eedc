#include "platform/pe_version.h"

#include <fstream>
#include <iterator>

#include "platform/memory/memory_files.h"
#include "support/pe_file.h"

namespace zendrix::platform {
namespace {

using testing::PeFile;
using testing::PutDouble;
using testing::PutWord;

constexpr char kPath[] = "/opt/zendrix/Zendrix Update.exe";

std::string VersionOf(const std::string& bytes) {
  MemoryFiles files;
  files.Put(kPath, bytes);
  return PeFileVersion(files, kPath);
}

TEST(PeVersionTest, FourNumbersOfTheFixedPartAreTheVersion) {
  EXPECT_EQ(VersionOf(PeFile{}.Bytes()), "1.2.0.3");
  EXPECT_EQ(VersionOf(PeFile{{65535, 0, 256, 65534}}.Bytes()), "65535.0.256.65534");
}

TEST(PeVersionTest, WideImagesHaveOneToo) {
  EXPECT_EQ(VersionOf(PeFile{.version = {2, 0, 0, 1}, .plus = true}.Bytes()), "2.0.0.1");
}

TEST(PeVersionTest, NamedResourcesInFrontAreSteppedOver) {
  EXPECT_EQ(VersionOf(PeFile{.named = 3}.Bytes()), "1.2.0.3");
}

TEST(PeVersionTest, FileWithoutAVersionResourceHasNone) {
  EXPECT_EQ(VersionOf(PeFile{.has_version = false}.Bytes()), "");
}

TEST(PeVersionTest, AnyOtherFileHasNone) {
  for (const std::string& bytes :
       {std::string(), std::string("M"), std::string("MZ"), std::string("#!/bin/sh\nexit 0\n"),
        "MZ" + std::string(200, '\0'), "\x7F" + std::string("ELF") + std::string(5000, '\x01'),
        std::string(5000, '\xFF')})
    EXPECT_EQ(VersionOf(bytes), "") << bytes.size();
}

TEST(PeVersionTest, MissingFileAndFolderHaveNone) {
  MemoryFiles files;
  EXPECT_EQ(PeFileVersion(files, kPath), "");
  files.Put("/opt/zendrix/x", "");
  EXPECT_EQ(PeFileVersion(files, "/opt/zendrix"), "");
}

TEST(PeVersionTest, FileThatCannotBeReadToTheEndHasNone) {
  MemoryFiles files;
  files.Put(kPath, PeFile{}.Bytes());
  files.FailReadAfter(kPath, 0x300, ErrorKind::kOther);
  EXPECT_EQ(PeFileVersion(files, kPath), "");
}

// Cut anywhere, the file ends before its version or has it whole; no other text comes out.
TEST(PeVersionTest, FileCutAnywhereHasNoOtherVersion) {
  const PeFile image{.trailing = 0};
  const std::string bytes = image.Bytes();
  for (std::size_t size = 0; size <= bytes.size(); ++size) {
    const bool whole = size >= image.FixedInfo() + 52;
    ASSERT_EQ(VersionOf(bytes.substr(0, size)), whole ? "1.2.0.3" : "") << size;
  }
}

class BrokenImageTest : public ::testing::Test {
 protected:
  void Expect(const char* what, std::size_t at, std::uint32_t value) {
    std::string bytes = image_.Bytes();
    PutDouble(bytes, at, value);
    EXPECT_EQ(VersionOf(bytes), "") << what;
  }
  void ExpectOfWord(const char* what, std::size_t at, std::uint32_t value) {
    std::string bytes = image_.Bytes();
    PutWord(bytes, at, value);
    EXPECT_EQ(VersionOf(bytes), "") << what;
  }
  const PeFile image_{};
};

TEST_F(BrokenImageTest, BrokenHeadersMeanNoVersion) {
  Expect("no beginning", 0, 0x5A4C);
  Expect("header beyond the end", 60, 0xFFFFFFF0);
  Expect("no signature", PeFile::kPe, 0x4551);
  ExpectOfWord("no sections", PeFile::kCoff + 2, 0);
  ExpectOfWord("more sections than a loader takes", PeFile::kCoff + 2, 97);
  ExpectOfWord("optional header without its directories", PeFile::kCoff + 16, 119);
  ExpectOfWord("unknown kind", PeFile::kOptional, 0x107);
  Expect("no third directory", image_.Directories() - 4, 2);
  Expect("no resources", image_.Directories() + 16, 0);
  Expect("resources in no section", image_.Directories() + 16, 0x9000);
}

TEST_F(BrokenImageTest, ThirdDirectoryIsEnough) {
  std::string bytes = image_.Bytes();
  PutDouble(bytes, image_.Directories() - 4, 3);
  EXPECT_EQ(VersionOf(bytes), "1.2.0.3");
}

// The list of sections stands right behind the optional header: one byte less, and it lies over the
// directory.
TEST_F(BrokenImageTest, OptionalHeaderThatEndsInsideItsDirectoryMeansNoVersion) {
  for (const std::uint32_t size : {120U, 119U}) {
    std::string bytes = image_.Bytes();
    PutWord(bytes, PeFile::kCoff + 16, size);
    const std::string sections = bytes.substr(image_.Sections(), 80);
    bytes.replace(PeFile::kOptional + size, sections.size(), sections);
    EXPECT_EQ(VersionOf(bytes), size == 120 ? "1.2.0.3" : "") << size;
  }
}

TEST_F(BrokenImageTest, BrokenResourcesMeanNoVersion) {
  ExpectOfWord("no types", image_.Types() + 14, 0);
  ExpectOfWord("more types than the section holds", image_.Types() + 14, 0xFFFF);
  Expect("type that is no table", image_.VersionType() + 4, 0x100);
  Expect("table beyond the section", image_.VersionType() + 4, 0x80000000 | 0x3F8);
  Expect("other name", image_.Names() + 16, 2);
  Expect("name that is no table", image_.Names() + 20, 0x140);
  ExpectOfWord("no language", image_.Languages() + 14, 0);
  Expect("language that is a table", image_.Languages() + 20, 0x80000180);
  Expect("data beyond the section", image_.DataEntry(), 0x2400 - 91);
  Expect("data too short", image_.DataEntry() + 4, 91);
  ExpectOfWord("no fixed part", image_.Version() + 2, 0);
  ExpectOfWord("other key", image_.Version() + 6, 'W');
  ExpectOfWord("longer key", image_.Version() + 36, 'X');
  Expect("no signature", image_.FixedInfo(), 0xFEEF04BE);
}

TEST_F(BrokenImageTest, DataUpToTheSectionsLastByteCounts) {
  std::string bytes = image_.Bytes();
  PutDouble(bytes, image_.DataEntry(), 0x2400 - 92);
  const std::string data = bytes.substr(image_.Version(), 92);
  bytes.replace(image_.Resources() + 0x400 - 92, 92, data);
  EXPECT_EQ(VersionOf(bytes), "1.2.0.3");
}

TEST_F(BrokenImageTest, FirstLanguageStandsForAll) {
  std::string bytes = image_.Bytes();
  PutWord(bytes, image_.Languages() + 14, 2);
  PutDouble(bytes, image_.Languages() + 28, 0x3F0);
  EXPECT_EQ(VersionOf(bytes), "1.2.0.3");
}

// Adds up what is read of a file.
class CountingFiles : public MemoryFiles {
 public:
  std::size_t total = 0;
  Result<std::unique_ptr<ReadStream>> Open(const std::string& path) override {
    auto stream = MemoryFiles::Open(path);
    if (!stream) return stream;
    return std::unique_ptr<ReadStream>(std::make_unique<Counter>(total, std::move(stream.value())));
  }

 private:
  class Counter : public ReadStream {
   public:
    Counter(std::size_t& total, std::unique_ptr<ReadStream> below)
        : total_(total), below_(std::move(below)) {}
    Result<std::size_t> Read(char* buffer, std::size_t size) override {
      total_ += size;
      return below_->Read(buffer, size);
    }
    Status Seek(std::int64_t offset) override { return below_->Seek(offset); }

   private:
    std::size_t& total_;
    std::unique_ptr<ReadStream> below_;
  };
};

TEST(PeVersionTest, LargeInstallerIsNotReadWhole) {
  CountingFiles files;
  files.Put(kPath, PeFile{.extra = 30'000'000, .trailing = 5'000'000}.Bytes());
  EXPECT_EQ(PeFileVersion(files, kPath), "1.2.0.3");
  EXPECT_LT(files.total, 1000U);
}

TEST(PeVersionTest, HugeTableIsReadInPartOnly) {
  const PeFile image{.trailing = 1'000'000};
  std::string bytes = image.Bytes();
  PutDouble(bytes, image.Sections() + 40 + 16, 1'000'000);
  PutWord(bytes, image.Types() + 14, 0xFFFF);
  PutDouble(bytes, image.VersionType(), 15);
  CountingFiles files;
  files.Put(kPath, bytes);
  EXPECT_EQ(PeFileVersion(files, kPath), "");
  EXPECT_LE(files.total, kMostReadForVersion);
}

// The fuzzer's seeds are files of this generator.
TEST(PeVersionTest, FuzzersSeedsAreReadAsTheyWereMade) {
  const std::pair<const char*, PeFile> seeds[] = {{"narrow", {.trailing = 0}},
                                                  {"wide", {.plus = true, .trailing = 0}},
                                                  {"named", {.named = 2, .trailing = 0}},
                                                  {"icon_only", {.has_version = false, .trailing = 0}}};
  for (const auto& [name, image] : seeds) {
    std::ifstream file(std::string(ZENDRIX_TEST_DATA) + "/../fuzz/corpus/pe_version/" + name,
                       std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(file), {});
    EXPECT_TRUE(bytes == image.Bytes()) << name;
  }
}

}  // namespace
}  // namespace zendrix::platform
