#include "agent/host/places.h"

#include <gtest/gtest.h>

namespace zendrix::agent {
namespace {

TEST(PlacesTest, InterpretersAreKnownByNameWithoutTheirNumber) {
  for (const char* path :
       {"/usr/bin/python3.11", "/bin/sh", "/usr/bin/perl", "/opt/x/node", "/usr/bin/ruby3.1"})
    EXPECT_TRUE(IsInterpreter(path)) << path;
  for (const char* path :
       {"/usr/bin/ssh", "/usr/lib/firefox-esr/firefox-esr", "/usr/bin/python3-config", "/usr/bin/7"})
    EXPECT_FALSE(IsInterpreter(path)) << path;
}

TEST(PlacesTest, LoadersAreKnownByName) {
  for (const char* path : {"/usr/lib/x86_64-linux-gnu/ld-linux-x86-64.so.2", "/lib/ld-musl-x86_64.so.1",
                           "/usr/lib/x86_64-linux-gnu/ld-2.31.so", "/usr/bin/ld.so", "/lib64/ld64.so.2"})
    EXPECT_TRUE(IsLoader(path)) << path;
  for (const char* path : {"/usr/bin/ld", "/usr/bin/ldd", "/usr/lib/ldb.so.1", "/usr/bin/ld-tool"})
    EXPECT_FALSE(IsLoader(path)) << path;
}

TEST(PlacesTest, SpellingsOfATemporaryFolderAreSeenThrough) {
  for (const char* path : {"/tmp/x", "/tmp/a/b", "//tmp/x", "/tmp//x", "/./tmp/x", "/tmp/./x",
                           "/usr/../tmp/x", "/tmp/../usr/bin/x", "/tmp/.x", "/tmp/x/../y"})
    EXPECT_TRUE(InTemporaryFolder(path)) << path;
  for (const char* path : {"/usr/bin/x", "/tmp", "/tmp/", "/tmpx/y", "tmp/x", "/", "", "/usr/tmp/x"})
    EXPECT_FALSE(InTemporaryFolder(path)) << path;
}

TEST(PlacesTest, SystemFolderIsNoneBehindAStepUp) {
  for (const char* path :
       {"/usr/bin/x", "//usr/bin/x", "/usr/./bin/x", "/./usr/bin/x", "/usr/lib/.x", "/opt/a/b"})
    EXPECT_TRUE(InSystemFolder(path)) << path;
  for (const char* path : {"/usr/../home/x", "/usr", "/usr/", "/usrx/y", "usr/bin/x", "/home/usr/x", "", "/"})
    EXPECT_FALSE(InSystemFolder(path)) << path;
}

TEST(PlacesTest, FolderOfALogInIsTemporary) {
  EXPECT_TRUE(InTemporaryFolder("/run/user/1000/x"));
  EXPECT_FALSE(InTemporaryFolder("/run/systemd/x"));
}

}  // namespace
}  // namespace zendrix::agent
