#include "alerts/monitor_catalogue.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

namespace zendrix::alerts {
namespace {

TEST(MonitorCatalogueTest, EveryNameHasItsPicture) {
  const std::pair<const char*, int> table[] = {{"System", 2},
                                               {"Tcp Connections", 3},
                                               {"Folder Contents", 4},
                                               {"Network Transmission Rate", 5},
                                               {"Logged-on Users", 6},
                                               {"Memory Utilization", 7},
                                               {"Listening Ports", 8},
                                               {"Running Processes", 9},
                                               {"System Users", 10},
                                               {"Tcp Port", 11},
                                               {"Monitor Analysis Agent #1", 12},
                                               {"Monitor Analysis Agent #2", 14},
                                               {"Windows Folder", 4},
                                               {"Test Monitoring Agent", 14},
                                               {"Monitoring Agent", 14},
                                               {"AI Monitor", 14},
                                               {"Autorun Registry", 15},
                                               {"Community", 28},
                                               {"Aggregation", 28}};
  ASSERT_EQ(MonitorNames().size(), std::size(table));
  for (std::size_t i = 0; i < std::size(table); ++i) {
    EXPECT_EQ(MonitorNames()[i], table[i].first);
    EXPECT_EQ(GetImgNumH3(table[i].first), table[i].second) << table[i].first;
  }
}

TEST(MonitorCatalogueTest, LetterCaseDoesNotMatter) {
  EXPECT_EQ(GetImgNumH3("TCP connections"), 3);
  EXPECT_EQ(GetImgNumH3("tcp CONNECTIONS"), 3);
}

TEST(MonitorCatalogueTest, UnknownAndEmptyNamesGetTheLastPicture) {
  EXPECT_EQ(GetImgNumH3(""), 30);
  EXPECT_EQ(GetImgNumH3("Custom Sensor"), 30);
  EXPECT_EQ(GetImgNumH3(" System"), 30);
}

TEST(MonitorCatalogueTest, TwinOfTheAdministratorKnowsThreeNamesFewer) {
  EXPECT_EQ(AdminPicture("System"), 2);
  EXPECT_EQ(AdminPicture("Autorun Registry"), 15);
  for (const char* name : {"AI Monitor", "Community", "Aggregation", "", "x"})
    EXPECT_EQ(AdminPicture(name), 30);
}

// One name unmarked, and the administrator's lists showed its events under the picture of strangers.
TEST(MonitorCatalogueTest, EveryOtherNameHasItsPictureInTheAdministratorsListsToo) {
  const std::set<std::string_view> unknown = {"AI Monitor", "Community", "Aggregation"};
  for (const std::string_view name : MonitorNames()) {
    EXPECT_EQ(AdminPicture(name), unknown.count(name) ? 30 : GetImgNumH3(name)) << name;
    EXPECT_EQ(GridPicture(3, name), unknown.count(name) ? 33 : GetImgNumH3(name) + 3) << name;
  }
}

TEST(MonitorCatalogueTest, GridPicturesOfMonitors) {
  EXPECT_EQ(GridPicture(3, "System"), 5);
  EXPECT_EQ(GridPicture(3, "tcp connections"), 6);
  EXPECT_EQ(GridPicture(3, "Windows Folder"), 7);
  EXPECT_EQ(GridPicture(3, "Monitor Analysis Agent #1"), 15);
  EXPECT_EQ(GridPicture(3, "Test Monitoring Agent"), 17);
  EXPECT_EQ(GridPicture(3, "Autorun Registry"), 18);
  for (const char* name : {"AI Monitor", "Community", "Aggregation", "", "x"})
    EXPECT_EQ(GridPicture(3, name), 33);
}

TEST(MonitorCatalogueTest, GridPicturesOfChangeCodes) {
  EXPECT_EQ(GridPicture(4, "A"), 1);
  EXPECT_EQ(GridPicture(4, "R"), 2);
  EXPECT_EQ(GridPicture(4, "N"), 3);
  EXPECT_EQ(GridPicture(4, "B"), 4);
  for (const char* code : {"a", "", "AA", "X"}) EXPECT_EQ(GridPicture(4, code), 0);
}

TEST(MonitorCatalogueTest, OtherColumnsHaveNoPicture) {
  for (const int column : {0, 1, 2, 5, 6, 7, 8}) EXPECT_EQ(GridPicture(column, "System"), 0);
}

TEST(MonitorCatalogueTest, TagsSayWhatAPictureShows) {
  EXPECT_EQ(PictureTag(28), "bug_red");
  EXPECT_EQ(PictureTag(19), "error");
  for (const int picture : {0, 1, 13, 16, 20, 24, 31}) EXPECT_EQ(PictureTag(picture), "");
}

}  // namespace
}  // namespace zendrix::alerts
