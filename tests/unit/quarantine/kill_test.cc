// The process is killed at every single system call of an operation, before it and after it. Whatever the
// moment: the file is in its place as it was, or there is a complete entry; what is visible in its place is
// never half a file; and the next operation brings what was begun to an end.
#include <sys/xattr.h>

#include <cerrno>
#include <tuple>

#include "support/sanitizers.h"
#include "unit/quarantine/quarantine_fixture.h"
#include "unit/quarantine/traced_child.h"

namespace zendrix::family {
namespace {

// Every stop in ordinary builds. Sanitizers add system calls of their own and make every child slow: every
// 11th there, beginning at another one for each operation.
constexpr int kStride = test::kSanitized ? 11 : 1;
// An operation has many more.
constexpr int kFewestStops = 60;

// Within one file system and across two, each in parts that take their turns at the stops.
constexpr int kParts = 4;

class KillTest : public QuarantineTest, public testing::WithParamInterface<std::tuple<bool, int>> {
 protected:
  // Two blocks and a bit, so that there are stops within a copy.
  KillTest() : QuarantineTest(std::get<0>(GetParam())), contents_(150000, 'z') { contents_[70000] = '\n'; }

  void Fresh() {
    path_ = Make("tool", contents_, 04755);
    if (geteuid() == 0) {
      // The entry becomes the superuser's, which is a step of its own.
      ASSERT_EQ(chown(path_.c_str(), test::kNobody, test::kNobody), 0);
      ASSERT_EQ(chmod(path_.c_str(), 04755), 0);
      ClickAs(test::kNobody);
    }
    ASSERT_EQ(setxattr(path_.c_str(), "user.note", "n", 1, 0) == 0 || errno == ENOTSUP, true);
    has_note_ = HasNote();
    before_ = LookAt(path_);
  }

  bool HasNote() const { return getxattr(path_.c_str(), "user.note", nullptr, 0) == 1; }

  bool HasWholeEntry() const {
    const int store = open(store_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const Descriptor closer(store);
    if (store < 0) return false;
    const auto entry = FindEntry(store, {path_});
    return entry && entry->manifest.mode == 04755 && HoldsInSpite(store, entry->name, entry->manifest);
  }

  void ExpectNothingLost(int stop) {
    const Look now = LookAt(path_);
    if (now.there) {
      EXPECT_EQ(now, before_) << "stop " << stop;
    } else {
      EXPECT_TRUE(HasWholeEntry()) << "stop " << stop;
    }
  }

  // Whatever was interrupted, one further Allow brings the file back and leaves nothing behind.
  void ExpectPutRightByPutBack(int stop) {
    const bool in_place = LookAt(path_).there;
    const Outcome outcome = PutBack(path_);
    EXPECT_NE(outcome.done, in_place) << "stop " << stop << ": " << outcome.text;
    ExpectAllInPlace(stop);
  }

  // The other next operation: a further Block works if the file is in its place; afterwards it is in
  // quarantine.
  void ExpectPutRightByPutAway(int stop) {
    const bool in_place = LookAt(path_).there;
    const Outcome outcome = PutAway(path_);
    EXPECT_TRUE(outcome.done || !in_place) << "stop " << stop << ": " << outcome.text;
    EXPECT_FALSE(LookAt(path_).there) << "stop " << stop;
    EXPECT_EQ(Stored().size(), 2U) << "stop " << stop << testing::PrintToString(Stored());
    EXPECT_EQ(NamesOf(files_), std::vector<std::string>()) << "stop " << stop;
    EXPECT_EQ(LookAt(TheEntry()).mode & 07777U, 0U) << "stop " << stop;
    EXPECT_EQ(LookAt(TheEntry()).owner, geteuid()) << "stop " << stop;
    EXPECT_TRUE(PutBack(path_).done) << "stop " << stop;
    ExpectAllInPlace(stop);
  }

  void ExpectAllInPlace(int stop) {
    EXPECT_EQ(LookAt(path_), before_) << "stop " << stop;
    EXPECT_EQ(HasNote(), has_note_) << "stop " << stop;
    EXPECT_EQ(Stored(), std::vector<std::string>()) << "stop " << stop;
    EXPECT_EQ(NamesOf(files_), std::vector<std::string>{"tool"}) << "stop " << stop;
  }

  template <class Prepare, class Operation>
  void KillAtEveryStop(Prepare&& prepare, Operation&& operation) {
    int stop = 1 + std::get<1>(GetParam()) * kStride;
    for (;; stop += kParts * kStride) {
      prepare();
      const bool ended = test::RunTraced(operation, [&](const test::Stop& at) { return at.number != stop; });
      ExpectNothingLost(stop);
      if (stop % 2 == 0) {
        ExpectPutRightByPutBack(stop);
      } else {
        ExpectPutRightByPutAway(stop);
      }
      if (ended || HasFailure()) break;
    }
    EXPECT_GT(stop, kFewestStops);
  }

  std::string contents_;
  std::string path_;
  Look before_;
  bool has_note_ = false;
};

TEST_P(KillTest, AKillDuringBlockLeavesTheFileInItsPlaceOrAWholeEntry) {
  KillAtEveryStop([&] { Fresh(); }, [&] { PutAway(path_); });
}

TEST_P(KillTest, AKillDuringAllowLeavesAWholeEntryOrTheFileInItsPlace) {
  KillAtEveryStop(
      [&] {
        Fresh();
        ASSERT_TRUE(PutAway(path_).done);
      },
      [&] { PutBack(path_); });
}

std::string KillName(const testing::TestParamInfo<KillTest::ParamType>& part) {
  return WayName({std::get<0>(part.param), part.index}) + "Part" + std::to_string(std::get<1>(part.param));
}

INSTANTIATE_TEST_SUITE_P(Quarantine, KillTest, testing::Combine(testing::Bool(), testing::Range(0, kParts)),
                         KillName);

}  // namespace
}  // namespace zendrix::family
