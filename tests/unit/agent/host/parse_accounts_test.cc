#include "agent/host/parse_accounts.h"

#include <cstring>

namespace zendrix::agent {
namespace {

std::string Record(std::int16_t kind, const std::string& line, const std::string& user,
                   const std::string& host) {
  std::string bytes(kLoginRecordSize, '\0');
  std::memcpy(bytes.data(), &kind, sizeof kind);
  bytes.replace(8, line.size(), line);
  bytes.replace(44, user.size(), user);
  bytes.replace(76, host.size(), host);
  return bytes;
}

TEST(ParseAccounts, ReadsEachLine) {
  const auto accounts = ParseAccounts(
      "root:x:0:0:root:/root:/bin/bash\npostgres:x:101:104:PostgreSQL "
      "administrator,,,:/var/lib/postgresql:/bin/sh\n");
  ASSERT_EQ(accounts.size(), 2U);
  EXPECT_EQ(accounts[1].name, "postgres");
  EXPECT_EQ(accounts[1].uid, 101U);
  EXPECT_EQ(accounts[1].home, "/var/lib/postgresql");
  EXPECT_EQ(accounts[1].shell, "/bin/sh");
  EXPECT_FALSE(accounts[1].no_password);
}

TEST(ParseAccounts, EmptyPasswordFieldMeansNoPassword) {
  const auto accounts = ParseAccounts("guest::1001:1001::/home/guest:/bin/sh");
  ASSERT_EQ(accounts.size(), 1U);
  EXPECT_TRUE(accounts[0].no_password);
}

TEST(ParseAccounts, DamagedLinesAreLeftOut) {
  EXPECT_TRUE(ParseAccounts("\n::::::\na:x:b:0::/:\na:x:0:0:/root\na:x:-1:0::/:/bin/sh\n+\n").empty());
}

TEST(IsLoginShell, NologinAndFalseAreNone) {
  EXPECT_TRUE(IsLoginShell("/bin/bash"));
  EXPECT_TRUE(IsLoginShell(""));
  EXPECT_FALSE(IsLoginShell("/usr/sbin/nologin"));
  EXPECT_FALSE(IsLoginShell("/bin/false"));
}

TEST(ParseLogins, ReadsUserRecordsOnly) {
  const auto logins = ParseLogins(Record(2, "~", "reboot", "6.1") + Record(7, "tty1", "ann", "") +
                                  Record(8, "tty2", "old", "") + Record(7, "pts/0", "bob", "10.0.0.9"));
  ASSERT_EQ(logins.size(), 2U);
  EXPECT_EQ(logins[0].user, "ann");
  EXPECT_EQ(logins[0].line, "tty1");
  EXPECT_EQ(logins[1].host, "10.0.0.9");
}

TEST(ParseLogins, FieldThatFillsItsWidthNeedsNoEnd) {
  const auto logins = ParseLogins(Record(7, "tty1", std::string(32, 'u'), std::string(256, 'h')));
  ASSERT_EQ(logins.size(), 1U);
  EXPECT_EQ(logins[0].user, std::string(32, 'u'));
  EXPECT_EQ(logins[0].host, std::string(256, 'h'));
}

TEST(ParseLogins, TruncatedTrailingRecordIsIgnored) {
  const std::string record = Record(7, "tty1", "ann", "");
  EXPECT_EQ(ParseLogins(record + record.substr(0, 383)).size(), 1U);
  EXPECT_TRUE(ParseLogins("x").empty());
}

}  // namespace
}  // namespace zendrix::agent
