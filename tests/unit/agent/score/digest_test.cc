#include "agent/score/digest.h"

#include <gtest/gtest.h>

#include "unit/agent/fake_host.h"

namespace zendrix::agent {
namespace {

// The sums of "abc" as FIPS 180-4 and RFC 1321 give them.
constexpr char kSha256[] = "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad";
constexpr char kMd5[] = "900150983cd24fb0d6963f7d28e17f72";

TEST(DigestTest, ShortSumIsTheBeginningOfTheSum) {
  EXPECT_EQ(Sha256Of("abc"), kSha256);
  EXPECT_EQ(ShortSumOf("abc"), 0xba7816bf8f01cfeaU);
  EXPECT_EQ(ShortSumOf(""), 0xe3b0c44298fc1c14U);
  EXPECT_EQ(ShortSumOf("abc"), 0xba7816bf8f01cfeaU) << "the sum before leaves nothing behind";
}

TEST(DigestTest, FileIsSummedInBothWaysOnlyWhenBothAreAskedFor) {
  FakeHost host;
  host.texts["/usr/bin/abc"] = "abc";
  const auto both = SumsOfFile(host, "/usr/bin/abc", 100, true);
  ASSERT_TRUE(both);
  EXPECT_EQ(both->sha256, kSha256);
  EXPECT_EQ(both->md5, kMd5);
  const auto one = SumsOfFile(host, "/usr/bin/abc", 100, false);
  ASSERT_TRUE(one);
  EXPECT_EQ(one->sha256, kSha256);
  EXPECT_EQ(one->md5, "");
  EXPECT_FALSE(SumsOfFile(host, "/usr/bin/abc", 2, true)) << "too large";
}

}  // namespace
}  // namespace zendrix::agent
