#include "act/block_record.h"

#include <gtest/gtest.h>

#include "family/intermediate/sha256.h"
#include "platform/memory/fake_clock.h"
#include "platform/memory/memory_files.h"

namespace zendrix::act {
namespace {

constexpr char kBlockedPath[] = "/q/blocks";
const std::string kSum(64, 'c');

std::string WithSum(const std::string& text) {
  return text + "sum\t" + family::Sha256Of(text) + "\n";
}

class BlockRecordTest : public testing::Test {
 protected:
  BlockRecord Open() { return {files_, clock_, kBlockedPath}; }
  std::string Aside() const { return kBlockedPath + std::string(".damaged-") + std::to_string(now_); }

  platform::MemoryFiles files_;
  platform::FakeClock clock_;
  const std::int64_t now_ = clock_.NowUtc();
};

TEST_F(BlockRecordTest, WhatIsNotedIsThereAtTheNextStart) {
  BlockRecord record = Open();
  ASSERT_TRUE(record.Add({"/a b\n%", kSum, 17, 1000}).ok());
  const auto found = Open().Find("/a b\n%", kSum);
  ASSERT_TRUE(found.has_value());
  EXPECT_EQ(*found, (BlockedProgram{"/a b\n%", kSum, 17, 1000}));
  EXPECT_FALSE(Open().Find("/a b\n%", std::string(64, 'd')).has_value());
  EXPECT_FALSE(Open().Find("/a b\n", kSum).has_value());
}

TEST_F(BlockRecordTest, TheTextIsAsDescribed) {
  BlockRecord record = Open();
  ASSERT_TRUE(record.Add({"/a b", kSum, 17, 1000}).ok());
  EXPECT_EQ(files_.Get(kBlockedPath), WithSum("zendrix-blocks 1\n17\t1000\t" + kSum + "\t/a%20b\n"));
}

TEST_F(BlockRecordTest, TheSameProgramIsNotedOnceWithItsLastMoment) {
  BlockRecord record = Open();
  ASSERT_TRUE(record.Add({"/a", kSum, 1, 1}).ok());
  ASSERT_TRUE(record.Add({"/b", kSum, 2, 1}).ok());
  ASSERT_TRUE(record.Add({"/a", kSum, 3, 2}).ok());
  EXPECT_EQ(ParseBlocks(files_.Get(kBlockedPath)).value(),
            (std::vector<BlockedProgram>{{"/b", kSum, 2, 1}, {"/a", kSum, 3, 2}}));
}

TEST_F(BlockRecordTest, WhatIsForgottenIsGoneAndOnlyThat) {
  BlockRecord record = Open();
  ASSERT_TRUE(record.Add({"/a", kSum, 1, 1}).ok());
  ASSERT_TRUE(record.Add({"/a", std::string(64, 'd'), 1, 1}).ok());
  ASSERT_TRUE(record.Forget("/a", kSum).ok());
  EXPECT_FALSE(Open().Find("/a", kSum).has_value());
  EXPECT_TRUE(Open().Find("/a", std::string(64, 'd')).has_value());
}

TEST_F(BlockRecordTest, TheOldestGoWhenThereAreTooMany) {
  BlockRecord record = Open();
  std::vector<BlockedProgram> full;
  for (std::size_t i = 0; i < BlockRecord::kMost; ++i)
    full.push_back({"/" + std::to_string(i), kSum, static_cast<std::int64_t>(i), 1});
  files_.Put(kBlockedPath, TextOfBlocks(full));
  ASSERT_TRUE(record.Add({"/new", kSum, 9, 1}).ok());
  const auto blocks = ParseBlocks(files_.Get(kBlockedPath)).value();
  EXPECT_EQ(blocks.size(), BlockRecord::kMost);
  EXPECT_EQ(blocks.front().path, "/1");
  EXPECT_EQ(blocks.back().path, "/new");
  full.push_back({"/x", kSum, 1, 1});
  EXPECT_FALSE(ParseBlocks(TextOfBlocks(full)).has_value());
}

TEST_F(BlockRecordTest, EveryChangedByteIsDamage) {
  const std::string text = TextOfBlocks({{"/tmp/x", kSum, 17, 1000}, {"/y", kSum, 18, 0}});
  ASSERT_TRUE(ParseBlocks(text).has_value());
  for (std::size_t i = 0; i < text.size(); ++i) {
    std::string changed = text;
    changed[i] ^= 1;
    EXPECT_FALSE(ParseBlocks(changed).has_value()) << i;
    EXPECT_FALSE(ParseBlocks(text.substr(0, i)).has_value()) << i;
  }
  EXPECT_FALSE(ParseBlocks(text + "\n").has_value());
}

TEST_F(BlockRecordTest, LinesOfAnotherFormAreDamageInSpiteOfAGoodSum) {
  const std::string head = "zendrix-blocks 1\n";
  EXPECT_TRUE(ParseBlocks(WithSum(head)).has_value());
  for (const std::string& line : std::vector<std::string>{
           "17\t1000\t" + kSum + "\trelative\n", "17\t1000\t" + kSum + "\n", "x\t1000\t" + kSum + "\t/x\n",
           "17\t-1\t" + kSum + "\t/x\n", "017\t1000\t" + kSum + "\t/x\n", "17\t1000\t" + kSum + "\t/a b\n",
           "17\t1000\tabc\t/x\n", "17\t1000\t" + kSum + "\t/x%00\n", "17\t1000\t" + kSum + "\t/x\tmore\n"})
    EXPECT_FALSE(ParseBlocks(WithSum(head + line)).has_value()) << line;
}

TEST_F(BlockRecordTest, ADamagedFileIsSetAsideAndANewOneBegins) {
  files_.Put(kBlockedPath, "damaged");
  BlockRecord record = Open();
  EXPECT_FALSE(record.Find("/a", kSum).has_value());
  EXPECT_EQ(files_.Get(Aside()), "damaged");
  ASSERT_TRUE(record.Add({"/a", kSum, 1, 1}).ok());
  EXPECT_TRUE(Open().Find("/a", kSum).has_value());
}

TEST_F(BlockRecordTest, ADamagedFileThatCannotBeSetAsideIsNotOverwritten) {
  files_.Put(kBlockedPath, "damaged");
  files_.FailNext(platform::FileOp::kRename, kBlockedPath, platform::ErrorKind::kNoSpace);
  BlockRecord record = Open();
  EXPECT_FALSE(record.Add({"/a", kSum, 1, 1}).ok());
  EXPECT_EQ(files_.Get(kBlockedPath), "damaged");
  EXPECT_TRUE(record.Add({"/a", kSum, 1, 1}).ok());
}

TEST_F(BlockRecordTest, AFileThatCannotBeReadIsNotTakenForAnEmptyOne) {
  ASSERT_TRUE(Open().Add({"/a", kSum, 1, 1}).ok());
  const std::string before = files_.Get(kBlockedPath);
  for (const auto operation : {platform::FileOp::kSize, platform::FileOp::kRead}) {
    files_.FailNext(operation, kBlockedPath, platform::ErrorKind::kOther, 3);
    BlockRecord record = Open();
    EXPECT_FALSE(record.Find("/a", kSum).has_value());
    EXPECT_FALSE(record.Add({"/b", kSum, 1, 1}).ok());
    EXPECT_FALSE(record.Forget("/a", kSum).ok());
    files_.ClearFaults();
    EXPECT_EQ(files_.Get(kBlockedPath), before);
  }
}

TEST_F(BlockRecordTest, AFullDiskLeavesTheOldRecordAndWhatItSays) {
  BlockRecord record = Open();
  ASSERT_TRUE(record.Add({"/a", kSum, 1, 1}).ok());
  files_.FailNext(platform::FileOp::kWriteAll, kBlockedPath, platform::ErrorKind::kNoSpace, 2);
  EXPECT_FALSE(record.Add({"/b", kSum, 1, 1}).ok());
  EXPECT_FALSE(record.Find("/b", kSum).has_value());
  EXPECT_FALSE(record.Forget("/a", kSum).ok());
  EXPECT_TRUE(record.Find("/a", kSum).has_value());
}

}  // namespace
}  // namespace zendrix::act
