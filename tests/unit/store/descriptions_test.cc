#include "store/descriptions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <new>

#include "core/desc_lookup.h"
#include "core/hash_utils.h"
#include "core/run_time_error.h"
#include "support/store_fixture.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class DescriptionsTest : public StoreFixture {
 protected:
  void PutDesc(int n, const std::string& bytes) {
    platform_.files.Put(store::DescPath(state_, n), bytes);
    core::HashUtils(platform_.files, platform_.family).StoreFileHash(store::DescPath(state_, n));
  }
  void LoadArrays() { store::LoadDescArrays(state_, log_); }
  std::string Lookup(int n, const std::string& key) {
    std::string text;
    return core::DescLookup(state_.Desc[static_cast<std::size_t>(n)], key, text) ? text : "(none)";
  }
};

TEST_F(DescriptionsTest, NineFilesAreLoadedAndTheOthersAreNot) {
  for (int n = 0; n <= 10; ++n) PutDesc(n, "line " + std::to_string(n));
  LoadArrays();
  for (const int n : {0, 1, 2, 4, 5, 6, 7, 9, 10}) {
    EXPECT_THAT(state_.Desc[static_cast<std::size_t>(n)], ElementsAre("line " + std::to_string(n)));
  }
  EXPECT_THAT(state_.Desc[3], IsEmpty());
  EXPECT_THAT(state_.Desc[8], IsEmpty());
}

TEST_F(DescriptionsTest, TrailingLineEndGivesOneMoreEmptyLine) {
  PutDesc(1, "0,1,first\r\n0,2,second\r\n");
  LoadArrays();
  EXPECT_THAT(state_.Desc[1], ElementsAre("0,1,first", "0,2,second", ""));
  EXPECT_EQ(Lookup(1, "0,2,"), "second");
  EXPECT_EQ(Lookup(1, "0,3,"), "(none)");
}

TEST_F(DescriptionsTest, OnlyCarriageReturnAndLineFeedTogetherEndALine) {
  PutDesc(1, "a\nb\r\nc\rd");
  LoadArrays();
  EXPECT_THAT(state_.Desc[1], ElementsAre("a\nb", "c\rd"));
}

TEST_F(DescriptionsTest, MissingFileLeavesItsArray) {
  state_.Desc[1] = {"kept"};
  LoadArrays();
  EXPECT_THAT(state_.Desc[1], ElementsAre("kept"));
}

TEST_F(DescriptionsTest, FileWithoutSideFileIsABadHash) {
  state_.Desc[1] = {"old"};
  platform_.files.Put(store::DescPath(state_, 1), "0,1,text");
  LoadArrays();
  ExpectLog("'Initial:LoadDescArrays': Error: stored hash does not match for /app/KorvessaDesc1.kvl");
  EXPECT_THAT(state_.Desc[1], IsEmpty());
}

TEST_F(DescriptionsTest, ChangedFileIsABadHashAndTheOthersAreLoaded) {
  PutDesc(1, "0,1,text");
  PutDesc(2, "two");
  platform_.files.Put(store::DescPath(state_, 1), "0,1,other");
  LoadArrays();
  ExpectLog("'Initial:LoadDescArrays': Error: stored hash does not match for /app/KorvessaDesc1.kvl");
  EXPECT_THAT(state_.Desc[1], IsEmpty());
  EXPECT_THAT(state_.Desc[2], ElementsAre("two"));
}

TEST_F(DescriptionsTest, FileThatCannotBeReadIsABadHash) {
  PutDesc(1, "0,1,text");
  platform_.files.FailNext(platform::FileOp::kRead, store::DescPath(state_, 1),
                           platform::ErrorKind::kPermissionDenied);
  LoadArrays();
  ExpectLog("'Initial:LoadDescArrays': Error: stored hash does not match for /app/KorvessaDesc1.kvl");
  EXPECT_THAT(state_.Desc[1], IsEmpty());
}

// The file was read once for its hash and once more for its lines: whoever exchanged it in between had his
// own words shown.
TEST_F(DescriptionsTest, FileThatChangesBehindItsVerificationIsUsedAsItWasVerified) {
  PutDesc(1, "0,1,text");
  int opened = 0;
  platform_.files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kOpen && path == store::DescPath(state_, 1) && ++opened > 1)
      platform_.files.Put(path, "0,1,other");
  };
  LoadArrays();
  EXPECT_THAT(state_.Desc[1], ElementsAre("0,1,text"));
  EXPECT_EQ(opened, 1);
}

TEST_F(DescriptionsTest, RunTimeErrorIsFatal) {
  PutDesc(1, "0,1,text");
  platform_.files.before = [&](platform::FileOp op, const std::string& path) {
    if (op == platform::FileOp::kOpen && path == store::DescPath(state_, 1)) throw std::bad_alloc();
  };
  ExpectFatal([this] { LoadArrays(); }, "Initial:LoadDescArrays", 7);
}

// The log is single-byte text, and the folder's name stood in it in the host's own bytes.
TEST_F(DescriptionsTest, FolderWithLettersBeyondAsciiIsLoggedInTheLogsCodePage) {
  state_.ProgramFolder =
      "/Gr\xC3\xBC\xC3\x9F"
      "e";
  platform_.files.Put(store::DescPath(state_, 1), "0,1,text");
  LoadArrays();
  ExpectLog(
      "'Initial:LoadDescArrays': Error: stored hash does not match for /Gr\xFC\xDF"
      "e/KorvessaDesc1.kvl");
}

TEST_F(DescriptionsTest, ExtensionIsReplacedInTheWholePath) {
  EXPECT_EQ(core::SideFilePath("/app.kvl/KorvessaDesc1.kvl"), "/app.kvh/KorvessaDesc1.kvh");
  state_.ProgramFolder = "/app.kvl";
  platform_.files.Put("/app.kvl/KorvessaDesc1.kvl", "text");
  platform_.files.Put("/app.kvl/KorvessaDesc1.kvh", platform_.family.HashBytes("text") + "\r\n");
  LoadArrays();
  ExpectLog("'Initial:LoadDescArrays': Error: stored hash does not match for /app.kvl/KorvessaDesc1.kvl");
}

TEST_F(DescriptionsTest, PositionLookupDoesNotTestTheLength) {
  PutDesc(0, "x\r\n0,zero\r\n1,one\r\nother");
  LoadArrays();
  EXPECT_EQ(core::DescAt(state_.Desc[0], 1), "zero");
  EXPECT_EQ(core::DescAt(state_.Desc[0], 2), "one");
  EXPECT_EQ(core::DescAt(state_.Desc[0], 3), "");
  try {
    core::DescAt(state_.Desc[0], 7);
    FAIL();
  } catch (const core::RunTimeError& error) {
    EXPECT_EQ(error.number, core::kSubscriptOutOfRange);
  }
}

}  // namespace
}  // namespace zendrix::test
