#include "agent/host/distinct_name.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "agent/host/text.h"

namespace zendrix::agent {
namespace {

using ::testing::MatchesRegex;

TEST(DistinctNameTest, OrdinaryNamesStayAsTheyAre) {
  EXPECT_EQ(DistinctName("/usr/bin/x_y~1"), "/usr/bin/x_y~1");
  EXPECT_EQ(DistinctName("/home/ann/M\xC3\xBCller"), "/home/ann/M\xFCller");
  EXPECT_EQ(DistinctName("/home/ann/My Game"), "/home/ann/My Game");
  EXPECT_EQ(DistinctName("/memfd:x"), "/memfd_x");
}

TEST(DistinctNameTest, WhatCleaningWouldWriteAlikeIsKeptApart) {
  std::set<std::string> names;
  const std::string begin(150, 'a');
  const std::string end(150, 'b');
  const std::vector<std::string> raw = {"/t/a|b",
                                        "/t/a;b",
                                        "/t/a_b",
                                        "/t/a\xFF"
                                        "b",
                                        "/t/a\xE4\xB8\xAD"
                                        "b",
                                        "/t/a'b",
                                        "/t/a\xE2\x80\x99"
                                        "b",
                                        "/t/ab ",
                                        "/t/ab_",
                                        "/memfd:x",
                                        "/memfd_x",
                                        "/memfd_x:",
                                        "/" + begin + "x" + end,
                                        "/" + begin + "y" + end};
  for (const std::string& name : raw) names.insert(DistinctName(name));
  EXPECT_EQ(names.size(), raw.size());
  EXPECT_THAT(DistinctName("/t/a|b"), MatchesRegex("/t/a_b~[0-9a-f]{12}"));
  for (const std::string& name : names) {
    EXPECT_LE(name.size(), kNameLimit);
    EXPECT_EQ(name.find_first_of("|,;=:*\"\\"), std::string::npos);
  }
}

TEST(DistinctNameTest, NameThatImitatesAnotherIsMarkedItself) {
  const std::string marked = DistinctName("/t/a|b");
  EXPECT_NE(DistinctName(marked), marked);
  EXPECT_NE(DistinctName("/t/a in another mount namespace"), "/t/a in another mount namespace");
  EXPECT_THAT(MarkedName("/t/a"), MatchesRegex("/t/a~[0-9a-f]{12}"));
}

}  // namespace
}  // namespace zendrix::agent
