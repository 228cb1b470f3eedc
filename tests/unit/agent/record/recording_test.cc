#include "agent/record/recording.h"

#include <gmock/gmock.h>

#include <sstream>

#include "platform/memory/fake_clock.h"
#include "platform/memory/memory_files.h"

namespace zendrix::agent {
namespace {

using ::testing::EndsWith;

class RecordingTest : public ::testing::Test {
 protected:
  platform::MemoryFiles files;
  platform::FakeClock clock;
  std::ostringstream errors;
  Recording recording{files, clock, errors, "/z", Form::kHome, {"vm", "42"}};
};

TEST_F(RecordingTest, LogBeginsAnewWhenItIsLargeAndTheOneBeforeIsKept) {
  const std::string full(Recording::kMostLogBytes, 'x');
  files.Put("/z/KorvessaEventLog-old.kvl", "older");
  files.Put("/z/KorvessaEventLog.kvl", full);
  recording.Log("one more");
  EXPECT_EQ(files.Get("/z/KorvessaEventLog-old.kvl"), full);
  EXPECT_THAT(files.Get("/z/KorvessaEventLog.kvl"), EndsWith(",vm,42,one more\r\n"));
  recording.Log("and another");
  EXPECT_EQ(files.Get("/z/KorvessaEventLog-old.kvl"), full);
}

}  // namespace
}  // namespace zendrix::agent
