#include "support/golden_table.h"

#include <gtest/gtest.h>

#include <charconv>
#include <fstream>
#include <sstream>

#include "platform/windows_1252.h"

namespace zendrix::test {
namespace {

constexpr unsigned kIdeographicBlank = 0x3000;

unsigned HexValue(std::string_view digits) {
  unsigned value = 0;
  const auto end = std::from_chars(digits.data(), digits.data() + digits.size(), value, 16).ptr;
  EXPECT_EQ(end, digits.data() + digits.size()) << "not hexadecimal: " << digits;
  return value;
}

std::string BytesOfUnit(unsigned unit) {
  // What the platform hands to a single-byte program for this one; the program itself makes no best fit.
  if (unit == kIdeographicBlank) return " ";
  if (unit < 0x80) return std::string(1, static_cast<char>(unit));
  std::string utf8;
  if (unit < 0x800) {
    utf8 += static_cast<char>(0xC0 | unit >> 6);
  } else {
    utf8 += static_cast<char>(0xE0 | unit >> 12);
    utf8 += static_cast<char>(0x80 | (unit >> 6 & 0x3F));
  }
  utf8 += static_cast<char>(0x80 | (unit & 0x3F));
  return platform::BytesFromUtf8(utf8);
}

std::vector<std::string> Fields(const std::string& line) {
  std::vector<std::string> fields;
  std::size_t from = 0;
  for (std::size_t tab; (tab = line.find('\t', from)) != std::string::npos; from = tab + 1) {
    fields.push_back(line.substr(from, tab - from));
  }
  fields.push_back(line.substr(from));
  return fields;
}

}  // namespace

std::string GoldenRow::Raw(const std::string& column) const {
  const auto found = fields_.find(column);
  if (found != fields_.end()) return found->second;
  ADD_FAILURE() << "row " << id_ << " has no column " << column;
  return {};
}

std::string GoldenRow::Text(const std::string& column) const {
  return UnescapeGolden(Raw(column));
}

int GoldenRow::Int(const std::string& column) const {
  const std::string text = Raw(column);
  int value = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), value).ptr;
  EXPECT_EQ(end, text.data() + text.size()) << "row " << id_ << ": no integer: " << text;
  return value;
}

unsigned GoldenRow::Hex(const std::string& column) const {
  return HexValue(Raw(column));
}

double GoldenRow::Number(const std::string& column) const {
  const std::string text = Raw(column);
  double value = 0;
  const auto end = std::from_chars(text.data(), text.data() + text.size(), value).ptr;
  EXPECT_EQ(end, text.data() + text.size()) << "row " << id_ << ": no number: " << text;
  return value;
}

std::vector<GoldenRow> LoadGolden(const std::string& data_folder, const std::string& name) {
  std::vector<GoldenRow> rows;
  std::ifstream file(data_folder + "/golden/" + name, std::ios::binary);
  std::string line;
  std::getline(file, line);
  const std::vector<std::string> columns = Fields(line);
  while (std::getline(file, line)) {
    const std::vector<std::string> fields = Fields(line);
    EXPECT_EQ(fields.size(), columns.size()) << name << ": " << line;
    std::map<std::string, std::string> named;
    for (std::size_t i = 0; i < fields.size() && i < columns.size(); ++i) named[columns[i]] = fields[i];
    rows.emplace_back(std::move(named));
    rows.back().SetId(fields.front());
  }
  EXPECT_FALSE(rows.empty()) << "no rows in " << name;
  return rows;
}

std::string UnescapeGolden(std::string_view field) {
  std::string text;
  for (std::size_t i = 0; i < field.size(); ++i) {
    if (field[i] != '\\' || i + 1 == field.size()) {
      text += field[i];
      continue;
    }
    switch (const char escape = field[++i]) {
      case 't':
        text += '\t';
        break;
      case 'r':
        text += '\r';
        break;
      case 'n':
        text += '\n';
        break;
      case 'x':
        text += static_cast<char>(HexValue(field.substr(i + 1, 2)));
        i += 2;
        break;
      case 'u':
        text += BytesOfUnit(HexValue(field.substr(i + 1, 4)));
        i += 4;
        break;
      default:
        EXPECT_EQ(escape, '\\') << "unknown escape in " << field;
        text += escape;
    }
  }
  return text;
}

std::string EscapeGolden(std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  std::string text;
  for (char byte : bytes) {
    const auto code = static_cast<unsigned char>(byte);
    if (code >= 0x20 && code < 0x7F) {
      text += byte;
    } else {
      text += "\\x";
      text += kDigits[code >> 4];
      text += kDigits[code & 15];
    }
  }
  return text;
}

GoldenReport::~GoldenReport() {
  EXPECT_GT(compared_, 0) << "no row was compared";
  EXPECT_TRUE(failures_.empty()) << "of " << compared_ << " rows these failed:\n" << failures_;
}

void GoldenReport::Compare(const GoldenRow& row, std::string_view input, std::string_view expected,
                           std::string_view got) {
  ++compared_;
  if (expected == got) return;
  failures_ += row.Id() + ": [" + EscapeGolden(input) + "] expected [" + EscapeGolden(expected) + "] got [" +
               EscapeGolden(got) + "]\n";
}

}  // namespace zendrix::test
