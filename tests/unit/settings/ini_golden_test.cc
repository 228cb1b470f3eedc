// The settings file's rules against tables made with the platform's own functions.
#include "settings/ini_file.h"
#include "support/golden_table.h"

namespace zendrix::settings {
namespace {

using test::GoldenReport;
using test::GoldenRow;

std::vector<GoldenRow> Rows(const std::string& name) {
  return test::LoadGolden(ZENDRIX_TEST_DATA, name);
}

std::optional<std::string> Nullable(const GoldenRow& row, const std::string& column) {
  if (row.IsNull(column)) return std::nullopt;
  return row.Text(column);
}

IniFile FileOf(const GoldenRow& row) {
  return IniFile(Nullable(row, "file").value_or(""));
}

std::string InputOf(const GoldenRow& row) {
  return row.Raw("file") + " | " + row.Raw("section") + " | " + row.Raw("key");
}

std::string ReadRow(const GoldenRow& row, const std::string& default_column) {
  const IniFile ini = FileOf(row);
  const std::string default_value = Nullable(row, default_column).value_or("");
  const auto size = static_cast<std::size_t>(row.Int("size"));
  if (row.IsNull("section")) return ini.SectionNames(default_value, size);
  if (row.IsNull("key")) return ini.KeyNames(row.Text("section"), default_value, size);
  return ini.GetString(row.Text("section"), row.Text("key"), default_value, size);
}

void CheckRead(GoldenReport& report, const GoldenRow& row, const std::string& default_column) {
  const std::string got = ReadRow(row, default_column);
  report.Compare(row, InputOf(row), row.Text("out"), got);
  report.Compare(row, InputOf(row) + " (length)", row.Raw("ret"), std::to_string(got.size()));
}

void CheckWrite(GoldenReport& report, const GoldenRow& row, const std::string& value_column) {
  std::optional<std::string> file = Nullable(row, "file");
  const auto section = Nullable(row, "section");
  const auto key = Nullable(row, "key");
  const auto value = Nullable(row, value_column);
  const bool done = WriteProfileString(section, key, value, file);
  report.Compare(row, InputOf(row), Nullable(row, "file_after").value_or("no file"),
                 file.value_or("no file"));
  report.Compare(row, InputOf(row) + " (result)", row.Raw("ret"), done ? "1" : "0");
}

TEST(IniGolden, ValuesAreReadAsThePlatformReadsThem) {
  GoldenReport report;
  for (const auto& row : Rows("ini_read.tsv")) CheckRead(report, row, "default");
}

TEST(IniGolden, ListsOfNamesFillTheBufferAsThePlatformFillsIt) {
  GoldenReport report;
  for (const auto& row : Rows("ini_list.tsv")) CheckRead(report, row, "default");
}

TEST(IniGolden, NumbersAreReadAsThePlatformReadsThem) {
  GoldenReport report;
  for (const auto& row : Rows("ini_int.tsv")) {
    const std::uint32_t got = FileOf(row).GetInt(row.Text("section"), row.Text("key"), row.Int("default"));
    report.Compare(row, InputOf(row), row.Raw("u32"), std::to_string(got));
    report.Compare(row, InputOf(row) + " (16 bits)", row.Raw("i16"),
                   std::to_string(static_cast<std::int16_t>(got)));
  }
}

TEST(IniGolden, WritesChangeTheFileAsThePlatformChangesIt) {
  GoldenReport report;
  for (const auto& row : Rows("ini_write.tsv")) CheckWrite(report, row, "value");
}

TEST(IniGolden, KnownBehaviourOfThePlatformIsKept) {
  GoldenReport report;
  for (const auto& row : Rows("ini_known.tsv")) {
    if (row.Raw("op") == "S")
      CheckRead(report, row, "arg");
    else
      CheckWrite(report, row, "arg");
  }
}

}  // namespace
}  // namespace zendrix::settings
