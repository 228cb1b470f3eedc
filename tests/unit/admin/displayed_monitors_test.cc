#include "admin/displayed_monitors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace zendrix::admin {
namespace {

using ::testing::ElementsAre;

TEST(DisplayedMonitorsTest, OnlyTheValueOneCounts) {
  core::Settings settings;
  settings.MonitorStates = {{"System", "1"}, {"Tcp Port", "0"}, {"Folder Contents", "2"}, {"Users", "1"}};
  EXPECT_THAT(DisplayedMonitors(settings), ElementsAre("System", "Users"));
  EXPECT_EQ(DisplayedMonitorCount(settings), 2);
  EXPECT_EQ(DisplayedMonitorIndex(settings, "SYSTEM"), 0);
  EXPECT_EQ(DisplayedMonitorIndex(settings, "users"), 1);
  for (const char* name : {"Tcp Port", "Folder Contents", "Unknown", ""})
    EXPECT_EQ(DisplayedMonitorIndex(settings, name), 999) << name;
}

TEST(DisplayedMonitorsTest, NameThatStandsTwiceHasItsFirstPlace) {
  core::Settings settings;
  settings.MonitorStates = {{"System", "1"}, {"system", "1"}, {"Users", "1"}};
  EXPECT_EQ(DisplayedMonitorIndex(settings, "System"), 0);
  EXPECT_EQ(DisplayedMonitorIndex(settings, "Users"), 2);
  EXPECT_EQ(DisplayedMonitorCount(settings), 3);
}

}  // namespace
}  // namespace zendrix::admin
