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

// The place behind the last line still holds what was deleted there.
TEST(IniFile, ADeletedLastKeyIsNeitherReadNorListedAnyMore) {
  IniFile ini("[s]\r\na=1\r\nb=2\r\n");
  ini.DeleteKey("s", "b");
  EXPECT_EQ(ini.GetString("s", "b", "dflt", 128), "dflt");
  EXPECT_EQ(ini.Keys("s", 128), (std::vector<core::KeyValue>{{"a", "1"}}));
  EXPECT_EQ(ini.KeyNames("s", "0", 128), std::string("a\0", 2));
}

TEST(IniFile, DeletingASectionLeavesItsComments) {
  IniFile ini("[a]\r\n;c\r\n\r\nx=1\r\n[b]\r\ny=2\r\n");
  ini.DeleteSection("A");
  EXPECT_EQ(ini.Bytes(), ";c\r\n[b]\r\ny=2\r\n");
}

// Taken for an end, it would join the new key to the line in front.
TEST(IniFile, ACarriageReturnByItselfEndsNoLine) {
  EXPECT_EQ(AfterSet("[a]\r", "a", "x", "1"), "[a]\r\r\nx=1\r\n");
  EXPECT_EQ(Read(AfterSet("[a]\r", "a", "x", "1"), "a", "x"), "1");
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

// Such a line was taken for a key line, and the keys below it for keys of the section above.
TEST(IniFile, AHeaderWithoutBracketIsASectionWhoseNameEndsAtTheLineEnd) {
  EXPECT_EQ(Read("[s\r\nk=v\r\n", "s", "k"), "v");
  EXPECT_EQ(Read("[a]\r\nx=1\r\n  [ s t \t\r\nk=v\r\n", "s t", "k"), "v");
  EXPECT_EQ(Read("[a]\r\nx=1\r\n[s\r\nk=v\r\n", "a", "k"), "dflt");
  EXPECT_EQ(IniFile("[s\r\nk=v\r\n[t").SectionNames("0", 2048), std::string("s\0t\0", 4));
  EXPECT_EQ(AfterSet("[s\r\nk=v\r\n", "S", "l", "w"), "[s\r\nk=v\r\nl=w\r\n");
}

TEST(IniFile, AHeaderOfOnlyABracketHasNoName) {
  EXPECT_EQ(IniFile("[\r\nk=v\r\n").SectionNames("0", 2048), "0");
  EXPECT_EQ(Read("[\r\nk=v\r\n", "", "k"), "v");
}

std::uint32_t Number(const std::string& value) {
  return IniFile("[s]\r\nk=" + value + "\r\n").GetInt("s", "k", 7);
}

// "0x1F" read as 0: the digits ended at the x.
TEST(IniFile, AHexadecimalIntegerIsRead) {
  EXPECT_EQ(Number("0x1F"), 31U);
  EXPECT_EQ(Number("0xaBcDeF"), 0xABCDEFU);
  EXPECT_EQ(Number("-0x10"), 0xFFFFFFF0U);
  EXPECT_EQ(Number("+0x10"), 16U);
  EXPECT_EQ(Number("\" 0x9\""), 9U);
  EXPECT_EQ(Number("0x1FG"), 31U);
  EXPECT_EQ(Number("0x123456789"), 0x23456789U);  // modulo 2^32
}

TEST(IniFile, OctalAndBinaryIntegersAreReadBehindTheirPrefixes) {
  EXPECT_EQ(Number("0o17"), 15U);
  EXPECT_EQ(Number("0o18"), 1U);
  EXPECT_EQ(Number("0b101"), 5U);
  EXPECT_EQ(Number("0b12"), 1U);
}

TEST(IniFile, APrefixWithoutDigitsOrInCapitalsIsZero) {
  for (const char* value : {"0x", "0xG", "0X1F", "0B1", "x1F", "0 x1F", "- 0x1"})
    EXPECT_EQ(Number(value), 0U);
  EXPECT_EQ(Number("1x1F"), 1U);
  EXPECT_EQ(Number("1F"), 1U);
}

TEST(IniFile, KeysComeWithTheirValuesInFileOrderAndCut) {
  const IniFile ini("[t]\r\nz=1\r\n[s]\r\na=\"1234\"\r\n;c\r\nbare\r\na=2\r\n[u]\r\nx=1\r\n");
  EXPECT_EQ(ini.Keys("S", 4), (std::vector<core::KeyValue>{{"a", "123"}, {"bare", ""}, {"a", "2"}}));
  EXPECT_TRUE(ini.Keys("nothing", 4).empty());
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
