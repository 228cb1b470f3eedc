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

// "toor::+0:0::/:/bin/sh" logs in as root, and no such account was listed.
TEST(ParseAccounts, NumbersAreReadAsTheSystemReadsThem) {
  const auto uid = [](const std::string& number) {
    const auto accounts = ParseAccounts("a:x:" + number + ":0::/:/bin/sh\n");
    return accounts.size() == 1 && !accounts[0].unreadable ? std::to_string(accounts[0].uid) : "none";
  };
  EXPECT_EQ(uid("+0"), "0");
  EXPECT_EQ(uid(" 0"), "0");
  EXPECT_EQ(uid("-0"), "0");
  EXPECT_EQ(uid("007"), "7");
  EXPECT_EQ(uid("-1"), "4294967295");
  EXPECT_EQ(uid("-18446744073709551615"), "1");
  EXPECT_EQ(uid("99999999999999999999999"), "4294967295");
  for (const char* number : {"", "+", "0 ", "0x0", "+-0", "b"}) EXPECT_EQ(uid(number), "none") << number;
}

TEST(ParseAccounts, ShortAndLongLinesAreReadAsTheSystemReadsThem) {
  const auto accounts = ParseAccounts("  a:x:0:0\nb:x:0:0:g:/h:/bin/sh:more\n#c:x:0:0::/:\n+::::::\n+\n\n");
  ASSERT_EQ(accounts.size(), 2U);
  EXPECT_EQ(accounts[0].name, "a");
  EXPECT_EQ(accounts[0].shell, "");
  EXPECT_EQ(accounts[1].shell, "/bin/sh:more");
}

TEST(ParseAccounts, LineThatCannotBeReadIsTold) {
  const auto accounts = ParseAccounts("a:x:b:0::/:\n::::::\na:x:0:\nroot:x:0:0::/root:/bin/sh\n");
  ASSERT_EQ(accounts.size(), 4U);
  EXPECT_TRUE(accounts[0].unreadable);
  EXPECT_EQ(accounts[0].name, "a:x:b:0::/:");
  EXPECT_TRUE(accounts[2].unreadable);
  EXPECT_FALSE(accounts[3].unreadable);
  std::string many;
  for (int i = 0; i < 500; ++i) many += "x" + std::to_string(i) + "\n";
  EXPECT_EQ(ParseAccounts(many).size(), 20U);
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
