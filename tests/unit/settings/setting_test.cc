#include "settings/setting.h"

#include <new>

#include "settings_fixture.h"

namespace zendrix::settings {
namespace {

class SettingTest : public SettingsTest {
 protected:
  SettingTest() { file_.Init("zendrix", 1); }

  CSetting file_{state_};
};

TEST_F(SettingTest, InitWithoutANameTakesTheExecutables) {
  CSetting file(state_);
  file.Init();
  EXPECT_EQ(file.path(), kIni);
  EXPECT_EQ(file.SaveMode(), 1);
}

TEST_F(SettingTest, InitTrimsTheName) {
  CSetting file(state_);
  file.Init("  other ", 1);
  EXPECT_EQ(file.path(), "/program/other.ini");
}

TEST_F(SettingTest, AnOperationBeforeInitInitialisesWithTheExecutablesNameAndModeZero) {
  platform_.files.Put(kIni, "[s]\r\nk=v\r\n");
  CSetting file(state_);
  EXPECT_EQ(file.GetSettingStr("s", "k", ""), "v");
  EXPECT_EQ(file.SaveMode(), 0);
  EXPECT_EQ(file.path(), kIni);
  CSetting(state_).SaveSettingStr("s", "k", "w");
  CSetting(state_).SaveSettingInt("s", "n", 3);
  EXPECT_EQ(platform_.files.Get(kIni), "[s]\r\nk=w\r\nn=3\r\n");
  EXPECT_EQ(CSetting(state_).GetSettingInt("s", "n", 0), 3);
  EXPECT_EQ(CSetting(state_).GetSettingAll("s")->size(), 2U);
  EXPECT_EQ(CSetting(state_).GetSectionNames(), std::vector<std::string>{"s"});
  CSetting(state_).DeleteKey("s", "n");
  EXPECT_EQ(platform_.files.Get(kIni), "[s]\r\nk=w\r\n");
}

TEST_F(SettingTest, InitFileTakesExactlyThisFile) {
  platform_.files.Put("/elsewhere/any.txt", "[s]\r\nk=v\r\n");
  CSetting file(state_);
  file.InitFile("/elsewhere/any.txt");
  EXPECT_EQ(file.GetSettingStr("s", "k", ""), "v");
  file.SaveSettingStr("s", "k", "w");
  EXPECT_EQ(platform_.files.Get("/elsewhere/any.txt"), "[s]\r\nk=w\r\n");
}

TEST_F(SettingTest, SaveModeCanBeSet) {
  file_.SetSaveMode(7);
  EXPECT_EQ(file_.SaveMode(), 7);
}

TEST_F(SettingTest, AnAbsentKeyGivesTheDefaultForBothGetOperations) {
  platform_.files.Put(kIni, "[s]\r\nk=v\r\n");
  EXPECT_EQ(file_.GetSettingStr("s", "other", "dflt"), "dflt");
  EXPECT_EQ(file_.GetSettingStr("other", "k", "dflt"), "dflt");
  EXPECT_EQ(file_.GetSettingInt("s", "other", -5), -5);
}

TEST_F(SettingTest, AMissingFileGivesTheDefaults) {
  EXPECT_EQ(file_.GetSettingStr("s", "k", "dflt"), "dflt");
  EXPECT_EQ(file_.GetSettingInt("s", "k", 12), 12);
}

TEST_F(SettingTest, AValueOf127CharactersComesWhole) {
  platform_.files.Put(kIni, "[s]\r\nk=" + std::string(127, 'x') + "\r\n");
  EXPECT_EQ(file_.GetSettingStr("s", "k", ""), std::string(127, 'x'));
}

TEST_F(SettingTest, AValueOfMoreThan127CharactersComesBackCut) {
  platform_.files.Put(kIni, "[s]\r\nk=" + std::string(126, 'x') + "yz\r\n");
  EXPECT_EQ(file_.GetSettingStr("s", "k", ""), std::string(126, 'x') + "y");
}

TEST_F(SettingTest, ASectionWithNoKeysGivesNothingAndNoError) {
  platform_.files.Put(kIni, "[s]\r\n;comment\r\n[t]\r\nk=v\r\n");
  EXPECT_EQ(file_.GetSettingAll("s"), std::nullopt);
}

TEST_F(SettingTest, AFileThatDoesNotExistGivesNothingAndNoError) {
  EXPECT_EQ(file_.GetSettingAll("s"), std::nullopt);
  EXPECT_EQ(file_.GetSectionNames(), std::nullopt);
}

TEST_F(SettingTest, AValueWithLeadingOrTrailingBlanksComesBackTrimmed) {
  platform_.files.Put(kIni, "[s]\r\na=  v  \r\nb=\"  w  \"\r\n");
  EXPECT_EQ(file_.GetSettingStr("s", "a", ""), "v");
  EXPECT_EQ(file_.GetSettingStr("s", "b", ""), "w");
}

TEST_F(SettingTest, ADefaultComesBackTrimmed) {
  EXPECT_EQ(file_.GetSettingStr("s", "k", "  d  "), "d");
}

TEST_F(SettingTest, AValueIsCutBeforeItsFirstNul) {
  platform_.files.Put(kIni, std::string("[s]\r\nk=ab\0cd\r\n", 14));
  EXPECT_EQ(file_.GetSettingStr("s", "k", ""), "ab");
}

TEST_F(SettingTest, GetSettingIntOfLettersGivesZeroAndNotTheDefault) {
  platform_.files.Put(kIni, "[s]\r\nk=abc\r\n");
  EXPECT_EQ(file_.GetSettingInt("s", "k", 7), 0);
}

TEST_F(SettingTest, GetSettingIntNarrowsTo16Bits) {
  platform_.files.Put(kIni, "[s]\r\nk=32768\r\nl=65537\r\n");
  EXPECT_EQ(file_.GetSettingInt("s", "k", 7), -32768);
  EXPECT_EQ(file_.GetSettingInt("s", "l", 7), 1);
}

TEST_F(SettingTest, NamesDoNotRegardCase) {
  platform_.files.Put(kIni, "[Tline]\r\nNslots=30\r\n");
  EXPECT_EQ(file_.GetSettingStr("TLINE", "NSlots", ""), "30");
}

TEST_F(SettingTest, GetSettingAllGivesKeysAndValuesInFileOrder) {
  platform_.files.Put(kIni, "[m]\r\nRunning Processes=1\r\nb=\r\nline\r\nTcp Connections= 0 \r\n");
  const std::vector<core::KeyValue> pairs = {{"Running Processes", "1"}, {"b", ""}, {"Tcp Connections", "0"}};
  EXPECT_EQ(file_.GetSettingAll("M"), pairs);
}

TEST_F(SettingTest, GetSettingAllReadsASectionWithOneKeyOfOneLetter) {
  platform_.files.Put(kIni, "[m]\r\na=1\r\n");
  EXPECT_EQ(file_.GetSettingAll("m"), (std::vector<core::KeyValue>{{"a", "1"}}));
}

TEST_F(SettingTest, MoreThan2048CharactersOfKeyNamesAreCutAndTheCutKeyHasNoValue) {
  std::string text = "[m]\r\n";
  for (int i = 1000; i < 1300; ++i) text += "key" + std::to_string(i) + "=" + std::to_string(i) + "\r\n";
  platform_.files.Put(kIni, text);
  const auto pairs = file_.GetSettingAll("m");
  ASSERT_TRUE(pairs.has_value());
  ASSERT_EQ(pairs->size(), 256U);  // 2046 characters: 255 names with their NULs and six letters
  EXPECT_EQ(pairs->at(254), core::KeyValue("key1254", "1254"));
  EXPECT_EQ(pairs->at(255), core::KeyValue("key125", ""));
}

TEST_F(SettingTest, GetSectionNamesGivesTheNamesInFileOrder) {
  platform_.files.Put(kIni, "[b]\r\n[ A ]\r\nk=v\r\n;[c]\r\n");
  EXPECT_EQ(file_.GetSectionNames(), (std::vector<std::string>{"b", "A"}));
}

TEST_F(SettingTest, MoreThan2048CharactersOfSectionNamesAreCut) {
  std::string text;
  for (int i = 1000; i < 1300; ++i) text += "[sec" + std::to_string(i) + "]\r\n";
  platform_.files.Put(kIni, text);
  const auto names = file_.GetSectionNames();
  ASSERT_TRUE(names.has_value());
  EXPECT_EQ(names->size(), 256U);
  EXPECT_EQ(names->back(), "sec125");
}

TEST_F(SettingTest, ContentsThatAreHeldAreReadAndWrittenInsteadOfTheFile) {
  platform_.files.Put(kIni, "[s]\r\nk=file\r\n");
  EXPECT_EQ(file_.Hold().value(), "[s]\r\nk=file\r\n");
  platform_.files.Put(kIni, "[s]\r\nk=later\r\n");
  EXPECT_EQ(file_.GetSettingStr("s", "k", ""), "file");
  file_.SaveSettingStr("s", "k", "held");
  file_.SaveSettingInt("s", "n", 0x7F);
  EXPECT_EQ(file_.GetSettingStr("s", "k", ""), "held");
  EXPECT_EQ(file_.GetSettingInt("s", "n", 0), 127);
  EXPECT_EQ(file_.GetSettingAll("s")->size(), 2U);
  file_.DeleteKey("s", "k");
  EXPECT_EQ(file_.Held(), "[s]\r\nn=127\r\n");
  EXPECT_EQ(Ini(), "[s]\r\nk=later\r\n");
}

TEST_F(SettingTest, HoldingAFileThatDoesNotExistHoldsNothing) {
  EXPECT_EQ(file_.Hold().error().kind, platform::ErrorKind::kNotFound);
  EXPECT_EQ(file_.Held(), "");
  file_.SaveSettingStr("s", "k", "v");
  EXPECT_EQ(file_.Held(), "[s]\r\nk=v\r\n");
  EXPECT_FALSE(platform_.files.Has(kIni));
}

TEST_F(SettingTest, HoldingBeforeInitTakesTheExecutablesFile) {
  platform_.files.Put(kIni, "[s]\r\n");
  CSetting file(state_);
  EXPECT_EQ(file.Hold().value(), "[s]\r\n");
}

TEST_F(SettingTest, KeysWithoutAValueAreSoughtInTheExecutablesFileBeforeInit) {
  platform_.files.Put(kIni, "[s]\r\na=1\r\n");
  CSetting file(state_);
  EXPECT_EQ(file.KeysWithoutValue("s", {"a", "b"}), std::vector<std::string>{"b"});
}

TEST_F(SettingTest, KeysWithoutAValueAreThoseThatReadAsEmptyEachOnce) {
  platform_.files.Put(kIni, "[s]\r\na=1\r\nb=\r\nb=2\r\nc=\" \"\r\nbare\r\n[t]\r\nd=1\r\n");
  EXPECT_EQ(file_.KeysWithoutValue("S", {"A", " a ", "B", "b", "c", "bare", "d", "D", "e"}),
            (std::vector<std::string>{"B", "c", "bare", "d", "e"}));
}

TEST_F(SettingTest, SavingUpdatesInPlaceAndKeepsTheOtherLines) {
  platform_.files.Put(kIni, ";top\r\n[Misc]\r\nSe=1.1\r\n\r\n[Grid]\r\nSelColor=1\r\n");
  file_.SaveSettingStr("misc", "SE", "2");
  file_.SaveSettingInt("Grid", "Width", -60);
  EXPECT_EQ(Ini(), ";top\r\n[Misc]\r\nSe=2\r\n\r\n[Grid]\r\nSelColor=1\r\nWidth=-60\r\n");
}

TEST_F(SettingTest, SavingCreatesTheFile) {
  file_.SaveSettingStr("s", "k", "v");
  EXPECT_EQ(Ini(), "[s]\r\nk=v\r\n");
}

TEST_F(SettingTest, AValueIsWrittenUpToItsFirstNul) {
  file_.SaveSettingStr("s", "k", std::string("a\0b", 3));
  EXPECT_EQ(Ini(), "[s]\r\nk=a\r\n");
}

TEST_F(SettingTest, AFailedSaveIsNoErrorAndLeavesTheFile) {
  platform_.files.Put(kIni, "[s]\r\nk=v\r\n");
  platform_.files.FailNext(platform::FileOp::kWriteAll, kIni, platform::ErrorKind::kPermissionDenied, 2);
  EXPECT_NO_THROW(file_.SaveSettingStr("s", "k", "w"));
  EXPECT_NO_THROW(file_.SaveSettingInt("s", "k", 1));
  EXPECT_EQ(Ini(), "[s]\r\nk=v\r\n");
}

TEST_F(SettingTest, AFileThatCannotBeReadIsNotOverwritten) {
  platform_.files.Put(kIni, "[s]\r\nk=v\r\n");
  platform_.files.FailNext(platform::FileOp::kOpen, kIni, platform::ErrorKind::kPermissionDenied);
  file_.SaveSettingStr("s", "l", "w");
  EXPECT_EQ(Ini(), "[s]\r\nk=v\r\n");
}

TEST_F(SettingTest, AFileThatCannotBeReadGivesTheDefaults) {
  platform_.files.Put(kIni, "[s]\r\nk=v\r\n");
  platform_.files.FailNext(platform::FileOp::kOpen, kIni, platform::ErrorKind::kPermissionDenied);
  EXPECT_EQ(file_.GetSettingStr("s", "k", "dflt"), "dflt");
}

TEST_F(SettingTest, DeleteKeyRemovesTheLine) {
  platform_.files.Put(kIni, "[s]\r\nk=v\r\nl=w\r\n");
  file_.DeleteKey("S", "K");
  EXPECT_EQ(Ini(), "[s]\r\nl=w\r\n");
}

TEST_F(SettingTest, DeletingAnAbsentKeyIsNoErrorAndAMissingFileBecomesEmpty) {
  file_.DeleteKey("s", "k");
  EXPECT_TRUE(platform_.files.Has(kIni));
  EXPECT_EQ(Ini(), "");
}

TEST_F(SettingTest, AFailedDeleteComesInItsWrappedForm) {
  platform_.files.Put(kIni, "[s]\r\nk=v\r\n");
  platform_.files.FailNext(platform::FileOp::kWriteAll, kIni, platform::ErrorKind::kPermissionDenied);
  try {
    file_.DeleteKey("s", "k");
    FAIL() << "no error";
  } catch (const SettingError& error) {
    EXPECT_EQ(static_cast<std::uint32_t>(error.number), 0x80040205U);
    EXPECT_EQ(error.source, "CSetting.DeleteKey");
    EXPECT_EQ(error.description,
              "Error Borrando Clave(Key) (-2147220987, "
              "Error Borrando Clave(Key) (check if file is protected))");
  }
  EXPECT_EQ(Ini(), "[s]\r\nk=v\r\n");
}

// Files whose use runs out of memory, so that every operation meets a run-time error inside it.
class ExhaustedFiles : public platform::MemoryFiles {
 public:
  platform::Result<std::unique_ptr<platform::ReadStream>> Open(const std::string&) override {
    throw std::bad_alloc();
  }
};

struct Raised {
  std::uint32_t number = 0;
  std::string source, description;
  bool operator==(const Raised&) const = default;
};

template <class Operation>
Raised RaisedBy(Operation&& operation) {
  try {
    operation();
  } catch (const SettingError& error) {
    return {static_cast<std::uint32_t>(error.number), error.source, error.description};
  }
  return {};
}

TEST_F(SettingTest, EveryOperationWrapsTheErrorItMeetsInItsOwn) {
  ExhaustedFiles files;
  platform::Seams seams{files,         seams_.clock,         seams_.locale,       seams_.host,
                        seams_.shell,  seams_.instance_lock, seams_.services,     seams_.loop,
                        seams_.timers, seams_.message_boxes, seams_.file_dialogs, seams_.colour_dialogs,
                        seams_.family, seams_.process};
  core::AppState state(seams);
  CSetting file(state);
  const std::string old = "(7, Out of memory)";
  EXPECT_EQ(RaisedBy([&] { file.GetSettingStr("s", "k", ""); }),
            (Raised{0x80040203, "CSetting.GetSettingStr", "Error al leer el Setting " + old}));
  EXPECT_EQ(RaisedBy([&] { file.KeysWithoutValue("s", {"k"}); }),
            (Raised{0x80040203, "CSetting.GetSettingStr", "Error al leer el Setting " + old}));
  EXPECT_EQ(RaisedBy([&] { (void)file.Hold(); }),
            (Raised{0x80040203, "CSetting.GetSettingStr", "Error al leer el Setting " + old}));
  EXPECT_EQ(RaisedBy([&] { file.GetSettingInt("s", "k", 0); }),
            (Raised{0x80040203, "CSetting.GetSettingInt", "Error al leer el Setting " + old}));
  EXPECT_EQ(RaisedBy([&] { file.GetSettingAll("s"); }),
            (Raised{0x80040204, "CSetting.GetSettingAll", "Error al leer la Secci\xF3n (Section)" + old}));
  EXPECT_EQ(RaisedBy([&] { file.GetSectionNames(); }),
            (Raised{0x80040204, "CSetting.GetSectionNames", "Error al leer la Secci\xF3n (Section)" + old}));
  EXPECT_EQ(RaisedBy([&] { file.SaveSettingStr("s", "k", "v"); }),
            (Raised{0x80040202, "CSetting.SaveSettingStr", "Error al escribir el Setting " + old}));
  EXPECT_EQ(RaisedBy([&] { file.SaveSettingInt("s", "k", 1); }),
            (Raised{0x80040202, "CSetting.SaveSettingInt", "Error al escribir el Setting " + old}));
  EXPECT_EQ(RaisedBy([&] { file.DeleteKey("s", "k"); }),
            (Raised{0x80040205, "CSetting.DeleteKey", "Error Borrando Clave(Key) " + old}));
}

}  // namespace
}  // namespace zendrix::settings
