// settings, ini, smtp, valid, token.
#include <sys/stat.h>

#include <filesystem>

#include "cli/inspector.h"

namespace zendrix::test {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

using SettingsTest = InspectorTest;

TEST_F(SettingsTest, DefaultsOfAFolderWithoutSettings) {
  const Json document = Document({"settings"});
  EXPECT_THAT(KeysOf(document), ElementsAre("values", "thresholds", "ini", "messages", "log"));
  const std::string today = document["values"]["Misc"]["IniDate"];
  EXPECT_THAT(today, ::testing::MatchesRegex("[0-9]{2}/[0-9]{2}/[0-9]{4}"));
  EXPECT_EQ(document["values"]["Monitors"], Json::array());
  EXPECT_EQ(document["values"]["Columns"], Json::array());
  EXPECT_EQ(document["values"]["Grid"], Json::parse(R"({"SelColor": "8421631", "SSColor": "16744576"})"));
  EXPECT_EQ(document["values"]["Tline"], Json::parse(R"({"NSlots": "30", "TSlots": "1", "TChart": "D"})"));
  Json misc = document["values"]["Misc"];
  misc.erase("IniDate");
  EXPECT_EQ(misc, Json::parse(R"({"ldAlert": "", "ldErlog": "", "ldUIErlog": "", "enblAlr": "0",
      "ShRskLvl": "0", "DetSho": "1", "TSurv": "N", "TTour": "N", "Se": "1.1", "No": "90.90909",
      "Su": "95.45454", "PopOrigHigh": "1", "PopNotifyMs": "1", "DontAsk": "0"})"));
  EXPECT_EQ(document["thresholds"], Json::parse(R"({"No": "90.90909", "Su": "95.45454", "NormalFrom": "0",
                            "SuspiciousFrom": "90.91009", "IntrusionFrom": "95.45554"})"));
  EXPECT_EQ(
      document["ini"],
      "[Grid]\r\nSelColor=8421631\r\nSSColor=16744576\r\n[Tline]\r\nNslots=30\r\nTSlots=1\r\nTCHart=D\r\n"
      "[Misc]\r\nDetSho=1\r\nIniDate=" +
          today +
          "\r\nTSurv=N\r\nTTour=N\r\nNo=90.90909\r\nSu=95.45454\r\n"
          "PopOrigHigh=1\r\nPopNotifyMs=1\r\n");
  EXPECT_EQ(document["messages"], Json::parse(R"([{"title": "Korvessa Zendrix Home Edition",
      "text": "Invalid configuration file. Loading default values", "icon": "information", "buttons": "ok"}])"));
  EXPECT_THAT(LogLines(document), ElementsAre("'ReadRegInfo': Invalid configuration file " +
                                              folder_.Path("zendrix.ini") + ". Loading default values"));
}

TEST_F(SettingsTest, StoredValuesAndTheirRepairs) {
  WriteHashed(
      "zendrix.ini",
      "[Monitors]\r\nSystem Users=1\r\nJ\x80=0\r\n[Columns]\r\nHost=1\r\n[Misc]\r\nSe=0\r\nDetSho=0\r\n"
      "enblalr=1\r\nDontAsk=1\r\nIniDate=x\r\nldAlert= a \r\n[Tline]\r\nNslots=7\r\nTChart=T\r\n");
  const Json document = Document({"settings"});
  EXPECT_EQ(document["messages"], Json::array());
  const Json& values = document["values"];
  EXPECT_EQ(values["Monitors"], Json::parse(R"([["System Users", "1"], ["J€", "0"]])"));
  EXPECT_EQ(values["Columns"], Json::parse(R"([["Host", "1"]])"));
  EXPECT_EQ(values["Misc"]["Se"], "1.1");
  EXPECT_EQ(values["Misc"]["DetSho"], "0");
  EXPECT_EQ(values["Misc"]["enblAlr"], "1");
  EXPECT_EQ(values["Misc"]["DontAsk"], "1");
  EXPECT_EQ(values["Misc"]["ldAlert"], "a");
  EXPECT_EQ(values["Tline"]["NSlots"], "7");
  EXPECT_EQ(values["Tline"]["TChart"], "T");
  EXPECT_THAT(document["ini"].get<std::string>(), HasSubstr("\r\nSe=1.1\r\n"));
  EXPECT_THAT(document["ini"].get<std::string>(), HasSubstr("J€=0\r\n"));
}

TEST_F(SettingsTest, ThresholdsOfOtherSensitivities) {
  WriteHashed("zendrix.ini", "[Misc]\r\nSe=1\r\n");
  EXPECT_EQ(Document({"settings"})["thresholds"],
            Json::parse(R"({"No": "96", "Su": "98", "NormalFrom": "0", "SuspiciousFrom": "96.001",
                            "IntrusionFrom": "98.001"})"));
  WriteHashed("zendrix.ini", "[Misc]\r\nSe=2\r\n");
  EXPECT_EQ(Document({"settings"})["thresholds"],
            Json::parse(R"({"No": "50", "Su": "75", "NormalFrom": "0", "SuspiciousFrom": "50.001",
                            "IntrusionFrom": "75.001"})"));
}

TEST_F(SettingsTest, TamperedFileIsReplacedByDefaults) {
  WriteHashed("zendrix.ini", "[Misc]\r\nSe=2\r\n");
  Append("zendrix.ini", "x=1\r\n");
  EXPECT_EQ(Document({"settings"})["values"]["Misc"]["Se"], "1.1");
  EXPECT_THAT(folder_.Read("zendrix.ini"), HasSubstr("Se=2"));
  DocumentWriting({"settings"});
  EXPECT_EQ(folder_.Read("zendrix.ini").find("Se="), std::string::npos);
  EXPECT_THAT(FilesIn(folder_.path()),
              ElementsAre("KorvessaAdministratorEventLog.kvl", "zendrix.ini", "zendrix.kvh"));
}

TEST_F(SettingsTest, SaveStoresTheKeyAndTheHash) {
  const Json document = Document({"settings", "save", "Misc", "Se", "2"});
  EXPECT_THAT(KeysOf(document), ElementsAre("ini", "verified", "messages", "log"));
  EXPECT_EQ(document["ini"], "[Misc]\r\nSe=2\r\n");
  EXPECT_EQ(document["verified"], true);
  EXPECT_EQ(document["messages"], Json::array());
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre());
  EXPECT_EQ(DocumentWriting({"settings", "save", "Misc", "Se", "2"}), document);
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre("zendrix.ini", "zendrix.kvh"));
  EXPECT_EQ(folder_.Read("zendrix.ini"), "[Misc]\r\nSe=2\r\n");
  EXPECT_EQ(Document({"settings"})["values"]["Misc"]["Se"], "2");
}

TEST_F(SettingsTest, SaveKeepsTheOtherLines) {
  WriteHashed("zendrix.ini", "; note\r\n[A]\r\nb=1\r\nc=2\r\n\r\n[D]\r\ne=\x80\r\n");
  EXPECT_EQ(Document({"settings", "save", "a", "B", "9"})["ini"],
            "; note\r\n[A]\r\nb=9\r\nc=2\r\n\r\n[D]\r\ne=€\r\n");
  DocumentWriting({"settings", "save", "D", "e", "ä€"});
  EXPECT_THAT(folder_.Read("zendrix.ini"), HasSubstr("e=\xE4\x80\r\n"));
}

TEST_F(SettingsTest, CheckWritesOnlyWhatReadsAsEmpty) {
  WriteHashed("zendrix.ini", "[Monitors]\r\na=0\r\nb=\r\n");
  EXPECT_EQ(Document({"settings", "check", "Monitors", "a", "1"})["ini"], "[Monitors]\r\na=0\r\nb=\r\n");
  EXPECT_EQ(Document({"settings", "check", "Monitors", "b", "1"})["ini"], "[Monitors]\r\na=0\r\nb=1\r\n");
  EXPECT_EQ(Document({"settings", "check", "Monitors", "c", "1"})["ini"],
            "[Monitors]\r\na=0\r\nb=\r\nc=1\r\n");
}

TEST_F(SettingsTest, CheckRefreshesTheHashInAnyCase) {
  folder_.Write("zendrix.ini", "[Monitors]\r\na=0\r\n");
  EXPECT_EQ(Document({"settings", "check", "Monitors", "a", "1"})["verified"], true);
}

class IniTest : public InspectorTest {
 protected:
  void SetUp() override {
    folder_.Write("test.ini",
                  "[One]\r\nkey = value \r\nnumber=12abc\r\nbig=70000\r\nneg=-5\r\nquoted=\" q \"\r\n"
                  "euro=\x80\r\n[Two]\r\n[Three]\r\nx=1\r\n");
  }
  Arguments On(const Arguments& arguments) {
    Arguments all{"ini", folder_.Path("test.ini")};
    all.insert(all.end(), arguments.begin(), arguments.end());
    return all;
  }
  Json Value(const Arguments& arguments) {
    const Json document = Document(On(arguments));
    EXPECT_THAT(KeysOf(document), ElementsAre("value", "messages", "log"));
    return document["value"];
  }
  // The file after a change.
  std::string After(const Arguments& arguments) {
    Arguments all{"--write"};
    const Arguments on = On(arguments);
    all.insert(all.end(), on.begin(), on.end());
    EXPECT_THAT(KeysOf(Document(all)), ElementsAre("messages", "log"));
    return folder_.Read("test.ini");
  }
};

TEST_F(IniTest, Texts) {
  EXPECT_EQ(Value({"str", "one", "KEY", "d"}), "value");
  EXPECT_EQ(Value({"str", "One", "euro", "d"}), "€");
  EXPECT_EQ(Value({"str", "One", "quoted", "d"}), "q");
  EXPECT_EQ(Value({"str", "One", "none", " d "}), "d");
  EXPECT_EQ(Value({"str", "None", "key", ""}), "");
  EXPECT_EQ(Value({"str", "One", "none", std::string(200, 'x')}), std::string(127, 'x'));
}

TEST_F(IniTest, NumbersAreNumbers) {
  EXPECT_EQ(Value({"int", "One", "number", "7"}), 12);
  EXPECT_TRUE(Value({"int", "One", "number", "7"}).is_number_integer());
  EXPECT_EQ(Value({"int", "One", "key", "7"}), 0);
  EXPECT_EQ(Value({"int", "One", "none", "7"}), 7);
  EXPECT_EQ(Value({"int", "One", "big", "7"}), 4464);
  EXPECT_EQ(Value({"int", "One", "neg", "7"}), -5);
  const Json negative = Document({"ini", folder_.Path("test.ini"), "int", "--", "One", "none", "-7"});
  EXPECT_EQ(negative["value"], -7);
}

TEST_F(IniTest, WholeSectionsAndSectionNames) {
  EXPECT_EQ(Value({"all", "Three"}), Json::parse(R"([["x", "1"]])"));
  EXPECT_EQ(Value({"all", "One"})[0], Json::parse(R"(["key", "value"])"));
  EXPECT_TRUE(Value({"all", "Two"}).is_null());
  EXPECT_TRUE(Value({"all", "Four"}).is_null());
  EXPECT_EQ(Value({"sections"}), Json::parse(R"(["One", "Two", "Three"])"));
  EXPECT_TRUE(Document({"ini", folder_.Path("none.ini"), "sections"})["value"].is_null());
  EXPECT_TRUE(Document({"ini", folder_.Path("none.ini"), "all", "One"})["value"].is_null());
}

TEST_F(IniTest, SavingAndDeleting) {
  folder_.Write("test.ini", "[A]\r\nb=1\r\nc=2\r\n");
  EXPECT_EQ(After({"save", "A", "b", "x"}), "[A]\r\nb=x\r\nc=2\r\n");
  EXPECT_EQ(After({"saveint", "A", "c", "32767"}), "[A]\r\nb=x\r\nc=32767\r\n");
  EXPECT_EQ(After({"save", "D", "e", ""}), "[A]\r\nb=x\r\nc=32767\r\n[D]\r\ne=\r\n");
  EXPECT_EQ(After({"delete", "a", "B"}), "[A]\r\nc=32767\r\n[D]\r\ne=\r\n");
  EXPECT_EQ(After({"delete", "A", "none"}), "[A]\r\nc=32767\r\n[D]\r\ne=\r\n");
  EXPECT_EQ(After({"saveint", "--", "A", "c", "-1"}), "[A]\r\nc=-1\r\n[D]\r\ne=\r\n");
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre("test.ini"));
}

TEST_F(IniTest, EscapesOfArguments) {
  folder_.Write("test.ini", "");
  EXPECT_EQ(After({"save", "A", R"(k\x80)", R"(a\tb\\n\x41\xe4)"}), "[A]\r\nk\x80=a\tb\\nA\xE4\r\n");
  EXPECT_EQ(Value({"str", "A", "k€", "d"}), "a\tb\\nAä");
  EXPECT_EQ(Value({"str", "A", "none", R"(\q\x4\xZZ\)"}), R"(\q\x4\xZZ\)");
  EXPECT_EQ(Value({"str", "A", "none", R"(ab\x00cd)"}), "ab");
  EXPECT_EQ(Value({"str", "A", "none", R"(a\r\nb)"}), "a\r\nb");
}

TEST_F(IniTest, PathIsNotAnEscapedArgument) {
  std::filesystem::rename(folder_.Path("test.ini"), folder_.Path("t\\x41.ini"));
  EXPECT_EQ(Document({"ini", folder_.Path("t\\x41.ini"), "str", "Three", "x", ""})["value"], "1");
}

TEST_F(IniTest, ChangesOfAMissingFileMakeIt) {
  Document({"--write", "ini", folder_.Path("new.ini"), "save", "A", "b", "c"});
  EXPECT_EQ(folder_.Read("new.ini"), "[A]\r\nb=c\r\n");
}

TEST_F(IniTest, ErrorThatDeleteRaisesIsInTheDocument) {
  std::filesystem::create_directory(folder_.Path("folder.ini"));
  const Json document = Document({"--write", "ini", folder_.Path("folder.ini"), "delete", "A", "b"});
  EXPECT_THAT(KeysOf(document), ElementsAre("error", "messages", "log"));
  EXPECT_THAT(KeysOf(document["error"]), ElementsAre("number", "source", "description"));
  EXPECT_EQ(document["error"]["number"], -2147220987);
  EXPECT_EQ(document["error"]["source"], "CSetting.DeleteKey");
  EXPECT_EQ(
      document["error"]["description"],
      "Error Borrando Clave(Key) (-2147220987, Error Borrando Clave(Key) (check if file is protected))");
}

class SmtpTest : public InspectorTest {
 protected:
  static constexpr char kSmtp[] = "KorvessaSMTPConfig.kvl";
};

TEST_F(SmtpTest, MissingFileIsEmpty) {
  const Json document = Document({"smtp"});
  EXPECT_THAT(KeysOf(document), ElementsAre("Address", "Server", "Port", "messages", "log"));
  EXPECT_EQ(document, Json::parse(R"({"Address": "", "Server": "", "Port": "", "messages": [], "log": []})"));
}

TEST_F(SmtpTest, SavedDataAreRead) {
  const Json document = Document({"smtp", "save", " a@b.c ", "mail.b.c", " 25"});
  EXPECT_EQ(document["Address"], "a@b.c");
  EXPECT_EQ(document["Server"], "mail.b.c");
  EXPECT_EQ(document["Port"], "25");
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre());
  DocumentWriting({"smtp", "save", "a@b.c", "mail.b.c", "25"});
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre("KorvessaSMTPConfig.kvh", kSmtp));
  EXPECT_EQ(folder_.Read(kSmtp), "Send Alerts To=a@b.c;SMTP Server=mail.b.c:25;");
  EXPECT_EQ(Document({"smtp"})["Server"], "mail.b.c");
}

TEST_F(SmtpTest, OtherFieldsAreKept) {
  WriteHashed(kSmtp, "Send Alerts To=x;SMTP Server=y:1;more=\x80;;last");
  DocumentWriting({"smtp", "save", "a", "b", ""});
  EXPECT_EQ(folder_.Read(kSmtp), "Send Alerts To=a;SMTP Server=b:;more=\x80;;last");
}

TEST_F(SmtpTest, TamperedFileIsDeletedAfterAMessage) {
  folder_.Write(kSmtp, "Send Alerts To=x;SMTP Server=y:1;");
  const Json document = Document({"smtp"});
  EXPECT_EQ(document["Address"], "");
  EXPECT_THAT(BoxTexts(document), ElementsAre("Invalid SMTP configuration file. Loading default values"));
  EXPECT_EQ(document["messages"][0]["icon"], "information");
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre(kSmtp));
  DocumentWriting({"smtp"});
  EXPECT_THAT(FilesIn(folder_.path()), ElementsAre());
}

TEST_F(SettingsTest, ValidAddressesAndServers) {
  const auto valid = [&](const std::string& kind, const std::string& text) {
    const Json document = Document({"valid", kind, "--", text});
    EXPECT_THAT(KeysOf(document), ElementsAre("valid", "messages", "log"));
    return document["valid"].get<bool>();
  };
  for (const char* text : {"", "a@b.c", "1.2@3.4", "\xC3\xA4@b.c"}) EXPECT_TRUE(valid("email", text)) << text;
  for (const char* text : {"a", "a@b", "a.b@c", "a@b.", "@b.c", "a@.c", "a.@b.c", "a@b..c", "a@b@c.d",
                           "a b@c.d", "\"a\"@b.c", "-a@b.c*"})
    EXPECT_FALSE(valid("email", text)) << text;
  for (const char* text : {"", "a.b.c", "1.2.3.4", "-.-.-"}) EXPECT_TRUE(valid("server", text)) << text;
  for (const char* text : {"a", "a.b", ".a.b", "a.b.", "a..b.c", "a.b.c/"})
    EXPECT_FALSE(valid("server", text)) << text;
}

TEST_F(SettingsTest, TokensByName) {
  const auto value = [&](const std::string& source, const std::string& key) {
    return Document({"token", source, key})["value"].get<std::string>();
  };
  EXPECT_EQ(value("a=1;b=2", "b"), "2");
  EXPECT_EQ(value("a=1;b=2", "a"), "1");
  EXPECT_EQ(value("a=x=y;b", "a"), "x=y");
  EXPECT_EQ(value("a=ä€", "a"), "ä€");
  EXPECT_EQ(value("a=1", "A"), "");
  EXPECT_EQ(value("", "a"), "");
  EXPECT_EQ(value("ba=1", "a"), "");
}

}  // namespace
}  // namespace zendrix::test
