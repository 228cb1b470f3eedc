#include "settings/ini_file.h"

namespace zendrix::settings {
namespace {

std::string Read(const std::string& bytes, const std::string& section, const std::string& key) {
  return IniFile(bytes).GetString(section, key, "dflt", 128);
}

std::string AfterSet(const std::string& bytes, const std::string& section, const std::string& key,
                     const std::string& value) {
  IniFile ini(bytes);
  ini.Set(section, key, value);
  return ini.Bytes();
}

TEST(IniFile, AFileThatIsOnlyReadComesBackByteForByte) {
  for (const std::string bytes :
       {"", "\r\n", "x", "[a]\nb=1\r\n;c\n\n[d", "a\r\r\nb\n\r", "[s]\r\nk=\xE9\x80"})
    EXPECT_EQ(IniFile(bytes).Bytes(), bytes);
}

TEST(IniFile, OfTwoKeysOfOneNameTheFirstIsReadAndWritten) {
  EXPECT_EQ(Read("[s]\r\nk=1\r\nK=2\r\n", "s", "k"), "1");
  EXPECT_EQ(AfterSet("[s]\r\nk=1\r\nK=2\r\n", "s", "K", "3"), "[s]\r\nk=3\r\nK=2\r\n");
}

TEST(IniFile, OfTwoSectionsOfOneNameOnlyTheFirstIsRead) {
  EXPECT_EQ(Read("[s]\r\na=1\r\n[t]\r\n[S]\r\nk=2\r\n", "s", "k"), "dflt");
}

TEST(IniFile, AKeyOfTheNextSectionIsNotReadAsOneOfThis) {
  EXPECT_EQ(Read("[s]\r\n[t]\r\nk=1\r\n", "s", "k"), "dflt");
}

TEST(IniFile, ANewKeyLeavesLinesOfOtherSectionsInTheirOrder) {
  EXPECT_EQ(AfterSet(";one\n\n[a]\nx=1\n ;two\n[b]\ny=2", "a", "z", "3"),
            ";one\n\n[a]\nx=1\nz=3\r\n ;two\n[b]\ny=2");
}

TEST(IniFile, ANewKeyOfASectionWithoutKeysStandsRightBehindItsHeader) {
  EXPECT_EQ(AfterSet("[a]\r\n;note\r\n", "a", "x", "1"), "[a]\r\nx=1\r\n;note\r\n");
}

TEST(IniFile, ALineWithoutEqualsTakesItsFirstValueInPlace) {
  EXPECT_EQ(AfterSet("[a]\r\nx\r\ny=1\r\n", "a", "x", "2"), "[a]\r\nx=2\r\ny=1\r\n");
}

TEST(IniFile, AReplacedLastLineWithoutLineEndGetsOne) {
  EXPECT_EQ(AfterSet("[a]\r\nx=1", "a", "x", "2"), "[a]\r\nx=2\r\n");
}

TEST(IniFile, DeletingAKeyLeavesCommentsAndBlankLines) {
  IniFile ini("[a]\r\n;c\r\nx=1\r\n\r\ny=2\r\n");
  ini.DeleteKey("A", " X ");
  EXPECT_EQ(ini.Bytes(), "[a]\r\n;c\r\n\r\ny=2\r\n");
}

TEST(IniFile, DeletingWhatIsNotThereChangesNothing) {
  IniFile ini("[a]\r\nx=1\r\n");
  ini.DeleteKey("a", "y");
  ini.DeleteKey("b", "x");
  ini.DeleteSection("b");
  EXPECT_EQ(ini.Bytes(), "[a]\r\nx=1\r\n");
}

TEST(IniFile, ABufferOfOneByteHoldsNothing) {
  const IniFile ini("[s]\r\nkey=value\r\n");
  EXPECT_EQ(ini.GetString("s", "key", "", 1), "");
  EXPECT_EQ(ini.GetString("s", "key", "", 0), "");
  EXPECT_EQ(ini.KeyNames("s", "0", 1), "");
  EXPECT_EQ(ini.KeyNames("s", "0", 2), "");
}

TEST(IniFile, AQuotedValueIsCutBehindItsQuotes) {
  EXPECT_EQ(IniFile("[s]\r\nk=\"123456\"\r\n").GetString("s", "k", "", 6), "12345");
}

TEST(IniFile, AHeaderWithoutBracketIsNoSection) {
  EXPECT_EQ(Read("[s\r\nk=v\r\n", "s", "k"), "dflt");
  EXPECT_EQ(IniFile("[s\r\nk=v\r\n").SectionNames("0", 2048), "0");
}

TEST(IniFile, SectionNamesAreListedInFileOrderWithTheirSpelling) {
  EXPECT_EQ(IniFile("[b]\r\n[A]\r\n").SectionNames("0", 2048), std::string("b\0A\0", 4));
}

TEST(IniFile, AWrittenValueWithALineBreakMakesALineOfItsOwn) {
  EXPECT_EQ(AfterSet("[s]\r\n", "s", "k", "1\r\nl=2"), "[s]\r\nk=1\r\nl=2\r\n");
  EXPECT_EQ(Read(AfterSet("[s]\r\n", "s", "k", "1\r\nl=2"), "s", "l"), "2");
}

}  // namespace
}  // namespace zendrix::settings
