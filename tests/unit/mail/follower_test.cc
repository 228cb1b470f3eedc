#include "mail/follower.h"

#include "platform/memory/memory_files.h"

namespace zendrix::mail {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::string kFile = "/f/KorvessaMonitoring.kvl";

class Following : public testing::Test {
 protected:
  // Lines handed on by one call; those of a file that took the place of another begin with "!".
  std::vector<std::string> ReadOn() {
    std::vector<std::string> lines;
    last = Follower(files, "/f").ReadOn(position, [&](std::string_view line, bool replaced) {
      lines.push_back((replaced ? "!" : "") + std::string(line));
    });
    position = last.position;
    return lines;
  }
  void Rotate(const std::string& second) {
    ASSERT_TRUE(files.Rename(kFile, "/f/KorvessaMonitoring-" + second + ".kvl"));
  }

  platform::MemoryFiles files;
  Position position;
  Reading last;
};

TEST_F(Following, HandsOnWholeLinesOnce) {
  EXPECT_THAT(ReadOn(), IsEmpty());
  files.Put(kFile, "a\nb\nc");
  EXPECT_THAT(ReadOn(), ElementsAre("a", "b"));
  EXPECT_THAT(ReadOn(), IsEmpty());
  files.PutMore(kFile, "c\nd\n");
  EXPECT_THAT(ReadOn(), ElementsAre("cc", "d"));
  EXPECT_FALSE(last.replaced);
  EXPECT_FALSE(last.more);
}

TEST_F(Following, FirstStartIsBehindWhatIsThere) {
  files.Put(kFile, "a\nb\nc");
  position = Follower(files, "/f").End().value();
  EXPECT_THAT(ReadOn(), IsEmpty());
  files.PutMore(kFile, "d\ne\n");
  EXPECT_THAT(ReadOn(), ElementsAre("cd", "e"));
}

TEST_F(Following, FirstStartInALineOfGreatLengthPassesOverIt) {
  files.Put(kFile, "a\n" + std::string(100000, 'x'));
  position = Follower(files, "/f").End().value();
  files.PutMore(kFile, "1,h,1,Aggregation\nb\n");
  EXPECT_THAT(ReadOn(), ElementsAre("b"));
}

TEST_F(Following, GoesOnThroughFilesThatWerePutAside) {
  files.Put(kFile, "a\nb\n");
  EXPECT_THAT(ReadOn(), ElementsAre("a", "b"));
  files.PutMore(kFile, "c\n");
  Rotate("100");
  files.Put(kFile, "d\n");
  Rotate("200");
  files.Put(kFile, "e\n");
  files.Put("/f/KorvessaMonitoring-50.kvl", "an older one\n");
  files.Put("/f/KorvessaMonitoring-99x.kvl", "none of the Agent's\n");
  EXPECT_THAT(ReadOn(), ElementsAre("c", "d", "e"));
  EXPECT_FALSE(last.replaced);
  EXPECT_THAT(ReadOn(), IsEmpty());
  files.PutMore(kFile, "f\n");
  EXPECT_THAT(ReadOn(), ElementsAre("f"));
}

TEST_F(Following, FileThatIsPutAsideAndNotBegunAnewIsReadToItsEnd) {
  files.Put(kFile, "a\n");
  ReadOn();
  files.PutMore(kFile, "b\n");
  Rotate("100");
  EXPECT_THAT(ReadOn(), ElementsAre("b"));
  EXPECT_THAT(ReadOn(), IsEmpty());
  files.Put(kFile, "c\n");
  EXPECT_THAT(ReadOn(), ElementsAre("c"));
}

TEST_F(Following, ReplacedFileIsReadFromItsBeginningAndToldSo) {
  files.Put(kFile, "aaaa\nbbbb\n");
  ReadOn();
  files.Vanish(kFile);
  files.Put(kFile, "cccc\n");
  EXPECT_THAT(ReadOn(), ElementsAre("!cccc"));
  EXPECT_TRUE(last.replaced);
  files.PutMore(kFile, "d\n");
  EXPECT_THAT(ReadOn(), ElementsAre("d"));
}

// Same name, same number, same length: only the bytes tell.
TEST_F(Following, FileThatWasWrittenOverIsAnother) {
  files.Put(kFile, "aaaa\nbbbb\n");
  ReadOn();
  files.Put(kFile, "xxxx\nyyyy\nzzzz\n");
  EXPECT_THAT(ReadOn(), ElementsAre("!xxxx", "!yyyy", "!zzzz"));
  files.Put(kFile, "s\n");
  EXPECT_THAT(ReadOn(), ElementsAre("!s"));
}

TEST_F(Following, LineOfGreatLengthIsPassedOver) {
  files.Put(kFile, "a\n" + std::string(200000, 'x'));
  EXPECT_THAT(ReadOn(), ElementsAre("a"));
  EXPECT_THAT(ReadOn(), IsEmpty());
  files.PutMore(kFile, "1,h,1,Aggregation\nb\n");
  EXPECT_THAT(ReadOn(), ElementsAre("b"));
}

TEST_F(Following, OneCallReadsABoundedNumberOfBytes) {
  std::string text;
  for (int i = 0; i < 90000; ++i) text += std::string(99, 'x') + "\n";
  files.Put(kFile, text);
  std::size_t lines = ReadOn().size();
  EXPECT_TRUE(last.more);
  EXPECT_LE(lines, 50000U);
  int calls = 1;
  for (; last.more && calls < 10; ++calls) lines += ReadOn().size();
  EXPECT_EQ(lines, 90000U);
  EXPECT_EQ(calls, 3);
}

TEST_F(Following, WhatCannotBeReadLeavesThePosition) {
  files.Put(kFile, "a\n");
  ReadOn();
  files.PutMore(kFile, "b\n");
  const Position before = position;
  files.FailNext(platform::FileOp::kOpen, kFile, platform::ErrorKind::kPermissionDenied);
  EXPECT_THAT(ReadOn(), IsEmpty());
  EXPECT_NE(last.error, "");
  EXPECT_EQ(position, before);
  EXPECT_THAT(ReadOn(), ElementsAre("b"));
}

}  // namespace
}  // namespace zendrix::mail
