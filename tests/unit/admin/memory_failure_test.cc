// What is left of the rows when memory runs out in the middle of a load. The failure is real: at one
// allocation of the load, each in its turn.
#include <gtest/gtest.h>

#include <cstdlib>
#include <new>
#include <string>
#include <vector>

#include "admin/grid_loader.h"
#include "admin/system_state.h"
#include "core/run_time_error.h"
#include "platform/memory/memory_family.h"
#include "platform/memory/memory_files.h"

namespace {

thread_local long allocations_until_failure = 0;  // 0: memory does not run out

}  // namespace

[[gnu::noinline]] void* operator new(std::size_t size) {
  if (allocations_until_failure > 0 && --allocations_until_failure == 0) throw std::bad_alloc();
  if (void* memory = std::malloc(size == 0 ? 1 : size)) return memory;
  throw std::bad_alloc();
}

// The one that a sort asks for its buffer; it goes on without.
[[gnu::noinline]] void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  if (allocations_until_failure > 0 && --allocations_until_failure == 0) return nullptr;
  return std::malloc(size == 0 ? 1 : size);
}

[[gnu::noinline]] void operator delete(void* memory) noexcept {
  std::free(memory);
}

[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept {
  std::free(memory);
}

namespace zendrix::admin {
namespace {

// Whether memory ran out at the nth allocation of `act`.
template <class Act>
bool FailsAt(long nth, Act act) {
  allocations_until_failure = nth;
  try {
    act();
  } catch (const std::bad_alloc&) {
    allocations_until_failure = 0;
    return true;
  }
  allocations_until_failure = 0;
  return false;
}

std::string Whole(int i) {
  return "the description of line " + std::to_string(i);
}

std::string FailingLine(int i) {
  return std::to_string(i) + ",HOST " + std::to_string(i / 10) + ",monitor " + std::to_string(i % 3) + ",A," +
         Whole(i) + "\n";
}

struct Loaded {
  Loaded() {
    files.Put("/f", FailingLine(0) + FailingLine(1));
    load.path = "/f";
    load.is_displayed = [](const std::string&) { return std::nullopt; };
    load.serve = [] {};
    loader.ReadAll(load);
  }
  void Poll() { loader.ReadAdded(load); }
  // Every row whole: the cells belong together.
  void ExpectWhole() const {
    ASSERT_EQ(view.DataRows(), static_cast<int>(rows.size()));
    for (int row = 1; row < view.Rows(); ++row) {
      const int line = view.TimeKey(row);
      EXPECT_EQ(view.WholeDescription(row), Whole(line));
      EXPECT_EQ(view.Text(row, kColHostname), "HOST " + std::to_string(line / 10));
      EXPECT_EQ(view.Monitor(row), "Monitor " + std::to_string(line % 3));
      EXPECT_EQ(view.Code(row), "A");
    }
    std::size_t listed = 0;
    for (const char* monitor : {"monitor 0", "monitor 1", "monitor 2"}) {
      for (const std::uint32_t row : rows.RowsOfMonitor(monitor))
        EXPECT_EQ(rows.row(row).time_key % 3, monitor[8] - '0');
      listed += rows.RowsOfMonitor(monitor).size();
    }
    EXPECT_EQ(listed, rows.size());
  }

  platform::MemoryFiles files;
  platform::MemoryFamily family;
  EventRows rows{family, {}};
  EventGrid view{"view", rows};
  store::CUList monitors, hosts, changes;
  GridLoader loader{files, {rows, view, monitors, hosts, changes}};
  GridLoad load;
};

// A block that could not be had was written to all the same.
TEST(MemoryFailureTest, PoolTakesTextsWhereverMemoryRanOut) {
  std::vector<std::string> texts;
  for (int i = 0; i < 3000; ++i) texts.push_back(Whole(i));
  bool failed = true;
  for (long nth = 1; failed; ++nth) {
    store::TextPool pool;
    std::vector<store::TextId> ids(texts.size());
    const auto intern = [&] {
      for (std::size_t i = 0; i < texts.size(); ++i) ids[i] = pool.Intern(texts[i]);
    };
    failed = FailsAt(nth, intern);
    intern();
    for (std::size_t i = 0; i < texts.size(); ++i) {
      ASSERT_EQ(pool.Text(ids[i]), texts[i]);
      ASSERT_EQ(pool.Lookup(texts[i]), ids[i]);
    }
    EXPECT_EQ(pool.size(), texts.size() + 1);
  }
}

// An insert that failed half-way left lists of different lengths.
TEST(MemoryFailureTest, RowsAreWholeWhereverMemoryRunsOut) {
  std::string more;
  for (int i = 2; i < 60; ++i) more += FailingLine(i);
  bool failed = true;
  for (long nth = 1; failed; ++nth) {
    Loaded loaded;
    loaded.files.PutMore("/f", more);
    const GridLoad before = loaded.load;
    failed = FailsAt(nth, [&] { loaded.Poll(); });
    loaded.ExpectWhole();
    if (!failed) {
      EXPECT_EQ(loaded.rows.size(), 60u);
      EXPECT_GT(nth, 20) << "the load asked for memory";
      break;
    }
    const std::uint32_t kept = loaded.rows.size();
    loaded.load = before;
    loaded.Poll();
    EXPECT_EQ(loaded.rows.size(), kept + 58) << "the same lines again";
    loaded.ExpectWhole();
  }
}

TEST(MemoryFailureTest, ViewInAnotherOrderIsWholeWhereverMemoryRunsOut) {
  bool failed = true;
  for (long nth = 1; failed; ++nth) {
    Loaded loaded;
    loaded.view.SortByText(kColWhole, true);
    std::string more;
    for (int i = 2; i < 150; ++i) more += FailingLine(i);
    loaded.files.PutMore("/f", more);
    failed = FailsAt(nth, [&] { loaded.Poll(); });
    loaded.ExpectWhole();
  }
}

TEST(MemoryFailureTest, SortThatFailsLeavesTheOrder) {
  for (const bool merges : {false, true}) {
    bool failed = true;
    for (long nth = 1; failed; ++nth) {
      Loaded loaded;
      std::string more;
      for (int i = 2; i < 30; ++i) more += FailingLine(i);
      loaded.files.PutMore("/f", more);
      loaded.Poll();
      if (merges) {
        loaded.view.SortByText(kColWhole, true);
        loaded.files.PutMore("/f", FailingLine(30) + FailingLine(31));
        loaded.Poll();
      }
      std::vector<std::uint32_t> before;
      for (int row = 1; row < loaded.view.Rows(); ++row) before.push_back(loaded.view.RowNumber(row));
      failed = FailsAt(nth, [&] { loaded.view.SortByText(kColWhole, true); });
      std::vector<std::uint32_t> behind;
      for (int row = 1; row < loaded.view.Rows(); ++row) behind.push_back(loaded.view.RowNumber(row));
      EXPECT_EQ(before == behind, failed) << nth;
    }
  }
}

TEST(MemoryFailureTest, ListOfAMonitorsRowsIsWholeWhereverMemoryRunsOut) {
  bool failed = true;
  for (long nth = 1; failed; ++nth) {
    Loaded loaded;
    (void)loaded.rows.RowsOfMonitor("monitor 0");
    std::string more;
    for (int i = 2; i < 40; ++i) more += FailingLine(i);
    loaded.files.PutMore("/f", more);
    loaded.Poll();
    failed = FailsAt(nth, [&] { (void)loaded.rows.RowsOfMonitor("monitor 1"); });
    loaded.ExpectWhole();
  }
}

// Counts of texts are shared by all monitors of a moment.
TEST(MemoryFailureTest, StateIsAsEverBehindOneThatMemoryRanOutIn) {
  Loaded loaded;
  loaded.files.PutMore("/f", "2,h,one,A,item\n3,h,other,R,item\n4,h,other,A,another\n");
  loaded.Poll();
  const SystemState untouched(loaded.view, 1);
  const auto items = untouched.StateofMonitor("other");
  ASSERT_EQ(items.size(), 1u);
  bool failed = true;
  for (long nth = 1; failed; ++nth) {
    const SystemState state(loaded.view, 1);
    failed = FailsAt(nth, [&] { (void)state.StateofMonitor("one"); });
    EXPECT_EQ(state.StateofMonitor("other"), items) << nth;
  }
}

TEST(MemoryFailureTest, ClearThatFailsKeepsTheRows) {
  bool failed = true;
  for (long nth = 1; failed; ++nth) {
    Loaded loaded;
    failed = FailsAt(nth, [&] { loaded.rows.Clear(); });
    if (failed) loaded.ExpectWhole();
  }
}

}  // namespace
}  // namespace zendrix::admin
