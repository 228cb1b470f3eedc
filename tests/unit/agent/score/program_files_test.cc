#include "agent/score/program_files.h"

#include <gmock/gmock.h>

#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

class ProgramFilesTest : public ::testing::Test {
 protected:
  void Put(const std::string& path, const std::string& text, std::uint64_t inode, std::int64_t changed = 1) {
    host.texts[path] = text;
    host.facts[path] = {EntryKind::kFile, 0755, static_cast<std::int64_t>(text.size()), 5, 1, inode, changed};
  }
  // A process that runs this text, of the file with this inode.
  void Run(std::uint64_t pid, const std::string& target, const std::string& text, std::uint64_t inode) {
    const std::string exe = "/proc/" + std::to_string(pid) + "/exe";
    Put(exe, text, inode);
    host.links[exe] = target;
  }
  std::string SumOf(const Running& running = {}) {
    now += 2000;
    return files.Of("/usr/bin/x", now, running).sha256;
  }

  FakeHost host;
  ProgramFiles files{host};
  std::int64_t now = 0;
};

TEST_F(ProgramFilesTest, EqualSizeAndTimeDoNotHideOtherContents) {
  Put("/usr/bin/x", "good", 7);
  const std::string good = SumOf();
  EXPECT_EQ(SumOf(), good);
  Put("/usr/bin/x", "evil", 7, 2);
  EXPECT_NE(SumOf(), good) << "the time of the change cannot be set back";
  Put("/usr/bin/x", "good", 8, 2);
  EXPECT_EQ(SumOf(), good);
}

TEST_F(ProgramFilesTest, FileThatRunsIsReadAndNotTheOnePutBackInItsPlace) {
  Put("/usr/bin/x", "good", 7);
  const std::string good = SumOf();
  Run(9, "/usr/bin/x (deleted)", "evil", 8);
  const std::string evil = SumOf({8, 9});
  EXPECT_NE(evil, good);
  EXPECT_NE(evil, "");
  EXPECT_EQ(SumOf({7, 10}), good);
}

TEST_F(ProgramFilesTest, FileThatRanAndIsThereNoMoreIsNotTakenForAnother) {
  Put("/usr/bin/x", "good", 7);
  EXPECT_NE(SumOf({7, 9}), "");
  EXPECT_EQ(files.Of("/usr/bin/x", now, {8, 9}).sha256, "") << "not even within the second";
  EXPECT_EQ(SumOf({8, 9}), "");
  Run(9, "/usr/bin/other", "other", 8);
  EXPECT_EQ(SumOf({8, 9}), "") << "its number is another program's by now";
}

TEST_F(ProgramFilesTest, LargeFileIsSummedUpBySamplesAndItsChange) {
  std::string text(ProgramFiles::kWhole + 1000000, 'x');
  Put("/usr/bin/x", text, 7);
  const std::string first = SumOf();
  EXPECT_NE(first, "");
  text.back() = 'y';
  Put("/usr/bin/x", text, 8);
  const std::string second = SumOf();
  EXPECT_NE(second, first);
  Put("/usr/bin/x", text, 8, 2);
  EXPECT_NE(SumOf(), second) << "what lies between the samples";
}

TEST_F(ProgramFilesTest, WhatIsTooMuchForTheSecondIsPutOff) {
  Put("/usr/bin/x", std::string(ProgramFiles::kWhole, 'x'), 7);
  Put("/usr/bin/y", "y", 8);
  EXPECT_NE(SumOf(), "");
  EXPECT_TRUE(files.Of("/usr/bin/y", now).is_put_off);
  EXPECT_FALSE(files.Of("/usr/bin/y", now + 1000).is_put_off);
}

}  // namespace
}  // namespace zendrix::agent
