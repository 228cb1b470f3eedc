#include "admin/header_codes.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zendrix::admin {
namespace {

TEST(ColumnCodeOfHeader, KnowsFiveHeaders) {
  EXPECT_EQ(ColumnCodeOfHeader("Date/Time"), 1);
  EXPECT_EQ(ColumnCodeOfHeader("Hostname"), 2);
  EXPECT_EQ(ColumnCodeOfHeader("Monitor"), 3);
  EXPECT_EQ(ColumnCodeOfHeader("Change"), 4);
  EXPECT_EQ(ColumnCodeOfHeader("Description"), 8);
}

TEST(ColumnCodeOfHeader, AnythingElseIs999) {
  EXPECT_EQ(ColumnCodeOfHeader("monitor"), 999);
  EXPECT_EQ(ColumnCodeOfHeader(""), 999);
}

}  // namespace
}  // namespace zendrix::admin
