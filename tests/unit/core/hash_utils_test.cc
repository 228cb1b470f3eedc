#include "core/hash_utils.h"

#include "core/run_time_error.h"
#include "platform/memory/faulty_files.h"
#include "platform/memory/memory_family.h"
#include "platform/memory/memory_files.h"
#include "platform/process.h"

namespace zendrix::core {
namespace {

using platform::ErrorKind;
using platform::FaultyFiles;
using platform::FileOp;

constexpr char kFile[] = "/opt/zendrix/zendrix.ini";
constexpr char kSide[] = "/opt/zendrix/zendrix.kvh";
constexpr char kNote[] = "/opt/zendrix/zendrix.ini.pending";
constexpr char kOld[] = "[Misc]\r\nTTour=N\r\n";
constexpr char kNew[] = "[Misc]\r\nTTour=Y\r\n";
// printf 'abc' | sha256sum
constexpr char kHashOfAbc[] = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";

int NumberRaisedBy(const std::function<void()>& body) {
  try {
    body();
  } catch (const RunTimeError& error) {
    return error.number;
  }
  return 0;
}

class HashUtilsTest : public ::testing::Test {
 protected:
  void PutPair(const std::string& bytes) {
    files_.Put(kFile, bytes);
    files_.Put(kSide, family_.HashBytes(bytes) + "\r\n");
  }
  // What a save of kNew leaves behind when the process is killed before its change number `n` (from 1).
  void SaveKilledAt(int n) {
    FaultyFiles dying(files_);
    dying.KillAt(n);
    HashUtils hashes(dying, family_);
    EXPECT_THROW(hashes.SaveWithHash(kFile, kNew), platform::ProcessEnded);
  }

  platform::MemoryFiles files_;
  platform::MemoryFamily family_;
  HashUtils hashes_{files_, family_};
};

TEST(SideFilePath, ReplacesTheExtension) {
  EXPECT_EQ(SideFilePath("/opt/zendrix/KorvessaDesc0.kvl"), "/opt/zendrix/KorvessaDesc0.kvh");
  EXPECT_EQ(SideFilePath("/opt/zendrix/zendrix.ini"), "/opt/zendrix/zendrix.kvh");
}

TEST(SideFilePath, NameWithoutAFolderHasItsExtensionReplaced) {
  EXPECT_EQ(SideFilePath("zendrix.ini"), "zendrix.kvh");
}

TEST(SideFilePath, NameThatBeginsWithItsDotIsAllExtension) {
  EXPECT_EQ(SideFilePath("/opt/zendrix/.kvl"), "/opt/zendrix/.kvh");
}

TEST(SideFilePath, ReplacesItInFolderNamesToo) {
  EXPECT_EQ(SideFilePath("/opt/a.kvl/KorvessaDesc0.kvl"), "/opt/a.kvh/KorvessaDesc0.kvh");
  EXPECT_EQ(SideFilePath("/opt/a.kvl.old/x.kvl"), "/opt/a.kvh.old/x.kvh");
}

TEST(SideFilePath, FilesThatDifferOnlyInExtensionShareIt) {
  EXPECT_EQ(SideFilePath("/opt/a.ini"), SideFilePath("/opt/a.kvl"));
}

TEST(SideFilePath, WithoutAnExtensionEveryDotOfThePathIsReplaced) {
  EXPECT_EQ(SideFilePath("/opt/v1.2/file"), "/opt/v1.kvh2/file");
  EXPECT_EQ(SideFilePath("/opt/file"), "/opt/file");
}

TEST_F(HashUtilsTest, HashIsSha256InLowerCaseHexadecimal) {
  files_.Put("/a.kvl", "abc");
  EXPECT_EQ(hashes_.ComputeFileHash("/a.kvl"), kHashOfAbc);
}

TEST_F(HashUtilsTest, HashOfAMissingFileIsAnInvalidArgument) {
  EXPECT_EQ(NumberRaisedBy([&] { hashes_.ComputeFileHash("/a.kvl"); }), 5);
}

TEST_F(HashUtilsTest, StoredHashIsTheFirstLineOfTheSideFile) {
  files_.Put("/a.kvh", "first\r\nsecond\r\n");
  files_.Put("/b.kvh", "first\nsecond\n");
  files_.Put("/c.kvh", "first");
  EXPECT_EQ(hashes_.ReadStoredHash("/a.kvh"), "first");
  EXPECT_EQ(hashes_.ReadStoredHash("/b.kvh"), "first");
  EXPECT_EQ(hashes_.ReadStoredHash("/c.kvh"), "first");
}

TEST_F(HashUtilsTest, StoredHashOfAMissingOrUnreadableSideFileIsEmpty) {
  EXPECT_EQ(hashes_.ReadStoredHash("/a.kvh"), "");
  files_.Put("/a.kvh", "first\r\n");
  files_.FailNext(FileOp::kOpen, "/a.kvh", ErrorKind::kPermissionDenied);
  EXPECT_EQ(hashes_.ReadStoredHash("/a.kvh"), "");
}

TEST_F(HashUtilsTest, FileWithItsHashVerifies) {
  files_.Put("/a.kvl", "abc");
  files_.Put("/a.kvh", std::string(kHashOfAbc) + "\n");
  EXPECT_TRUE(hashes_.VerifyFileHash("/a.kvl"));
}

TEST_F(HashUtilsTest, VerificationHandsBackTheBytesThatItVerified) {
  PutPair(kOld);
  EXPECT_EQ(hashes_.ReadVerified(kFile), kOld);
  files_.Put(kFile, kNew);
  EXPECT_EQ(hashes_.ReadVerified(kFile), std::nullopt);
  EXPECT_EQ(hashes_.ReadVerified("/nothing.kvl"), std::nullopt);
}

// Users read the file once more behind its verification, and could be given another one then.
TEST_F(HashUtilsTest, FileIsReadOnceForItsVerificationAndItsUse) {
  PutPair(kOld);
  int opened = 0;
  files_.before = [&](FileOp op, const std::string& path) {
    if (op == FileOp::kOpen && path == kFile && ++opened > 1) files_.Put(kFile, kNew);
  };
  EXPECT_EQ(hashes_.ReadVerified(kFile), kOld);
  EXPECT_EQ(opened, 1);
}

TEST_F(HashUtilsTest, VerificationFinishesAnInterruptedSaveFirst) {
  PutPair(kOld);
  SaveKilledAt(3);
  EXPECT_EQ(hashes_.ReadVerified(kFile), kNew);
}

TEST_F(HashUtilsTest, MissingFileDoesNotVerify) {
  files_.Put("/a.kvh", std::string(kHashOfAbc) + "\n");
  EXPECT_FALSE(hashes_.VerifyFileHash("/a.kvl"));
  EXPECT_FALSE(HashUtils(files_, family_).VerifyFileHash("/nothing.kvl"));
}

TEST_F(HashUtilsTest, MissingSideFileDoesNotVerify) {
  files_.Put("/a.kvl", "abc");
  EXPECT_FALSE(hashes_.VerifyFileHash("/a.kvl"));
}

TEST_F(HashUtilsTest, HashIsComparedExactly) {
  files_.Put("/a.kvl", "abc");
  std::string upper = kHashOfAbc;
  upper[0] = 'B';
  files_.Put("/a.kvh", upper);
  EXPECT_FALSE(hashes_.VerifyFileHash("/a.kvl"));
  files_.Put("/a.kvh", std::string(kHashOfAbc) + " ");
  EXPECT_FALSE(hashes_.VerifyFileHash("/a.kvl"));
}

TEST_F(HashUtilsTest, UnreadableFileDoesNotVerify) {
  PutPair(kOld);
  files_.FailNext(FileOp::kRead, kFile, ErrorKind::kPermissionDenied);
  EXPECT_FALSE(hashes_.VerifyFileHash(kFile));
}

TEST_F(HashUtilsTest, SideFileOfAFolderThatHoldsTheExtensionIsLookedForInTheWrongPlace) {
  files_.Put("/opt/a.kvl/x.kvl", "abc");
  files_.Put("/opt/a.kvl/x.kvh", kHashOfAbc);
  EXPECT_FALSE(hashes_.VerifyFileHash("/opt/a.kvl/x.kvl"));
  files_.Put("/opt/a.kvh/x.kvh", kHashOfAbc);
  EXPECT_TRUE(hashes_.VerifyFileHash("/opt/a.kvl/x.kvl"));
}

TEST_F(HashUtilsTest, StoringWritesTheSideFileWithALineEnd) {
  files_.Put("/a.kvl", "abc");
  files_.Put("/a.kvh", "old\r\nrest\r\n");
  hashes_.StoreFileHash("/a.kvl");
  EXPECT_EQ(files_.Get("/a.kvh"), std::string(kHashOfAbc) + "\r\n");
}

TEST_F(HashUtilsTest, StoringTheHashThatIsThereWritesNothing) {
  PutPair(kOld);
  FaultyFiles counting(files_);
  HashUtils hashes(counting, family_);
  hashes.StoreFileHash(kFile);
  hashes.StoreHashOf(kFile, kOld);
  EXPECT_EQ(counting.Operations(), 0);
  hashes.StoreHashOf(kFile, kNew);
  EXPECT_EQ(counting.Operations(), 1);
  EXPECT_EQ(files_.Get(kSide), family_.HashBytes(kNew) + "\r\n");
}

TEST_F(HashUtilsTest, StoringPassesOverAMissingFile) {
  hashes_.StoreFileHash("/a.kvl");
  EXPECT_TRUE(files_.Paths().empty());
}

TEST_F(HashUtilsTest, StoringIsQuietWhenTheSideFileCannotBeWritten) {
  files_.Put("/a.kvl", "abc");
  files_.FailNext(FileOp::kWriteAll, "/a.kvh", ErrorKind::kPermissionDenied);
  hashes_.StoreFileHash("/a.kvl");
  EXPECT_FALSE(files_.Has("/a.kvh"));
}

TEST_F(HashUtilsTest, FileThatWouldBeItsOwnSideFileIsLeftAlone) {
  files_.Put("/opt/file", "abc");
  hashes_.StoreFileHash("/opt/file");
  EXPECT_EQ(files_.Get("/opt/file"), "abc");
  EXPECT_EQ(NumberRaisedBy([&] { hashes_.SaveWithHash("/opt/file", "new"); }), 5);
  EXPECT_EQ(files_.Get("/opt/file"), "abc");
}

TEST_F(HashUtilsTest, SaveChangesFileAndSideFileAndLeavesNothingElse) {
  PutPair(kOld);
  hashes_.SaveWithHash(kFile, kNew);
  EXPECT_EQ(files_.Get(kFile), kNew);
  EXPECT_EQ(files_.Get(kSide), family_.HashBytes(kNew) + "\r\n");
  EXPECT_THAT(files_.Paths(), ::testing::ElementsAre(kFile, kSide));
}

// How many changes one save of kNew over the present files makes.
int ChangesOfASave(platform::MemoryFiles& files, platform::MemoryFamily& family) {
  FaultyFiles counting(files);
  HashUtils(counting, family).SaveWithHash(kFile, kNew);
  return counting.Operations();
}

TEST_F(HashUtilsTest, SaveKilledAtAnyChangeLeavesThePairOldOrNew) {
  PutPair(kOld);
  const int changes = ChangesOfASave(files_, family_);
  ASSERT_GE(changes, 3);
  bool old_seen = false, new_seen = false;
  for (int n = 1; n <= changes; ++n) {
    SCOPED_TRACE(n);
    PutPair(kOld);
    SaveKilledAt(n);
    EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
    EXPECT_FALSE(files_.Has(kNote));
    (files_.Get(kFile) == kNew ? new_seen : old_seen) = true;
    EXPECT_TRUE(files_.Get(kFile) == kNew || files_.Get(kFile) == kOld);
  }
  EXPECT_TRUE(old_seen && new_seen);
}

TEST_F(HashUtilsTest, FinishingKilledAtAnyChangeIsFinishedByTheNextOne) {
  PutPair(kOld);
  const int changes = ChangesOfASave(files_, family_);
  for (int n = 1; n <= changes; ++n) {
    for (int m = 1; m <= 3; ++m) {
      SCOPED_TRACE(std::to_string(n) + "/" + std::to_string(m));
      PutPair(kOld);
      SaveKilledAt(n);
      FaultyFiles dying(files_);
      dying.KillAt(m);
      try {
        HashUtils(dying, family_).FinishInterruptedSave(kFile);
      } catch (const platform::ProcessEnded&) {
        EXPECT_TRUE(dying.Killed());
      }
      EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
      EXPECT_FALSE(files_.Has(kNote));
    }
  }
}

TEST_F(HashUtilsTest, FirstSaveKilledAtAnyChangeLeavesNoFileOrAPairThatVerifies) {
  for (int n = 1; n <= 4; ++n) {
    SCOPED_TRACE(n);
    files_.Vanish(kFile);
    files_.Vanish(kSide);
    SaveKilledAt(n);
    const bool verified = hashes_.VerifyFileHash(kFile);
    EXPECT_EQ(verified, files_.Has(kFile));
    EXPECT_EQ(files_.Get(kFile), verified ? kNew : "");
    EXPECT_FALSE(files_.Has(kNote));
  }
}

TEST_F(HashUtilsTest, SaveAfterAnInterruptedSaveKilledAtAnyChangeVerifies) {
  for (int first = 1; first <= 4; ++first) {
    for (int n = 1; n <= 4; ++n) {
      SCOPED_TRACE(std::to_string(first) + "/" + std::to_string(n));
      PutPair(kOld);
      SaveKilledAt(first);
      FaultyFiles dying(files_);
      dying.KillAt(n);
      try {
        HashUtils(dying, family_).SaveWithHash(kFile, "third\r\n");
      } catch (const platform::ProcessEnded&) {
      }
      EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
    }
  }
}

TEST_F(HashUtilsTest, SaveThatCannotFinishTheEarlierOneRaisesAndKeepsItsNote) {
  PutPair(kOld);
  SaveKilledAt(3);
  files_.FailNext(FileOp::kWriteAll, kSide, ErrorKind::kNoSpace);
  EXPECT_EQ(NumberRaisedBy([&] { hashes_.SaveWithHash(kFile, "third\r\n"); }), 61);
  EXPECT_EQ(files_.Get(kFile), kNew);
  EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
}

TEST_F(HashUtilsTest, SaveRefusedAtAnyChangeRaisesAndLeavesThePairAsItWas) {
  for (int n = 1; n <= 3; ++n) {
    SCOPED_TRACE(n);
    PutPair(kOld);
    FaultyFiles failing(files_);
    failing.FailAt(n, ErrorKind::kPermissionDenied);
    EXPECT_EQ(NumberRaisedBy([&] { HashUtils(failing, family_).SaveWithHash(kFile, kNew); }), 70);
    EXPECT_EQ(files_.Get(kFile), kOld);
    EXPECT_FALSE(files_.Has(kNote));
    EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
  }
}

TEST_F(HashUtilsTest, FirstSaveRefusedAtTheSideFileTakesTheFileAway) {
  files_.FailNext(FileOp::kWriteAll, kSide, ErrorKind::kNoSpace);
  EXPECT_EQ(NumberRaisedBy([&] { hashes_.SaveWithHash(kFile, kNew); }), 61);
  EXPECT_TRUE(files_.Paths().empty());
}

TEST_F(HashUtilsTest, NoteThatCannotBeRemovedDoesNotSpoilTheSave) {
  PutPair(kOld);
  files_.FailNext(FileOp::kRemove, kNote, ErrorKind::kPermissionDenied);
  hashes_.SaveWithHash(kFile, kNew);
  EXPECT_EQ(files_.Get(kFile), kNew);
  EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
  EXPECT_FALSE(files_.Has(kNote));
}

TEST_F(HashUtilsTest, WhenEvenTheOldFileCannotBePutBackTheNextVerificationCompletesTheNewPair) {
  PutPair(kOld);
  files_.FailNext(FileOp::kWriteAll, kSide, ErrorKind::kNoSpace);
  files_.before = [&](FileOp op, const std::string& path) {
    if (op == FileOp::kWriteAll && path == kSide)
      files_.FailNext(FileOp::kWriteAll, kFile, ErrorKind::kNoSpace);
  };
  EXPECT_EQ(NumberRaisedBy([&] { hashes_.SaveWithHash(kFile, kNew); }), 61);
  files_.before = nullptr;
  files_.ClearFaults();
  EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
  EXPECT_EQ(files_.Get(kFile), kNew);
}

TEST_F(HashUtilsTest, FileThatCannotBeReadIsNotReplaced) {
  PutPair(kOld);
  files_.FailNext(FileOp::kRead, kFile, ErrorKind::kPermissionDenied);
  EXPECT_EQ(NumberRaisedBy([&] { hashes_.SaveWithHash(kFile, kNew); }), 70);
  EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
  EXPECT_EQ(files_.Get(kFile), kOld);
}

TEST_F(HashUtilsTest, InterruptedSaveNeverRollsBackALaterWrite) {
  for (int n = 1; n <= 4; ++n) {
    SCOPED_TRACE(n);
    PutPair(kOld);
    SaveKilledAt(n);
    files_.Put(kFile, "later\r\n");
    EXPECT_FALSE(hashes_.VerifyFileHash(kFile));
    EXPECT_EQ(files_.Get(kFile), "later\r\n");
    EXPECT_FALSE(files_.Has(kNote));
  }
}

TEST_F(HashUtilsTest, InterruptedSaveLeavesALaterPairAlone) {
  PutPair(kOld);
  SaveKilledAt(3);
  PutPair("later\r\n");
  EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
  EXPECT_EQ(files_.Get(kFile), "later\r\n");
}

TEST_F(HashUtilsTest, InterruptedSaveDoesNotBringBackADeletedFile) {
  PutPair(kOld);
  SaveKilledAt(3);
  files_.Vanish(kFile);
  EXPECT_FALSE(hashes_.VerifyFileHash(kFile));
  EXPECT_FALSE(files_.Has(kFile));
  EXPECT_FALSE(files_.Has(kNote));
}

TEST_F(HashUtilsTest, InterruptedSaveWaitsForAFileThatCannotBeReadNow) {
  PutPair(kOld);
  SaveKilledAt(3);
  files_.FailNext(FileOp::kOpen, kFile, ErrorKind::kPermissionDenied, 2);
  EXPECT_FALSE(hashes_.VerifyFileHash(kFile));
  EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
  EXPECT_EQ(files_.Get(kFile), kNew);
}

TEST_F(HashUtilsTest, InterruptedSaveWaitsForASideFileThatCannotBeWrittenNow) {
  PutPair(kOld);
  SaveKilledAt(3);
  files_.FailNext(FileOp::kWriteAll, kSide, ErrorKind::kPermissionDenied);
  EXPECT_FALSE(hashes_.VerifyFileHash(kFile));
  EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
}

TEST_F(HashUtilsTest, NoteTornAtAnyByteIsDroppedAndChangesNothing) {
  PutPair(kOld);
  SaveKilledAt(2);
  const std::string whole = files_.Get(kNote);
  ASSERT_FALSE(whole.empty());
  for (std::size_t size = 0; size < whole.size(); ++size) {
    SCOPED_TRACE(size);
    files_.Put(kFile, kNew);  // tampered, unless a whole note says otherwise
    files_.Put(kSide, family_.HashBytes(kOld) + "\r\n");
    files_.Put(kNote, whole.substr(0, size));
    EXPECT_FALSE(hashes_.VerifyFileHash(kFile));
    EXPECT_FALSE(files_.Has(kNote));
  }
}

TEST_F(HashUtilsTest, NoteWithAnyByteChangedIsDropped) {
  PutPair(kOld);
  SaveKilledAt(2);
  const std::string whole = files_.Get(kNote);
  for (std::size_t at = 0; at < whole.size(); ++at) {
    SCOPED_TRACE(at);
    std::string damaged = whole;
    damaged[at] = static_cast<char>(damaged[at] ^ 1);
    files_.Put(kFile, kNew);
    files_.Put(kNote, damaged);
    EXPECT_FALSE(hashes_.VerifyFileHash(kFile));
    EXPECT_FALSE(files_.Has(kNote));
  }
}

TEST_F(HashUtilsTest, PlantedNoteOfAnySizeIsNotReadToItsEnd) {
  PutPair(kOld);
  files_.Put(kNote, std::string(1 << 20, 'x'));
  std::int64_t reads = 0;
  files_.before = [&](FileOp op, const std::string& path) {
    if (op == FileOp::kRead && path == kNote) ++reads;
  };
  EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
  EXPECT_EQ(reads, 1);
  EXPECT_FALSE(files_.Has(kNote));
}

TEST_F(HashUtilsTest, PlantedNoteCannotPutContentsIntoTheFile) {
  PutPair(kOld);
  SaveKilledAt(2);
  const std::string note = files_.Get(kNote);
  PutPair("mine\r\n");
  files_.Put(kNote, note);
  EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
  EXPECT_EQ(files_.Get(kFile), "mine\r\n");
}

TEST_F(HashUtilsTest, LinkPlantedInPlaceOfTheNoteIsTakenAway) {
  PutPair(kOld);
  files_.FailNext(FileOp::kWriteAll, kNote, ErrorKind::kNotRegular);
  int removed = 0;
  files_.before = [&](FileOp op, const std::string& path) {
    if (op == FileOp::kRemove && path == kNote) ++removed;
  };
  hashes_.SaveWithHash(kFile, kNew);
  EXPECT_EQ(removed, 2);  // the link, and the note itself at the end
  EXPECT_EQ(files_.Get(kFile), kNew);
  EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
}

TEST_F(HashUtilsTest, SavingTheSameContentsAgainVerifies) {
  PutPair(kOld);
  for (int n = 1; n <= 4; ++n) {
    FaultyFiles dying(files_);
    dying.KillAt(n);
    EXPECT_THROW(HashUtils(dying, family_).SaveWithHash(kFile, kOld), platform::ProcessEnded);
    EXPECT_TRUE(hashes_.VerifyFileHash(kFile));
  }
}

}  // namespace
}  // namespace zendrix::core
