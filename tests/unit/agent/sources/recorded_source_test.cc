#include "agent/sources/memory/recorded_source.h"

#include "agent/score/rules.h"
#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

TEST(RecordedSource, PlaysEachObservationOnceAndInOrder) {
  RecordedSource source({monitor::kProcesses}, {Level::kEvents, "test", ""});
  source.Came(MakeItem(monitor::kProcesses, "/bin/x:7"));
  source.Went(MakeItem(monitor::kProcesses, "/bin/x:7"));
  source.Lost(3);
  std::vector<Observation> seen;
  source.Drain(seen);
  ASSERT_EQ(seen.size(), 3U);
  EXPECT_EQ(seen[0].kind, Observation::Kind::kCame);
  EXPECT_EQ(seen[0].item.description, "/bin/x:7");
  EXPECT_EQ(seen[1].kind, Observation::Kind::kWent);
  EXPECT_EQ(seen[2].lost, 3U);
  source.Drain(seen);
  EXPECT_EQ(seen.size(), 3U);
}

}  // namespace
}  // namespace zendrix::agent
