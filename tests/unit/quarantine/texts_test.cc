// Manifests and the paths of a description, as texts.
#include "family/intermediate/manifest.h"
#include "family/intermediate/named_file.h"
#include "family/intermediate/sha256.h"
#include "family/intermediate/subject.h"

namespace zendrix::family {
namespace {

Manifest Example() {
  return {"/opt/a tool\n%\t\xff",
          1000,
          7,
          04755,
          {1099958400, 5},
          {-3, 999999999},
          12345,
          Sha256Of("contents"),
          {1795238400, 0},
          2,
          "17952 %",
          1795238000};
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
  EXPECT_EQ(read->alert, "17952 %");
  EXPECT_EQ(read->event, 1795238000);
}

TEST(ManifestTest, IsOneLineOfPlainFields) {
  const std::string line = LineOf(Example());
  EXPECT_TRUE(
      line.starts_with("2\t/opt/a%20tool%0a%25%09\xff\t1000\t7\t4755\t1099958400.5\t-3.999999999\t12345\t"));
  EXPECT_EQ(std::count(line.begin(), line.end(), '\n'), 1);
  EXPECT_EQ(std::count(line.begin(), line.end(), '\t'), 12);
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

TEST(ManifestTest, OlderOnesWithoutAlertAndEventAreStillRead) {
  const std::string line = Sealed("1\t/a\t1\t2\t755\t3.0\t4.0\t5\t" + Sha256Of("contents") + "\t1.0");
  const auto read = ManifestOf(line);
  ASSERT_TRUE(read);
  EXPECT_EQ(read->path, "/a");
  EXPECT_EQ(read->alert, "");
  EXPECT_FALSE(read->event.has_value());
  EXPECT_EQ(LineOf(*read), line);
}

TEST(ManifestTest, AnEventWhoseMomentIsNotKnownHasNone) {
  Manifest manifest = Example();
  manifest.event.reset();
  manifest.alert = "";
  const auto read = ManifestOf(LineOf(manifest));
  ASSERT_TRUE(read);
  EXPECT_FALSE(read->event.has_value());
  const std::string fields = "\t/a\t1\t2\t755\t3.0\t4.0\t5\t" + Sha256Of("contents") + "\t1.0";
  EXPECT_TRUE(ManifestOf(Sealed("2" + fields + "\t\t")));
  EXPECT_FALSE(ManifestOf(Sealed("2" + fields + "\t\tx")));
  EXPECT_FALSE(ManifestOf(Sealed("2" + fields + "\t%00\t")));
  EXPECT_FALSE(ManifestOf(Sealed("2" + fields)));
  EXPECT_FALSE(ManifestOf(Sealed("1" + fields + "\t\t")));
  EXPECT_FALSE(ManifestOf(Sealed("3" + fields + "\t\t")));
}

using testing::ElementsAre;

std::vector<std::string> PathsNamed(const std::string& monitor, const std::string& description) {
  return PathsOf(Event{monitor, description, std::nullopt, "", true});
}

std::string WhyNoPaths(const std::string& monitor, const std::string& description) {
  try {
    return testing::PrintToString(PathsNamed(monitor, description));
  } catch (const Refused& refused) {
    return refused.sentence;
  }
}

TEST(PathsOfTest, AProgramAndItsNumberMayBeAFileOfThatWholeName) {
  EXPECT_THAT(PathsNamed("Running Processes", "/usr/bin/tool"), ElementsAre("/usr/bin/tool"));
  EXPECT_THAT(PathsNamed("Running Processes", "/usr/bin/tool:4711"),
              ElementsAre("/usr/bin/tool", "/usr/bin/tool:4711"));
  EXPECT_THAT(PathsNamed("Running Processes", "/usr/bin/tool:4x"), ElementsAre("/usr/bin/tool:4x"));
}

TEST(PathsOfTest, EachMonitorIsReadAsItsPageReadsIt) {
  EXPECT_THAT(PathsNamed("Listening Ports", "443:/usr/bin/tool"), ElementsAre("/usr/bin/tool"));
  EXPECT_THAT(PathsNamed("TCP Connections", "10.0.0.1:443:/usr/bin/tool"), ElementsAre("/usr/bin/tool"));
  EXPECT_THAT(PathsNamed("Windows Folder", "/a:b=c:7"), ElementsAre("/a:b=c:7"));
  EXPECT_THAT(PathsNamed("TCP Connections", "2001:db8::1:443:/usr/bin/tool"), ElementsAre());
}

// A click on an alert about an autostart entry took the program that the entry starts: the system's archiver.
TEST(PathsOfTest, OfAnAutostartEventTheEntryIsMeantAndNeverItsCommand) {
  EXPECT_THAT(PathsNamed("Autorun Registry", "/home/u/x.desktop=/usr/bin/tar -x"),
              ElementsAre("/home/u/x.desktop"));
  EXPECT_THAT(PathsNamed("", "/home/u/x.desktop=/usr/bin/tar -x"), ElementsAre("/home/u/x.desktop"));
}

TEST(PathsOfTest, WithoutAMonitorTheFormTellsTheKind) {
  EXPECT_THAT(PathsNamed("", "/usr/bin/tool"), ElementsAre("/usr/bin/tool"));
  EXPECT_THAT(PathsNamed("", "/usr/bin/tool:47"), ElementsAre("/usr/bin/tool", "/usr/bin/tool:47"));
  EXPECT_THAT(PathsNamed("", "443:/usr/bin/tool"), ElementsAre("/usr/bin/tool"));
  EXPECT_THAT(PathsNamed("", "10.0.0.1:443:/usr/bin/tool"), ElementsAre("/usr/bin/tool"));
}

TEST(PathsOfTest, ADescriptionOfTwoFormsIsRefused) {
  for (const char* description : {"/a=/b:47", "/a=b:47"})
    EXPECT_EQ(WhyNoPaths("", description), "This event can be read in two ways. Nothing was changed.")
        << description;
}

TEST(PathsOfTest, OnlyPlainAbsolutePaths) {
  for (const char* description : {"/", "tool", "/a/", "/a/../b", "/a/./b", ""})
    EXPECT_THAT(PathsNamed("Windows Folder", description), ElementsAre()) << description;
  EXPECT_THAT(PathsWritten("//a///b"), ElementsAre("/a/b"));
  EXPECT_THAT(PathsWritten(std::string_view("/a\0b", 4)), ElementsAre());
}

TEST(PathsOfTest, MonitorsThatNameNoFileAreRefused) {
  for (const char* monitor :
       {"System Users", "Logged-On Users", "Memory Utilization", "System", "Aggregation"})
    EXPECT_EQ(WhyNoPaths(monitor, "/usr/bin/tool"),
              "This event names no file on this computer, so there is nothing to put in quarantine.");
}

TEST(PathsOfTest, Windows1252AlsoAsUtf8) {
  EXPECT_THAT(PathsNamed("Windows Folder", "/caf\xe9"), ElementsAre("/caf\xe9", "/caf\xc3\xa9"));
}

TEST(SentenceTest, ShorteningTakesTheMiddleOfTheNamesAndNothingElse) {
  const std::string name = "\"/0123456789/abcdefghij\"";
  EXPECT_EQ(Fitting(name + " is a folder.", 37), name + " is a folder.");
  const std::string cut = Fitting(name + " is a folder.", 30);
  EXPECT_EQ(cut.size(), 30U);
  EXPECT_TRUE(cut.ends_with("hij\" is a folder.")) << cut;
  const std::string two = Fitting("This may mean \"/a\" or " + name + ".", 40);
  EXPECT_EQ(two.size(), 40U);
  EXPECT_TRUE(two.starts_with("This may mean \"/a\" or \"/")) << two;
  EXPECT_EQ(Fitting(std::string(300, 'x'), 255).size(), 255U);
  EXPECT_EQ(Fitting(name, 0), "");
}

}  // namespace
}  // namespace zendrix::family
