// Manifests and the paths of a description, as texts.
#include "family/intermediate/manifest.h"
#include "family/intermediate/named_file.h"
#include "family/intermediate/sha256.h"

namespace zendrix::family {
namespace {

Manifest Example() {
  return {"/opt/a tool\n%\t\xff", 1000,           7, 04755, {1099958400, 5}, {-3, 999999999}, 12345,
          Sha256Of("contents"),   {1795238400, 0}};
}

std::string Sealed(const std::string& fields) {
  return fields + "\t" + Sha256Of(fields) + "\n";
}

TEST(ManifestTest, ComesBackAsItWas) {
  const auto read = ManifestOf(LineOf(Example()));
  ASSERT_TRUE(read);
  EXPECT_EQ(read->path, Example().path);
  EXPECT_EQ(read->owner, 1000U);
  EXPECT_EQ(read->group, 7U);
  EXPECT_EQ(read->mode, 04755U);
  EXPECT_EQ(read->accessed.tv_nsec, 5);
  EXPECT_EQ(read->modified.tv_sec, -3);
  EXPECT_EQ(read->size, 12345U);
  EXPECT_EQ(read->sha256, Sha256Of("contents"));
  EXPECT_EQ(read->moved.tv_sec, 1795238400);
}

TEST(ManifestTest, IsOneLineOfPlainFields) {
  const std::string line = LineOf(Example());
  EXPECT_TRUE(
      line.starts_with("1\t/opt/a%20tool%0a%25%09\xff\t1000\t7\t4755\t1099958400.5\t-3.999999999\t12345\t"));
  EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1);
  EXPECT_EQ(std::count(line.begin(), line.end(), '\t'), 10);
}

TEST(ManifestTest, EveryCutLineIsDamaged) {
  const std::string line = LineOf(Example());
  for (std::size_t length = 0; length < line.size(); ++length)
    EXPECT_FALSE(ManifestOf(line.substr(0, length))) << length;
}

TEST(ManifestTest, EveryChangedByteIsDamage) {
  const std::string line = LineOf(Example());
  for (std::size_t i = 0; i < line.size(); ++i)
    for (const char c : {'0', '/', '\t', '\n', '\0', 'x'}) {
      std::string changed = line;
      if (changed[i] == c) continue;
      changed[i] = c;
      EXPECT_FALSE(ManifestOf(changed)) << "byte " << i << " as " << static_cast<int>(c);
    }
}

TEST(ManifestTest, AnotherWayToWriteTheSameIsDamageEvenUnderAGoodHash) {
  const std::string hash = Sha256Of("contents");
  const auto with = [&](const std::string& path, const std::string& numbers) {
    return Sealed("1\t" + path + "\t" + numbers + "\t" + hash + "\t1.0");
  };
  EXPECT_TRUE(ManifestOf(with("/a", "1\t2\t755\t3.0\t4.0\t5")));
  EXPECT_FALSE(ManifestOf(with("/%61", "1\t2\t755\t3.0\t4.0\t5")));
  EXPECT_FALSE(ManifestOf(with("/%0A", "1\t2\t755\t3.0\t4.0\t5")));
  EXPECT_FALSE(ManifestOf(with("/%00", "1\t2\t755\t3.0\t4.0\t5")));
  EXPECT_FALSE(ManifestOf(with("a", "1\t2\t755\t3.0\t4.0\t5")));
  EXPECT_FALSE(ManifestOf(with("/a", "01\t2\t755\t3.0\t4.0\t5")));
  EXPECT_FALSE(ManifestOf(with("/a", "-1\t2\t755\t3.0\t4.0\t5")));
  EXPECT_FALSE(ManifestOf(with("/a", "4294967296\t2\t755\t3.0\t4.0\t5")));
  EXPECT_FALSE(ManifestOf(with("/a", "1\t2\t10755\t3.0\t4.0\t5")));
  EXPECT_FALSE(ManifestOf(with("/a", "1\t2\t789\t3.0\t4.0\t5")));
  EXPECT_FALSE(ManifestOf(with("/a", "1\t2\t755\t3.1000000000\t4.0\t5")));
  EXPECT_FALSE(ManifestOf(with("/a", "1\t2\t755\t3\t4.0\t5")));
  EXPECT_FALSE(ManifestOf(with("/a", "1\t2\t755\t3.0\t4.0\t5\t6")));
}

using testing::ElementsAre;

TEST(PathCandidatesTest, AProgramWithAndWithoutItsNumber) {
  EXPECT_THAT(PathCandidates("/usr/bin/tool"), ElementsAre("/usr/bin/tool"));
  EXPECT_THAT(PathCandidates("/usr/bin/tool:4711"), ElementsAre("/usr/bin/tool:4711", "/usr/bin/tool"));
  EXPECT_THAT(PathCandidates("/usr/bin/tool:"), ElementsAre("/usr/bin/tool:"));
  EXPECT_THAT(PathCandidates("/usr/bin/tool:4x"), ElementsAre("/usr/bin/tool:4x"));
}

TEST(PathCandidatesTest, BehindPortAndAddress) {
  EXPECT_THAT(PathCandidates("443:/usr/bin/tool"), ElementsAre("/usr/bin/tool"));
  EXPECT_THAT(PathCandidates("10.0.0.1:443:/usr/bin/tool"), ElementsAre("/usr/bin/tool"));
  EXPECT_THAT(PathCandidates("::1:443:/usr/bin/tool"), ElementsAre("/usr/bin/tool"));
}

TEST(PathCandidatesTest, BehindAnEqualsSignWithAndWithoutArguments) {
  EXPECT_THAT(PathCandidates("/etc/x.desktop=/opt/my tool --quiet"),
              ElementsAre("/etc/x.desktop=/opt/my tool --quiet", "/opt/my tool --quiet", "/opt/my"));
  EXPECT_THAT(PathCandidates("x=tool"), ElementsAre());
}

TEST(PathCandidatesTest, OnlyABlankInACommandBeginsArguments) {
  EXPECT_THAT(PathCandidates("/opt/my tool"), ElementsAre("/opt/my tool"));
}

TEST(PathCandidatesTest, OnlyPlainAbsolutePaths) {
  for (const std::string_view description :
       {"", "/", "tool", "/a/", "/a/../b", "/a/./b", "CPU 97.25", "443", "=/", ":/"})
    EXPECT_THAT(PathCandidates(description), ElementsAre()) << description;
  EXPECT_THAT(PathCandidates("//a///b"), ElementsAre("/a/b"));
  EXPECT_THAT(PathCandidates(std::string_view("/a\0b", 4)), ElementsAre());
}

TEST(PathCandidatesTest, Windows1252AlsoAsUtf8) {
  EXPECT_THAT(PathCandidates("/caf\xe9"), ElementsAre("/caf\xe9", "/caf\xc3\xa9"));
}

}  // namespace
}  // namespace zendrix::family
