#include "agent/score/packages.h"

#include "agent/score/program_files.h"
#include "unit/agent/score/scored_host.h"

namespace zendrix::agent {
namespace {

class PackagesTest : public testing::Test {
 protected:
  std::optional<Packages::Owner> OwnerOf(const std::string& path) {
    return packages.OwnerOf(path, ScoredHost::Md5Of(pc.host.texts[path]));
  }
  ScoredHost pc;
  Packages packages{pc.host};
};

TEST_F(PackagesTest, FileOfAPackageIsUnchangedAsLongAsItsSumIsThePackages) {
  pc.Install("tool:amd64", {{"/usr/bin/tool", "as built"}, {"/usr/share/tool/data", "d"}});
  const auto owner = OwnerOf("/usr/bin/tool");
  ASSERT_TRUE(owner);
  EXPECT_EQ(owner->package, "tool:amd64");
  EXPECT_TRUE(owner->unchanged);
  EXPECT_EQ(owner->installed, pc.utc);
  pc.Put("/usr/bin/tool", "altered");
  EXPECT_FALSE(OwnerOf("/usr/bin/tool")->unchanged);
  EXPECT_FALSE(packages.OwnerOf("/usr/bin/tool", "")->unchanged) << "a sum that could not be had";
}

TEST_F(PackagesTest, FileThatThePackageGivesNoSumOfCountsAsUnchanged) {
  pc.Install("tool", {{"/usr/bin/tool", "x"}});
  pc.host.texts["/var/lib/dpkg/info/tool.list"] += "/etc/cron.d/tool\n";
  EXPECT_TRUE(OwnerOf("/etc/cron.d/tool")->unchanged);
}

TEST_F(PackagesTest, RecordsFromBeforeTheFoldersBecameOneAreUnderstood) {
  pc.Install("old", {{"/bin/old", "x"}});
  pc.Put("/usr/bin/old", "x");
  EXPECT_TRUE(OwnerOf("/usr/bin/old")->unchanged);
  pc.Install("new", {{"/usr/lib/new", "y"}});
  pc.Put("/lib/new", "y");
  EXPECT_TRUE(OwnerOf("/lib/new")->unchanged);
}

TEST_F(PackagesTest, FileOfNoPackageHasNoOwner) {
  pc.Install("tool", {{"/usr/bin/tool", "x"}});
  EXPECT_FALSE(OwnerOf("/usr/bin/tool2"));
  EXPECT_FALSE(OwnerOf("/usr/bin"));
  EXPECT_FALSE(OwnerOf(""));
  EXPECT_FALSE(OwnerOf("relative"));
  EXPECT_FALSE(OwnerOf("/usr/bin/tool\n/usr/bin/tool"));
}

TEST_F(PackagesTest, WhatIsInstalledAndRemovedMeanwhileIsFollowed) {
  pc.Install("one", {{"/usr/bin/one", "1"}});
  EXPECT_TRUE(OwnerOf("/usr/bin/one"));
  pc.utc += 100;
  pc.Install("two", {{"/usr/bin/two", "2"}});
  EXPECT_TRUE(OwnerOf("/usr/bin/two"));
  EXPECT_EQ(OwnerOf("/usr/bin/two")->installed, OwnerOf("/usr/bin/one")->installed + 100);
  pc.host.texts.erase("/var/lib/dpkg/info/one.list");
  pc.host.facts.erase("/var/lib/dpkg/info/one.list");
  pc.Install("three", {{"/usr/bin/three", "3"}});
  EXPECT_FALSE(OwnerOf("/usr/bin/one"));
  pc.utc += 100;
  pc.Install("one", {{"/usr/bin/one", "1b"}});
  EXPECT_TRUE(OwnerOf("/usr/bin/one")->unchanged);
}

TEST_F(PackagesTest, HostWithoutRecordsHasNoOwners) {
  EXPECT_FALSE(OwnerOf("/usr/bin/x"));
}

TEST_F(PackagesTest, ProgramsAreReadAgainWhenTheyChangedAndNotBefore) {
  ProgramFiles files(pc.host);
  pc.Install("tool", {{"/usr/bin/tool", "one"}});
  const Contents first = files.Of("/usr/bin/tool", 0);
  EXPECT_EQ(first.sha256, Sha256Of("one"));
  EXPECT_EQ(first.package.name, "tool");
  EXPECT_TRUE(first.package.unchanged);
  pc.host.texts["/usr/bin/tool"] = "two";  // with the time and size of before
  EXPECT_EQ(files.Of("/usr/bin/tool", 5000).sha256, first.sha256);
  pc.Put("/usr/bin/tool", "two");
  EXPECT_EQ(files.Of("/usr/bin/tool", 5500).sha256, first.sha256) << "looked at within this second";
  EXPECT_EQ(files.Of("/usr/bin/tool", 6000).sha256, Sha256Of("two"));
  EXPECT_FALSE(files.Of("/usr/bin/tool", 7000).package.unchanged);
  EXPECT_EQ(files.Of("an unknown program", 7000).sha256, "");
  EXPECT_EQ(files.Of("/gone", 7000).sha256, "");
}

TEST_F(PackagesTest, NoMoreIsReadInASecondThanSoMuch) {
  ProgramFiles files(pc.host);
  for (const char* path : {"/tmp/a", "/tmp/b", "/tmp/c"}) {
    pc.Put(path, path);
    pc.host.facts[path].size = 40 << 20;
  }
  EXPECT_NE(files.Of("/tmp/a", 0).sha256, "");
  EXPECT_NE(files.Of("/tmp/b", 0).sha256, "");
  EXPECT_EQ(files.Of("/tmp/c", 999).sha256, "");
  EXPECT_NE(files.Of("/tmp/c", 1000).sha256, "");
}

}  // namespace
}  // namespace zendrix::agent
