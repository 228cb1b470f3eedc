#include "core/version_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zendrix::core {
namespace {

TEST(FormatVersion, ShowsAZeroBetweenMinorAndRevision) {
  EXPECT_EQ(FormatVersion(1, 0, 1), "1.0.0.1");
  EXPECT_EQ(FormatVersion(12, 34, 567), "12.34.0.567");
  EXPECT_EQ(FormatVersion(0, 0, 0), "0.0.0.0");
}

TEST(FormatVersion, StopsBehindTheMinorWithoutARevision) {
  EXPECT_EQ(FormatVersion(1, 2), "1.2");
}

}  // namespace
}  // namespace zendrix::core
